#pragma once

#include "mox/languages/BlockStorage.h"
#include "mox/languages/Writer.h"

namespace Mox::Languages {

/// The common base of MSL and WGSL: inputs and outputs of a stage are members of structs, the entry
/// point computes outputs in local variables and returns them, textures and samplers are separate,
/// and matrices have no component-wise operators.
class StructWriter : public Writer
{
public:
    using Writer::Writer;

protected:
    std::string_view EntryPoint() const override
    {
        return Program.IsVertex ? "vertexMain" : "fragmentMain";
    }

    void PutName(const Cg::Variable& variable) override;
    void PutIndex(const Cg::Expression& expression) override;
    void PutArgument(const Cg::Variable& parameter, const Cg::Expression& argument) override;
    void PutBinary(const Cg::Expression& expression, Binding around) override;
    void PutConstruct(const Cg::Expression& expression) override;
    void PutConvert(const Cg::Expression& expression, Binding around) override;
    bool ReturnsOutputs() const override { return !Program.Outputs.empty(); }

    /// Writes a conditional expression as a call of select.
    void PutSelectCall(const Cg::Expression& expression);

    /// Formats a member of a block, with the type in which it is stored.
    virtual std::string StoredMember(const Cg::Type& type, const std::string& name) const = 0;

    /// Formats a member of four bytes that serves as padding.
    virtual std::string PaddingMember(const std::string& name) const = 0;

    /// Writes a block member that is not an array, converted to the type that the program uses.
    virtual void PutLoaded(const Cg::Type& type, const std::string& member) = 0;

    /// The opening and closing bracket of an array's initial value.
    virtual std::pair<const char*, const char*> ArrayBrackets() const = 0;

    /// Writes a struct for a block, with the block's name.
    /// @returns the name of the variable through which it is read
    std::string PutBlockStruct(const UniformBlock& block, std::string_view separator);

    /// Names the parameter of the entry point that contains the inputs, and the inputs as its
    /// members.
    /// @returns the name of the parameter
    std::string NameInputs();

    /// The names of the outputs, separated by commas.
    std::string OutputNames() const;

    /// The type in which a block stores a type: numbers become floats, bools unsigned ints.
    static Cg::Type Stored(const Cg::Type& type);

    /// Returns the source of an expression as a string.
    std::string TextOf(const Cg::Expression& expression);

private:
    void PutStoredElement(const Cg::Type& element, const std::string& member,
                          const std::string& index);
};

} // namespace Mox::Languages
