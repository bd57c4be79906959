#pragma once

#include "mox/bindings/StreamType.h"
#include "mox/host/HostError.h"

#include <boost/shared_ptr.hpp>
#include <libxml/tree.h>

#include <cstdint>
#include <optional>
#include <string>

namespace Mox::Materials {

class Binding;

} // namespace Mox::Materials

namespace Mox::Host {

/// The texture settings of a texture binding.
struct TextureSettings
{
    std::string File; ///< value of the binding: the name of the texture in the host
    bool IsSrgb = false;
    std::string UsageHint; ///< such as "Normal"
};

/// A wrapper around a binding. The host calls bindings only through this class, because a plug-in
/// may derive classes from those of the library. The notes on operations, the incomplete type and
/// copies in PluginNode apply to Binding accordingly.
class PluginBinding
{
public:
    /// Wraps a binding.
    /// @param where the location of the node or element that the binding comes from, for errors
    /// @param maker the node that created the binding, which keeps the binding's code loaded; may
    ///        be empty
    /// @throws HostError if the handle is empty
    explicit PluginBinding(boost::shared_ptr<Materials::Binding> binding, Place where = {},
                           boost::shared_ptr<const void> maker = {});

    /// Creates an unnamed binding of the library's class for a stream type.
    /// @throws HostError if the library has no such class or the count is 0
    static PluginBinding Create(Materials::StreamType stream, std::uint32_t count, Place where);

    /// The virtual operations.
    /// @throws HostError with the location of the binding, whatever the operation throws
    std::uint32_t GetCount() const;
    float GetDefault(std::uint32_t index) const;
    std::string GetDefaultText() const;
    void SetDefaultText(const std::string& text) const;
    void WriteXml(xmlNodePtr element) const;

    /// @param where the location of the element, for errors
    void ReadXml(const Place& where, xmlNodePtr element) const;

    /// The data members of the binding. Reading them does not execute plug-in code.
    Materials::StreamType Stream() const;
    std::string StreamName() const; ///< keyword of the stream type
    const std::string& Tag() const;
    const std::string& Group() const;
    void SetGroup(const std::string& group) const;
    const std::string& DatasetModifiers() const;
    bool IsBasicColour() const;
    std::optional<TextureSettings> Texture() const; ///< nothing unless it is a TextureBinding

private:
    template <class Operation>
    void Call(const Place& where, const char* name, Operation operation) const;

    boost::shared_ptr<Materials::Binding> _binding;
    Place _where;
};

/// Returns the stream type with this keyword.
std::optional<Materials::StreamType> ParseStreamType(const std::string& word);

} // namespace Mox::Host
