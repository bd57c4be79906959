#include "mox/document/SchemaRules.h"

#include "mox/Text.h"
#include "mox/document/PropertyText.h"
#include "mox/host/Excerpt.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

using Materials::Compose;

namespace {

const std::string_view* FindValue(std::span<const XmlAttribute> values, std::string_view name)
{
    for (const XmlAttribute& value : values) {
        if (value.Name == name)
            return &value.Value;
    }
    return nullptr;
}

const AttributeRule* FindRule(const std::vector<AttributeRule>& rules, std::string_view name)
{
    for (const AttributeRule& rule : rules) {
        if (rule.Name == name)
            return &rule;
    }
    return nullptr;
}

std::ptrdiff_t CountRequired(const std::vector<AttributeRule>& rules)
{
    return std::count_if(rules.begin(), rules.end(),
                         [](const AttributeRule& rule) { return rule.IsRequired; });
}

/// "a", "b" or "c"
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

std::vector<std::string> Quote(std::vector<std::string> words)
{
    for (std::string& word : words)
        word = Compose("\"", word, "\"");
    return words;
}

std::vector<std::string> NamesOf(const std::vector<AttributeRule>& rules)
{
    std::vector<std::string> names;
    names.reserve(rules.size());
    for (const AttributeRule& rule : rules)
        names.push_back(rule.Name);
    return names;
}

} // namespace

ValueRule::ValueRule(std::vector<std::string> words) : _words(std::move(words))
{}

ValueRule::ValueRule(DataType type) : _type(std::move(type))
{}

bool ValueRule::Accepts(std::string_view value) const
{
    if (!_words.empty())
        return std::find(_words.begin(), _words.end(), value) != _words.end();
    return (_type.IsEmptyAllowed || !value.empty()) &&
           (!_type.Pattern || _type.Pattern->Matches(value)) &&
           (!_type.IsInteger || ParseInteger(value));
}

std::string ValueRule::Expected() const
{
    return _words.empty() ? _type.Meaning : Join(Quote(_words), "or");
}

std::vector<AttributeProblem> ElementRule::Check(std::span<const XmlAttribute> values) const
{
    std::vector<AttributeProblem> problems;
    const std::string_view* selector =
        Variants.empty() ? nullptr : FindValue(values, SelectorName());
    const std::vector<AttributeRule>* variant = selector ? FindVariant(*selector) : nullptr;
    const auto checkValue = [&](const XmlAttribute& value, const ValueRule& rule) {
        if (!rule.Accepts(value.Value)) {
            problems.push_back({std::string(value.Name),
                                Compose("attribute \"", value.Name, "\" is ", Excerpt(value.Value),
                                        ", expected ", rule.Expected())});
        }
    };
    const auto require = [&](const std::string& name, const ValueRule& rule) {
        if (!FindValue(values, name)) {
            problems.push_back(
                {"", Compose("attribute \"", name, "\" is missing, expected ", rule.Expected())});
        }
    };
    const auto requireAll = [&](const std::vector<AttributeRule>& rules) {
        for (const AttributeRule& rule : rules) {
            if (rule.IsRequired)
                require(rule.Name, rule.Value);
        }
    };

    // No name is there twice, so counting tells whether any of the required ones is missing.
    auto missing = CountRequired(Attributes) + (variant ? CountRequired(*variant) : 0);
    for (const XmlAttribute& value : values) {
        const AttributeRule* rule = FindRule(Attributes, value.Name);
        if (!rule && variant)
            rule = FindRule(*variant, value.Name);
        if (rule) {
            missing -= rule->IsRequired;
            checkValue(value, rule->Value);
        } else if (variant || !FindAttribute(value.Name)) {
            problems.push_back(
                {std::string(value.Name),
                 DescribeUnexpected(value.Name, selector ? *selector : "", variant)});
        } else if (value.Name == SelectorName()) {
            checkValue(value, Selector());
        }
        // Without a known word in the selector the rest of the set cannot be judged.
    }
    if (missing > 0)
        requireAll(Attributes);
    if (missing > 0 && variant)
        requireAll(*variant);
    if (!variant && !Variants.empty())
        require(SelectorName(), Selector());
    return problems;
}

const AttributeRule* ElementRule::FindAttribute(std::string_view name) const
{
    if (const AttributeRule* rule = FindRule(Attributes, name))
        return rule;
    for (const auto& variant : Variants) {
        if (const AttributeRule* rule = FindRule(variant, name))
            return rule;
    }
    return nullptr;
}

std::size_t ElementRule::OrderOf(std::string_view name) const
{
    std::size_t order = 0;
    for (const AttributeRule& rule : Attributes) {
        if (rule.Name == name)
            return order;
        ++order;
    }
    for (const auto& variant : Variants) {
        for (const AttributeRule& rule : variant) {
            if (rule.Name == name)
                return order;
            ++order;
        }
    }
    return order;
}

std::string ElementRule::ExpectedChildren(std::size_t first) const
{
    std::vector<std::string> names;
    for (std::size_t i = first; i < Children.size(); ++i)
        names.push_back(Compose("<", Children[i].Rule->Name, ">"));
    return names.empty() ? Compose("the end of <", Name, ">") : Join(names, "or");
}

const std::vector<AttributeRule>* ElementRule::FindVariant(std::string_view selector) const
{
    for (const auto& variant : Variants) {
        if (variant.front().Value.Accepts(selector))
            return &variant;
    }
    return nullptr;
}

std::string ElementRule::DescribeUnexpected(std::string_view attribute, std::string_view selector,
                                            const std::vector<AttributeRule>* variant) const
{
    std::vector<std::string> names = NamesOf(Attributes);
    std::string beside;
    if (variant) {
        for (const std::string& name : NamesOf(*variant))
            names.push_back(name);
        beside = Compose(" beside ", SelectorName(), " \"", selector, "\"");
    }
    return Compose("unexpected attribute ", Excerpt(attribute), beside, ", expected ",
                   names.empty() ? "none here" : "only " + Join(Quote(names), "and"));
}

ValueRule ElementRule::Selector() const
{
    std::vector<std::string> words;
    for (const auto& variant : Variants) {
        const std::vector<std::string>& more = variant.front().Value.Words();
        words.insert(words.end(), more.begin(), more.end());
    }
    return ValueRule(std::move(words));
}

} // namespace Mox::Host
