// Linked into programs under the leak sanitizer. Mesa's driver keeps tables until the process ends.
// The Vulkan loader unloads the driver with the last instance, after which nothing refers to the
// tables.

#include <dlfcn.h>

namespace {

[[maybe_unused]] void* const driver = dlopen("libvulkan_lvp.so", RTLD_NOW | RTLD_NODELETE);

} // namespace
