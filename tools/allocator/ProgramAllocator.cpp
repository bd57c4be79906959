// How a program allocates that links mimalloc.

#include <cstddef>
#include <cstdlib>
#include <exception>
#include <mimalloc.h>
#include <new>
#include <string_view>
#include <unistd.h>

namespace {

/// Memory that one material has freed is for the next one. Giving it back to the system and
/// fetching it again takes a fifth of the time of large materials. The environment may say
/// otherwise.
[[maybe_unused]] const bool keepsMemory = [] {
    mi_option_set_enabled_default(mi_option_allow_decommit, false);
    return true;
}();

/// Where not even the exception finds memory, or nothing catches it yet, as before main, the
/// runtime calls this instead of ending the program as if by a fault of its own.
[[noreturn]] void EndWithoutMemory()
{
    constexpr std::string_view message = "there is not enough memory\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, message.data(), message.size());
    _exit(EXIT_FAILURE);
}

void* OrThrow(void* block)
{
    if (!block) {
        std::set_terminate(EndWithoutMemory);
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

// mimalloc brings operators of its own. It is C, though, and its new ends the program when memory
// runs out, where these throw. They stand in the program, which comes before any library.

void* operator new(std::size_t size)
{
    return OrThrow(mi_malloc(size));
}

void* operator new[](std::size_t size)
{
    return OrThrow(mi_malloc(size));
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    return OrThrow(mi_malloc_aligned(size, static_cast<std::size_t>(alignment)));
}

void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return OrThrow(mi_malloc_aligned(size, static_cast<std::size_t>(alignment)));
}

void operator delete(void* block) noexcept
{
    mi_free(block);
}

void operator delete[](void* block) noexcept
{
    mi_free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    mi_free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    mi_free(block);
}

void operator delete(void* block, std::align_val_t) noexcept
{
    mi_free(block);
}

void operator delete[](void* block, std::align_val_t) noexcept
{
    mi_free(block);
}
