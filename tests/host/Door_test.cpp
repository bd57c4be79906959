#include "HostHeaders.h"

#include <type_traits>

namespace {

template <class Class, class = void>
constexpr bool isComplete = false;

template <class Class>
constexpr bool isComplete<Class, std::void_t<decltype(sizeof(Class))>> = true;

// The host cannot call operations that a plug-in implements, because the classes are incomplete.
static_assert(!isComplete<Mox::Materials::GuiNode>);
static_assert(!isComplete<Mox::Materials::GuiNodeFactory>);
static_assert(!isComplete<Mox::Materials::Binding>);
static_assert(isComplete<Mox::Host::PluginNode>);

} // namespace
