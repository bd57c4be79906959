#include "mox/document/ElementRule.h"

#include "mox/Text.h"
#include "mox/host/Excerpt.h"

#include <algorithm>

namespace Mox::Host {

using Materials::Compose;

namespace {

const AttributeRule* FindRule(std::span<const AttributeRule> rules, std::string_view name)
{
    const auto found = std::ranges::find(rules, name, &AttributeRule::Name);
    return found == rules.end() ? nullptr : &*found;
}

/// Joins words as in "a, b or c".
std::string Join(const std::vector<std::string>& words, std::string_view conjunction)
{
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0)
            text += i + 1 < words.size() ? ", " : Compose(" ", conjunction, " ");
        text += words[i];
    }
    return text;
}

std::string Quote(std::string_view word)
{
    return Compose("\"", word, "\"");
}

AttributeProblem Wrong(const XmlAttribute& value, const std::string& expected)
{
    return {std::string(value.Name), Compose("attribute \"", value.Name, "\" is ",
                                             Excerpt(value.Value), ", expected ", expected)};
}

AttributeProblem Missing(std::string_view name, const std::string& expected)
{
    return {"", Compose("attribute \"", name, "\" is missing, expected ", expected)};
}

} // namespace

bool ValueRule::Accepts(std::string_view value) const
{
    if (!Words.empty())
        return std::ranges::find(Words, value) != Words.end();
    return !IsValid || IsValid(value);
}

std::string ValueRule::Expected() const
{
    std::vector<std::string> words;
    for (const std::string_view word : Words)
        words.push_back(Quote(word));
    return words.empty() ? std::string(Meaning) : Join(words, "or");
}

std::vector<AttributeProblem> ElementRule::Check(std::span<const XmlAttribute> values) const
{
    std::vector<AttributeProblem> problems;
    const std::string_view* word = Selector.empty() ? nullptr : FindValue(values, Selector);
    const Variant* variant = word ? FindVariant(*word) : nullptr;
    const std::span<const AttributeRule> more =
        variant ? variant->Attributes : std::span<const AttributeRule>();

    for (const XmlAttribute& value : values) {
        const AttributeRule* rule = FindRule(Attributes, value.Name);
        if (!rule)
            rule = FindRule(more, value.Name);
        if (rule) {
            if (!rule->Value.Accepts(value.Value))
                problems.push_back(Wrong(value, rule->Value.Expected()));
        } else if (&value.Value == word) {
            if (!variant)
                problems.push_back(Wrong(value, ExpectedWords()));
        } else if (variant || !OrderOf(value.Name)) {
            problems.push_back({std::string(value.Name), DescribeUnexpected(value.Name, variant)});
        }
        // Without a valid selector, the attributes of variants cannot be checked.
    }

    for (const auto rules : {Attributes, more}) {
        for (const AttributeRule& rule : rules) {
            if (rule.IsRequired && !FindValue(values, rule.Name))
                problems.push_back(Missing(rule.Name, rule.Value.Expected()));
        }
    }
    if (!Selector.empty() && !word)
        problems.push_back(Missing(Selector, ExpectedWords()));
    return problems;
}

std::optional<std::size_t> ElementRule::OrderOf(std::string_view attribute) const
{
    std::size_t order = 0;
    const auto find = [&](std::span<const AttributeRule> rules) {
        const AttributeRule* rule = FindRule(rules, attribute);
        order += static_cast<std::size_t>(rule ? rule - rules.data() : std::ssize(rules));
        return rule != nullptr;
    };
    if (find(Attributes))
        return order;
    for (const Variant& variant : Variants) {
        if (find(variant.Attributes))
            return order;
    }
    return std::nullopt;
}

std::string ElementRule::ExpectedChildren(std::size_t first) const
{
    std::vector<std::string> names;
    for (std::size_t i = first; i < Children.size(); ++i)
        names.push_back(Compose("<", Children[i].Rule->Name, ">"));
    return names.empty() ? Compose("the end of <", Name, ">") : Join(names, "or");
}

const ElementRule::Variant* ElementRule::FindVariant(std::string_view word) const
{
    const auto found = std::ranges::find(Variants, word, &Variant::Word);
    return found == Variants.end() ? nullptr : &*found;
}

std::string ElementRule::ExpectedWords() const
{
    std::vector<std::string> words;
    for (const Variant& variant : Variants)
        words.push_back(Quote(variant.Word));
    return Join(words, "or");
}

std::string ElementRule::DescribeUnexpected(std::string_view attribute,
                                            const Variant* variant) const
{
    std::vector<std::string> names;
    for (const AttributeRule& rule : Attributes)
        names.push_back(Quote(rule.Name));
    std::string beside;
    if (variant) {
        names.push_back(Quote(Selector));
        for (const AttributeRule& rule : variant->Attributes)
            names.push_back(Quote(rule.Name));
        beside = Compose(" with the ", Selector, " ", Quote(variant->Word));
    }
    return Compose("unexpected attribute ", Excerpt(attribute), beside, ", expected ",
                   names.empty() ? "no attributes" : "only " + Join(names, "and"));
}

} // namespace Mox::Host
