#pragma once

#include "mox/Export.h"
#include "mox/bindings/StreamType.h"

#include <boost/shared_ptr.hpp>
#include <libxml/tree.h>

#include <cstdint>
#include <string>

namespace Mox::Materials {

/// The control that the host presents. Any 32-bit value can be held.
enum class UiType : std::uint32_t
{
    None = 0,
    Slider = 1,
    Colour = 2,
    Position = 3,
    Direction = 4,
    Texture = 5,
    FloatField = 6,
    UvSet = 7,
    VertexColourSet = 8,
    CheckBoxes = 9,
};

/// The unit of the control. Any 32-bit value can be held.
enum class UiUnitType : std::uint32_t
{
    Raw = 0,
    Linear = 1,
    Angular = 2,
    SrgbColour = 3,
};

/// One run-time parameter of a material: a named value or vertex stream that a node exposes. This
/// class itself is the plain vertex stream, which has no values of its own.
///
/// Stored as the attributes of one XML element that the host supplies. The stream type, the count
/// and the group are not among them: the host knows them before it creates the binding.
class MOX_API Binding
{
public:
    /// @param streamType one of the named values; CreateBinding picks the class that belongs to it
    /// @param count number of components
    Binding(StreamType streamType, const std::string& name, std::uint32_t count);
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;
    virtual ~Binding();

    virtual std::uint32_t GetCount() const;
    virtual void SetCount(std::uint32_t newCount);

    /// Values by component; 0 where there is none.
    virtual float GetMin(std::uint32_t index) const;
    virtual float GetMax(std::uint32_t index) const;
    virtual float GetDefault(std::uint32_t index) const;

    /// Store a value where the class has a place for it; otherwise they do nothing.
    virtual void SetMin(std::uint32_t index, const std::string& newValue);
    virtual void SetMin(std::uint32_t index, float newValue);
    virtual void SetMax(std::uint32_t index, const std::string& newValue);
    virtual void SetMax(std::uint32_t index, float newValue);
    virtual void SetDefault(std::uint32_t index, const std::string& newValue);
    virtual void SetDefault(std::uint32_t index, float newValue);

    /// String values by component; empty where there is none.
    virtual std::string GetMinString(std::uint32_t index) const;
    virtual std::string GetMaxString(std::uint32_t index) const;
    virtual std::string GetDefaultString(std::uint32_t index) const;

    /// Sets the attributes that differ from the defaults of the stream type, "tag" always.
    virtual void WriteXml(xmlNodePtr element) const;

    /// Takes over the attributes that are there; a field without its attribute keeps its value.
    /// Only streamFormat is worked out anew.
    /// @throws ShaderError if a boolean is neither "Yes" nor "No"; the fields before it are set
    /// then
    virtual void ReadXml(xmlNodePtr element);

    /// All values of a kind in their attribute form; empty if there are none. A text that does not
    /// parse is ignored.
    virtual void SetMinText(const std::string& text);
    virtual void SetMaxText(const std::string& text);
    virtual void SetDefaultText(const std::string& text);
    virtual std::string GetMinText() const;
    virtual std::string GetMaxText() const;
    virtual std::string GetDefaultText() const;

    /// The word of streamType, such as "uv"; empty for a value that is none of those named.
    std::string GetStreamTypeName() const;

    std::string tag;       ///< the binding's name
    StreamType streamType; ///< never changes
    std::string desc;      ///< tooltip
    std::string helpUrl;   ///< link behind the help button
    UiType uiType;         ///< at first the default of the stream type
    std::string uiLabel;   ///< label of the control
    UiUnitType uiUnitType = UiUnitType::Raw;
    std::string uv;      ///< free text, carried through XML
    std::string cgName;  ///< name of the Cg parameter
    std::string group;   ///< copied from the node; not stored in XML
    bool hasMin = false; ///< a minimum has been set; never goes back to false
    bool hasMax = false;
    bool hasDefault = false;
    std::uint32_t count;      ///< number of components
    std::string streamFormat; ///< storage format; at first the default of the stream type
    std::string
        datasetModifiers;     ///< modifiers of the data; at first the default of the stream type
    bool basicColour = false; ///< forms the basic colour of the material
};

/// A new binding of the class that belongs to the stream type.
/// @returns an empty handle for StreamType::Invalid, for a value that is none of those named and
///          for a count of 0
MOX_API boost::shared_ptr<Binding> CreateBinding(StreamType streamType, const std::string& name,
                                                 std::uint32_t count);

} // namespace Mox::Materials
