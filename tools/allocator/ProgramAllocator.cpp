// The allocator of a program that links mimalloc.

#include <cstddef>
#include <cstdlib>
#include <exception>
#include <mimalloc.h>
#include <new>
#include <string_view>
#include <unistd.h>

namespace {

/// Keeps memory that one material has freed for the next one. Returning it to the system and
/// requesting it again takes a fifth of the time for large materials. Environment variables of
/// mimalloc take precedence.
[[maybe_unused]] const bool keepsMemory = [] {
    mi_option_set_enabled_default(mi_option_allow_decommit, false);
    return true;
}();

/// The terminate handler. It is called if there is no memory for the exception itself, or if
/// nothing catches the exception, as before main. The default handler would abort, which looks like
/// a crash.
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

// mimalloc provides operators too, but it is compiled as C, so its operator new ends the program
// when memory runs out instead of throwing an exception. Operators that the program defines take
// precedence over those of libraries.

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
