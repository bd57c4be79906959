#pragma once

#include "mox/Export.h"
#include "mox/bindings/StreamType.h"

#include <boost/shared_ptr.hpp>
#include <libxml/tree.h>

#include <cstdint>
#include <string>

namespace Mox::Materials {

/// The control that the host shows for a binding. Other 32-bit values are preserved.
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

/// The unit of the control. Other 32-bit values are preserved.
enum class UiUnitType : std::uint32_t
{
    Raw = 0,
    Linear = 1,
    Angular = 2,
    SrgbColour = 3,
};

/// A run-time parameter of a material: a named value or vertex stream that a node exposes. This
/// base class represents a plain vertex stream, which has no values.
///
/// A binding is stored as attributes of an XML element that the host supplies. The stream type,
/// count and group are not stored: the host knows them before it creates the binding.
class MOX_API Binding
{
public:
    /// @param streamType one of the named values; CreateBinding selects the matching class
    /// @param count number of components
    Binding(StreamType streamType, const std::string& name, std::uint32_t count);
    Binding(const Binding&) = delete;
    Binding& operator=(const Binding&) = delete;
    virtual ~Binding();

    virtual std::uint32_t GetCount() const;
    virtual void SetCount(std::uint32_t newCount);

    /// Numeric values by component; 0 if there is none.
    virtual float GetMin(std::uint32_t index) const;
    virtual float GetMax(std::uint32_t index) const;
    virtual float GetDefault(std::uint32_t index) const;

    /// Store a value if the class supports it; otherwise do nothing.
    virtual void SetMin(std::uint32_t index, const std::string& newValue);
    virtual void SetMin(std::uint32_t index, float newValue);
    virtual void SetMax(std::uint32_t index, const std::string& newValue);
    virtual void SetMax(std::uint32_t index, float newValue);
    virtual void SetDefault(std::uint32_t index, const std::string& newValue);
    virtual void SetDefault(std::uint32_t index, float newValue);

    /// String values by component; empty if there is none.
    virtual std::string GetMinString(std::uint32_t index) const;
    virtual std::string GetMaxString(std::uint32_t index) const;
    virtual std::string GetDefaultString(std::uint32_t index) const;

    /// Sets the attributes that differ from the defaults of the stream type, and always sets "tag".
    virtual void WriteXml(xmlNodePtr element) const;

    /// Reads the attributes that are present; a field without an attribute keeps its value, except
    /// streamFormat, which is always recomputed.
    /// @throws ShaderError if a boolean is neither "Yes" nor "No"; fields read before it remain set
    virtual void ReadXml(xmlNodePtr element);

    /// All values of a kind as one attribute string; empty if there are none. Setting a string that
    /// cannot be parsed has no effect.
    virtual void SetMinText(const std::string& text);
    virtual void SetMaxText(const std::string& text);
    virtual void SetDefaultText(const std::string& text);
    virtual std::string GetMinText() const;
    virtual std::string GetMaxText() const;
    virtual std::string GetDefaultText() const;

    /// The name of streamType, such as "uv"; empty for an unnamed value.
    std::string GetStreamTypeName() const;

    std::string tag;       ///< the binding's name
    StreamType streamType; ///< never changes
    std::string desc;      ///< tooltip
    std::string helpUrl;   ///< link opened by the help button
    UiType uiType;         ///< initially the default of the stream type
    std::string uiLabel;   ///< label of the control
    UiUnitType uiUnitType = UiUnitType::Raw;
    std::string uv;      ///< free text, preserved in XML
    std::string cgName;  ///< name of the Cg parameter
    std::string group;   ///< copied from the node; not stored in XML
    bool hasMin = false; ///< a minimum has been set; never reset to false
    bool hasMax = false;
    bool hasDefault = false;
    std::uint32_t count;          ///< number of components
    std::string streamFormat;     ///< storage format; initially the default of the stream type
    std::string datasetModifiers; ///< data modifiers; initially the default of the stream type
    bool basicColour = false;     ///< contributes to the basic colour of the material
};

/// Creates a binding of the class that matches the stream type.
/// @returns null for StreamType::Invalid, for an unnamed stream type, and for a count of 0
MOX_API boost::shared_ptr<Binding> CreateBinding(StreamType streamType, const std::string& name,
                                                 std::uint32_t count);

} // namespace Mox::Materials
