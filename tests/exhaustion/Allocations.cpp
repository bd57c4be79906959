#include "tests/exhaustion/Allocations.h"

#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

std::size_t liveCount = 0;
std::size_t untilFailure = never; ///< allocations that succeed before one fails
bool isLasting = false;
bool hasFailed = false;

bool MayAllocate()
{
    if (untilFailure == never)
        return true;
    if (untilFailure > 0) {
        --untilFailure;
        return true;
    }
    hasFailed = true;
    if (!isLasting)
        untilFailure = never;
    return false;
}

void* Allocate(std::size_t size)
{
    void* block = MayAllocate() ? std::malloc(size > 0 ? size : 1) : nullptr;
    liveCount += block ? 1 : 0;
    return block;
}

void Release(void* block)
{
    liveCount -= block ? 1 : 0;
    std::free(block);
}

void* Reallocate(void* block, std::size_t size)
{
    if (!block)
        return Allocate(size);
    return MayAllocate() ? std::realloc(block, size) : nullptr;
}

char* Duplicate(const char* text)
{
    const std::size_t size = std::strlen(text) + 1;
    void* block = Allocate(size);
    return block ? static_cast<char*>(std::memcpy(block, text, size)) : nullptr;
}

void IgnoreXmlErrors(void*, xmlErrorPtr)
{}

} // namespace

namespace Allocations {

std::size_t LiveCount()
{
    return liveCount;
}

void FailAt(std::size_t number, Shortage shortage)
{
    untilFailure = number - 1;
    isLasting = shortage == Shortage::Lasting;
    hasFailed = false;
}

bool EndFailing()
{
    untilFailure = never;
    return hasFailed;
}

void TakeOverXml()
{
    xmlMemSetup(Release, Allocate, Reallocate, Duplicate);
    xmlInitParser();
    xmlSetStructuredErrorFunc(nullptr, IgnoreXmlErrors);
}

} // namespace Allocations

void* operator new(std::size_t size)
{
    void* block = Allocate(size);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept
{
    Release(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    Release(block);
}
