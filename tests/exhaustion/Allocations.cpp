#include "tests/exhaustion/Allocations.h"

#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

using Allocations::Owner;

std::size_t liveCounts[2] = {}; ///< indexed by Owner: New and Xml
Owner failingOwner = Owner::All;
std::size_t untilFailure = never; ///< successful allocations before one fails
bool isLasting = false;
bool hasFailed = false;

bool MayAllocate(Owner owner)
{
    if (untilFailure == never || (failingOwner != Owner::All && failingOwner != owner))
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

void* Allocate(std::size_t size, Owner owner)
{
    void* block = MayAllocate(owner) ? std::malloc(size > 0 ? size : 1) : nullptr;
    liveCounts[static_cast<int>(owner)] += block ? 1 : 0;
    return block;
}

void Release(void* block, Owner owner)
{
    liveCounts[static_cast<int>(owner)] -= block ? 1 : 0;
    std::free(block);
}

void* AllocateXml(std::size_t size)
{
    return Allocate(size, Owner::Xml);
}

void ReleaseXml(void* block)
{
    Release(block, Owner::Xml);
}

void* ReallocateXml(void* block, std::size_t size)
{
    if (!block)
        return AllocateXml(size);
    return MayAllocate(Owner::Xml) ? std::realloc(block, size) : nullptr;
}

char* DuplicateXml(const char* text)
{
    const std::size_t size = std::strlen(text) + 1;
    void* block = AllocateXml(size);
    return block ? static_cast<char*>(std::memcpy(block, text, size)) : nullptr;
}

void IgnoreXmlErrors(void*, xmlErrorPtr)
{}

void IgnoreXmlMessages(void*, const char*, ...)
{}

} // namespace

namespace Allocations {

std::size_t LiveCount(Owner owner)
{
    return owner == Owner::All ? liveCounts[0] + liveCounts[1]
                               : liveCounts[static_cast<int>(owner)];
}

void FailAt(std::size_t number, Shortage shortage, Owner owner)
{
    failingOwner = owner;
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
    xmlMemSetup(ReleaseXml, AllocateXml, ReallocateXml, DuplicateXml);
    xmlInitParser();
    xmlSetStructuredErrorFunc(nullptr, IgnoreXmlErrors);
    xmlSetGenericErrorFunc(nullptr, IgnoreXmlMessages);
}

} // namespace Allocations

void* operator new(std::size_t size)
{
    void* block = Allocate(size, Owner::New);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size, Owner::New);
}

void operator delete(void* block) noexcept
{
    Release(block, Owner::New);
}

void operator delete(void* block, std::size_t) noexcept
{
    Release(block, Owner::New);
}

void operator delete(void* block, const std::nothrow_t&) noexcept
{
    Release(block, Owner::New);
}
