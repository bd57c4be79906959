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

/// What a texture binding says about its texture.
struct TextureSettings
{
    std::string File; ///< the value: the host's name for the texture
    bool IsSrgb = false;
    std::string UsageHint; ///< such as "Normal"
};

/// A binding, and the only way by which the host calls it, since a plug-in may derive classes from
/// the library's. What PluginNode says about operations, the incomplete type and copies holds here
/// for Binding.
class PluginBinding
{
public:
    /// Takes a binding.
    /// @param where of the node or element that it comes from; its failures are reported there
    /// @param maker the node that made it, which keeps the code of the binding loaded; may be empty
    /// @throws HostError if the handle is empty
    explicit PluginBinding(boost::shared_ptr<Materials::Binding> binding, Place where = {},
                           boost::shared_ptr<const void> maker = {});

    /// A new binding of the library's class for a stream type, without a name.
    /// @throws HostError if there is no such class or the count is 0
    static PluginBinding Create(Materials::StreamType stream, std::uint32_t count, Place where);

    /// The virtual operations.
    /// @throws HostError at the place of the binding, whatever it throws
    std::uint32_t GetCount() const;
    float GetDefault(std::uint32_t index) const;
    std::string GetDefaultText() const;
    void SetDefaultText(const std::string& text) const;
    void WriteXml(xmlNodePtr element) const;

    /// @param where the place of the element, at which failures are reported
    void ReadXml(const Place& where, xmlNodePtr element) const;

    /// The records of the binding. Reading them calls nothing of the plug-in.
    Materials::StreamType Stream() const;
    std::string StreamName() const; ///< the word of the stream type
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

/// The stream type with that word.
std::optional<Materials::StreamType> ParseStreamType(const std::string& word);

} // namespace Mox::Host
