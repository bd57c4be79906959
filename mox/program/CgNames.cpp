#include "mox/program/CgNames.h"

#include "mox/Identifier.h"
#include "mox/program/ReservedWords.h"

namespace Mox::Host {

namespace {

/// Replaces each run of characters that a Cg name cannot contain with one underscore.
std::string ReplaceBadCharacters(const std::string& text)
{
    std::string name;
    bool isReplacing = false;
    for (const char c : text) {
        const bool isGood = IsIdentifierPart(c);
        if (isGood)
            name += c;
        else if (!isReplacing)
            name += '_';
        isReplacing = !isGood;
    }
    if (!IsIdentifier(name))
        name.insert(0, 1, '_');
    return name;
}

} // namespace

std::string ToSafeCgName(const std::string& text)
{
    std::string name = IsIdentifier(text) ? text : ReplaceBadCharacters(text);
    if (IsReservedWord(name))
        name += '_';
    return name;
}

std::string CgNames::Claim(const std::string& wanted)
{
    return MakeUnique(_taken, ToSafeCgName(wanted));
}

} // namespace Mox::Host
