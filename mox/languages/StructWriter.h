#pragma once

#include "mox/languages/BlockStorage.h"
#include "mox/languages/Writer.h"

namespace Mox::Languages {

/// What MSL and WGSL share: inputs and outputs of a stage are members of structs, the body of the
/// entry point computes outputs in variables and returns them, textures and the way they are read
/// are apart, and matrices have no operators by component.
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

    /// A member of a block, as the layout has it.
    virtual std::string StoredMember(const Cg::Type& type, const std::string& name) const = 0;

    /// A member of four bytes that nothing reads.
    virtual std::string PaddingMember(const std::string& name) const = 0;

    /// A value of a member of a block that is no array: converted to what the body computes with.
    virtual void PutLoaded(const Cg::Type& type, const std::string& member) = 0;

    /// Opens and closes the parts of an array.
    virtual std::pair<const char*, const char*> ArrayBrackets() const = 0;

    /// A struct for a block, which has the block's name.
    /// @returns the variable by which the text reads it
    std::string PutBlockStruct(const UniformBlock& block, std::string_view separator);

    /// The names of the outputs, separated by commas.
    std::string OutputNames() const;

    /// The elements of a type as a block stores them: numbers as floats, bools as unsigned ints.
    static Cg::Type Stored(const Cg::Type& type);

    /// The text of an int.
    std::string TextOf(const Cg::Expression& expression);

    std::string InputName; ///< of the struct of inputs in the entry point

private:
    void PutStoredElement(const Cg::Type& element, const std::string& member,
                          const std::string& index);
};

} // namespace Mox::Languages
