#include "mox/bindings/StreamType.h"

namespace Mox::Materials {

namespace {

struct FormatRow
{
    const char* Word;
    const char* Normalised;
    const char* Plain;
};

constexpr FormatRow formatRows[] = {
    {"int", "f32", "f32"},  {"uint", "f32", "f32"},    {"float", "f32", "f32"},
    {"half", "f16", "f16"}, {"ushort", "s16n", "s16"}, {"short", "s16n", "s16"},
    {"byte", "u8n", "u8"},  {"ubyte", "u8n", "u8"},    {"packed", "X11Y11Z10n", "X11Y11Z10n"},
};

} // namespace

std::string ToStreamFormat(const std::string& word, bool isNormalised)
{
    for (const FormatRow& row : formatRows) {
        if (word == row.Word)
            return isNormalised ? row.Normalised : row.Plain;
    }
    return word;
}

} // namespace Mox::Materials
