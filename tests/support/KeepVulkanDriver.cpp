// Part of programs under the leak sanitizer. Mesa's driver keeps tables to its end, which is the
// end of the process. The Vulkan loader unloads it with the last instance, and then nothing refers
// to them.

#include <dlfcn.h>

namespace {

[[maybe_unused]] void* const driver = dlopen("libvulkan_lvp.so", RTLD_NOW | RTLD_NODELETE);

} // namespace
