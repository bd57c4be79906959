#pragma once

#include "mox/Export.h"

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace Mox::Materials {

class GuiNode;

/// The kind of a property, which determines the field with its value.
enum class GuiPropertyKind : std::int32_t
{
    Bool = 0,    ///< Integer: 1 for true, 0 for false
    Integer = 1, ///< Integer
    Float = 2,   ///< first element of Floats
    String = 3,  ///< Text
    Colour = 4,  ///< Floats: red, green, blue
    Enum = 5,    ///< Text, one of Choices
    Node = 6,    ///< Node; Choices lists the allowed types
};

/// A typed, named value of a node: a row in the property editor.
///
/// Properties of all kinds have the same fields; fields of other kinds keep their values. A setter
/// changes the kind to its own; a getter requires the property to be of its kind.
class MOX_API GuiProperty
{
    /// Restricts the constructor, which must be public for boost::make_shared, to Create. The
    /// explicit constructor of CreateOnly prevents callers from passing {}.
    struct CreateOnly
    {
        explicit CreateOnly() = default;
    };

public:
    /// Creates a Bool property with the value false; the only way to create a property.
    static boost::shared_ptr<GuiProperty> Create(const std::string& name);

    GuiProperty(CreateOnly, const std::string& name);
    GuiProperty(const GuiProperty&) = delete;
    GuiProperty& operator=(const GuiProperty&) = delete;

    /// Releases chains of references between nodes iteratively, so that long chains do not overflow
    /// the stack.
    ~GuiProperty();

    void SetBool(bool value);
    void SetInt(std::int32_t value);

    /// Sets the first element of Floats; green and blue do not change.
    void SetFloat(float value);

    void SetString(const std::string& value);
    void SetColour(float red, float green, float blue);

    /// Appends a choice and makes the property an Enum. The first choice becomes its value.
    /// @throws ShaderError if the choice is already listed, in which case nothing changes
    void AddEnum(const std::string& word);

    /// Selects a listed choice.
    /// @throws ShaderError if the choice is not listed, in which case nothing changes
    void SetEnum(const std::string& word);

    /// Makes the property a Node and adds an allowed type; types may be listed more than once.
    void AddNodeTypename(const std::string& typeName);

    /// @throws ShaderError if the property is of another kind; likewise the other getters
    bool GetBool() const;
    std::int32_t GetInt() const;
    float GetFloat() const;
    const std::string& GetString() const;
    void GetColour(float& red, float& green, float& blue) const;
    const std::string& GetEnum() const;

    /// Returns a reference to the handle, which may be empty; assigning to it changes the value.
    boost::shared_ptr<GuiNode>& GetNode();

    /// Copies the value of source: all value fields, whatever the kind. A node is shared, not
    /// copied. Name, Label, Help, flags, kind and choices do not change.
    /// @throws ShaderError if the kinds differ, if the value is not one of this property's Choices,
    ///        or if the type of the node is not allowed, in which cases nothing changes
    void CopyFrom(const boost::shared_ptr<GuiProperty>& source);

    std::string Name;       ///< unique within the bag; never changes
    std::string Label;      ///< additional text for the host
    std::string Help;       ///< starts with the property's name, a colon and a space
    bool Editable = true;   ///< if false, the user can see the value but not change it
    bool Visible = true;    ///< if false, the editor does not show the property; it is still stored
    std::int32_t Style = 0; ///< 0 by default, 1 as for "Description", 2 as for "Help Url"
    GuiPropertyKind Kind = GuiPropertyKind::Bool;
    std::string Text;                 ///< value of a String or Enum
    std::int32_t Integer = 0;         ///< value of a Bool or Integer
    float Floats[3] = {};             ///< value of a Float or Colour
    boost::shared_ptr<GuiNode> Node;  ///< value of a Node
    std::vector<std::string> Choices; ///< choices of an Enum in order; allowed types of a Node

private:
    explicit GuiProperty(const std::string& name);

    void RequireKind(GuiPropertyKind kind, const char* complaint) const;
    bool HasChoice(const std::string& word) const;
};

} // namespace Mox::Materials
