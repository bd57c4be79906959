#pragma once

#include "mox/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Materials {

class GuiNode;

/// Which of a property's value fields counts.
enum class GuiPropertyKind : std::int32_t
{
    Bool = 0,    ///< Integer: 1 is true, 0 is false
    Integer = 1, ///< Integer
    Float = 2,   ///< first entry of Floats
    String = 3,  ///< Text
    Colour = 4,  ///< Floats: red, green, blue
    Enum = 5,    ///< Text, one of Choices
    Node = 6,    ///< Node; Choices restricts its type
};

/// One typed, named value of a node: a row of the property editor.
///
/// The kinds share storage, and a value field of another kind keeps what it held. Setters take the
/// kind from the call; getters are strict about it.
class MOX_API GuiProperty
{
    /// Lets only Create call the constructor, which has to be public for boost::make_shared. Its
    /// own constructor is explicit, so that nobody else can write it as {}.
    struct CreateOnly
    {
        explicit CreateOnly() = default;
    };

public:
    /// A new Bool property with value false; the only way to make one.
    static boost::shared_ptr<GuiProperty> Create(const std::string& name);

    GuiProperty(CreateOnly, const std::string& name);
    GuiProperty(const GuiProperty&) = delete;
    GuiProperty& operator=(const GuiProperty&) = delete;

    /// Releases a chain of references between nodes one after another, so that its length does not
    /// use the stack.
    ~GuiProperty();

    void SetBool(bool value);
    void SetInt(std::int32_t value);

    /// Stores the first entry of Floats; green and blue keep what they held.
    void SetFloat(float value);

    void SetString(const std::string& value);
    void SetColour(float red, float green, float blue);

    /// Appends a word to Choices and makes the property an Enum. The first word becomes the value.
    /// @throws ShaderError if the word is listed already; nothing changes then
    void AddEnum(const std::string& word);

    /// Chooses a listed word.
    /// @throws ShaderError if the word is not listed; nothing changes then
    void SetEnum(const std::string& word);

    /// Makes the property a Node and allows one more type; a type may be listed twice.
    void AddNodeTypename(const std::string& typeName);

    /// @throws ShaderError on a property of another kind, as do the other getters
    bool GetBool() const;
    std::int32_t GetInt() const;
    float GetFloat() const;
    const std::string& GetString() const;
    void GetColour(float& red, float& green, float& blue) const;
    const std::string& GetEnum() const;

    /// The handle itself, which may be empty; assigning to it changes the value.
    boost::shared_ptr<GuiNode>& GetNode();

    /// Takes over the value of source: all value fields, whatever the kind; a node is shared, not
    /// cloned. Names, help, flags, kind and choices stay.
    /// @throws ShaderError if the kinds differ, if the word is none of this property's Choices, or
    ///         if the node's type is not allowed here; nothing changes then
    void CopyFrom(const boost::shared_ptr<GuiProperty>& source);

    std::string Name;       ///< identity inside the bag, never changes
    std::string Label;      ///< second text, for the host alone
    std::string Help;       ///< starts with the property's name, a colon and a blank
    bool Editable = true;   ///< false shows the value but does not let the user change it
    bool Visible = true;    ///< false keeps the property out of the editor; it is still stored
    std::int32_t Style = 0; ///< 0 plain, 1 as for "Description", 2 as for "Help Url"
    GuiPropertyKind Kind = GuiPropertyKind::Bool;
    std::string Text;                 ///< String and Enum value
    std::int32_t Integer = 0;         ///< Bool and Integer value
    float Floats[3] = {};             ///< Float and Colour value
    boost::shared_ptr<GuiNode> Node;  ///< Node value
    std::vector<std::string> Choices; ///< words of an Enum in order; allowed types of a Node

private:
    explicit GuiProperty(const std::string& name);

    void RequireKind(GuiPropertyKind kind, const char* complaint) const;
    bool HasChoice(const std::string& word) const;
};

} // namespace Mox::Materials
