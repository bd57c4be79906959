#include "mox/program/Environment.h"

#include "mox/Text.h"
#include "mox/cg/Type.h"
#include "mox/document/MaterialRules.h"
#include "mox/host/AttributeText.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/host/SearchFolders.h"
#include "mox/program/ProgramGraph.h"
#include "mox/shader/ShaderNode.h"
#include "mox/xml/XmlTree.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>
#include <utility>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Indents each line by one tab and ends it with a newline.
std::string Indent(const std::string& body)
{
    std::istringstream lines(body);
    lines.exceptions(std::ios::badbit); // otherwise bad_alloc looks like the end
    std::string text;
    for (std::string line; std::getline(lines, line);)
        text += "\t" + line + "\n";
    return text;
}

constexpr const char* manifestName = "environment.xml";
constexpr std::size_t deepestInclude = 16;

/// Returns a path that identifies a file, whichever path it is reached by.
std::filesystem::path IdentityOf(const std::filesystem::path& file)
{
    std::error_code error;
    const auto identity = std::filesystem::weakly_canonical(file, error);
    return error ? file : identity;
}

/// Returns the line of the first character of an element's text that is not whitespace.
int FirstLineOf(const XmlTree& element)
{
    const std::size_t first = element.Text.find_first_not_of(" \t\r\n");
    const auto begin = element.Text.begin();
    const auto end = first == std::string::npos ? begin : std::next(begin, std::ptrdiff_t(first));
    return element.WhereText.Line - static_cast<int>(std::count(begin, end, '\n'));
}

/// A file of an environment and the files that it includes.
struct Manifest
{
    struct Include
    {
        std::size_t Index; ///< index of the included manifest
        bool WithOutputs;
    };

    std::vector<EnvironmentEntry> Values;
    std::vector<EnvironmentEntry> Outputs;
    std::vector<Include> Includes;
};

class EnvironmentReader
{
public:
    Environment Read(const std::filesystem::path& folder)
    {
        _environment.File = folder / manifestName;
        ReadManifest(_environment.File);
        JoinManifests();
        return std::move(_environment);
    }

private:
    /// Reads a manifest. Included manifests are read first, so that their code is defined before
    /// code that calls it and their uniforms keep their positions in the uniform blocks.
    /// @returns the index of the manifest
    std::size_t ReadManifest(const std::filesystem::path& file)
    {
        const std::filesystem::path identity = IdentityOf(file);
        if (const auto known = _numbers.find(identity); known != _numbers.end())
            return known->second;
        _open.push_back(identity);
        _environment.Files.push_back(file);
        const XmlTree root = ReadXmlTree(file);
        if (root.Name != "environment")
            throw HostError(root.Where, "the root element is not <environment>");
        if (Attribute(root, "version") != "1")
            throw HostError(root.Where, "only version 1 of the environment format is supported");
        Manifest manifest;
        const std::vector<XmlTree>& children = ChildrenOf(root);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (child->Name == "include")
                manifest.Includes.push_back(ReadInclude(*child));
        }
        for (const XmlTree& child : children) {
            if (child.Name == "code")
                ReadCode(child);
            else if (child.Name == "value")
                manifest.Values.push_back(ReadEntry(child));
            else if (child.Name == "output")
                manifest.Outputs.push_back(ReadOutput(child));
            else if (child.Name != "include")
                throw HostError(child.Where,
                                "only <include>, <code>, <value> and <output> are allowed here");
        }
        _open.pop_back();
        _manifests.push_back(std::move(manifest));
        return _numbers[identity] = _manifests.size() - 1;
    }

    Manifest::Include ReadInclude(const XmlTree& element)
    {
        const std::filesystem::path file = FindFile(element);
        if (std::find(_open.begin(), _open.end(), IdentityOf(file)) != _open.end())
            throw HostError(element.Where, "the file includes itself");
        if (_open.size() == deepestInclude)
            throw HostError(element.Where, Compose("files include one another more than ",
                                                   deepestInclude, " levels deep"));
        const std::string only = element.Get("only");
        if (!only.empty() && only != "values")
            throw HostError(element.Where, "attribute \"only\" is not \"values\"");
        return {ReadManifest(file), only.empty()};
    }

    /// Merges the manifests, last to first. A manifest has a higher index than everything it
    /// includes, and of its includes the first has the highest index. So in reverse order each
    /// manifest precedes all that it includes, directly or indirectly.
    void JoinManifests()
    {
        std::vector<bool> hasOutputs(_manifests.size());
        hasOutputs.back() = true;
        for (std::size_t i = _manifests.size(); i-- > 0;) {
            Manifest& manifest = _manifests[i];
            for (const Manifest::Include& include : manifest.Includes) {
                if (hasOutputs[i] && include.WithOutputs)
                    hasOutputs[include.Index] = true;
            }
            Append(_environment.Values, std::move(manifest.Values));
            if (hasOutputs[i])
                Append(_environment.Outputs, std::move(manifest.Outputs));
        }
    }

    static void Append(std::vector<EnvironmentEntry>& list, std::vector<EnvironmentEntry> entries)
    {
        std::move(entries.begin(), entries.end(), std::back_inserter(list));
    }

    void ReadCode(const XmlTree& element)
    {
        const std::filesystem::path file = FindFile(element);
        const auto [known, isNew] = _code.emplace(IdentityOf(file), _environment.Code.size());
        if (isNew) {
            _environment.Code.push_back({{}, ReadFile(file), file, element.Where});
            _environment.Files.push_back(file);
        }
        std::vector<std::string>& provided = _environment.Code[known->second].Provides;
        std::istringstream names(Attribute(element, "provides"));
        names.exceptions(std::ios::badbit);
        for (std::string name; names >> name;) {
            if (std::find(provided.begin(), provided.end(), name) == provided.end())
                provided.push_back(name);
        }
    }

    /// Resolves the file that an element names, relative to the manifest. The name may lead to
    /// parent folders as long as these are environments themselves; it may not leave the manifest's
    /// folder in any other way.
    static std::filesystem::path FindFile(const XmlTree& element)
    {
        const std::filesystem::path name = Attribute(element, "file");
        std::filesystem::path folder = std::filesystem::path(element.Where.File).parent_path();
        std::filesystem::path rest;
        bool isInside = true;
        for (const std::filesystem::path& part : name) {
            if (part != ".." || !rest.empty()) {
                rest /= part;
                continue;
            }
            folder /= part;
            std::error_code error;
            isInside = isInside && std::filesystem::exists(folder / manifestName, error);
        }
        if (!isInside || !StaysInFolder(rest)) {
            throw HostError(element.Where, Compose("the file \"", name.string(),
                                                   "\" is outside the environment's folder"));
        }
        const std::filesystem::path file = folder / rest;
        const std::filesystem::path plain = file.lexically_normal();
        return IsSameFile(plain, file) ? plain : file;
    }

    EnvironmentEntry ReadEntry(const XmlTree& element)
    {
        EnvironmentEntry entry;
        entry.Name = Attribute(element, "name");
        entry.Type = TypeOf(element);
        entry.Where = element.Where;
        entry.When = ParseConditions(element.Get("when"));
        for (const Condition& condition : entry.When)
            CheckCondition(element, condition);
        const std::string level = element.Get("level");
        if (level == "vertex")
            entry.Level = ShaderLevel::Vertex;
        else if (level == "fragment")
            entry.Level = ShaderLevel::Fragment;
        else if (!level.empty())
            throw HostError(element.Where,
                            "attribute \"level\" is neither \"vertex\" nor \"fragment\"");
        for (const XmlTree& child : ChildrenOf(element)) {
            if (child.Name == "in")
                entry.Inputs.push_back(ReadInput(child));
            else if (child.Name == "body")
                ReadBody(child, entry);
            else
                throw HostError(child.Where, "only <in> and <body> are allowed here");
        }
        if (entry.Body.empty() && entry.Inputs.size() != 1)
            throw HostError(element.Where, "an element without a <body> needs exactly one <in>");
        return entry;
    }

    static void CheckCondition(const XmlTree& element, const Condition& condition)
    {
        if (condition.Name.empty())
            throw HostError(element.Where, "attribute \"when\" contains an empty condition");
        for (const std::string& value : condition.Values)
            CheckState(element, condition.Name, value);
    }

    /// Checks that an attribute of the render state can have a value, so that a misspelt condition
    /// is an error rather than one that never holds.
    static void CheckState(const XmlTree& element, const std::string& name,
                           const std::string& value)
    {
        const XmlAttribute attribute{name, value};
        for (const AttributeProblem& problem : RenderStateRule.Check({&attribute, 1}))
            throw HostError(element.Where, Compose("render state: ", problem.Message));
    }

    static void ReadBody(const XmlTree& element, EnvironmentEntry& entry)
    {
        if (!element.Children.empty())
            throw HostError(element.Children.front().Where, "only text is allowed here");
        entry.Body = Indent(element.Text);
        entry.BodyLine = FirstLineOf(element);
    }

    EnvironmentEntry ReadOutput(const XmlTree& element)
    {
        EnvironmentEntry entry = ReadEntry(element);
        const std::string word = Attribute(element, "register");
        if (word == "VertexPosition")
            entry.Register = ShaderRegister(ShaderRegisterType::VertexPosition, 0);
        else if (word == "FragmentColorOut")
            entry.Register = ShaderRegister(ShaderRegisterType::FragmentColorOut, 0);
        else if (word == "FragmentDepth")
            entry.Register = ShaderRegister(ShaderRegisterType::FragmentDepth, 0);
        else
            throw HostError(element.Where,
                            "attribute \"register\" is not one of \"VertexPosition\", "
                            "\"FragmentColorOut\" or \"FragmentDepth\"");
        return entry;
    }

    EnvironmentInput ReadInput(const XmlTree& element)
    {
        EnvironmentInput input{Attribute(element, "name"), TypeOf(element),
                               EnvironmentSource::Value,   "",
                               element.Get("default"),     element.Where};
        RequireCgName(element, input.Name);
        const std::string stream = element.Get("stream");
        const std::string uniform = element.Get("uniform");
        const std::string value = element.Get("value");
        const std::string state = element.Get("state");
        if (stream.empty() + uniform.empty() + value.empty() + state.empty() != 3) {
            throw HostError(
                element.Where,
                "exactly one of \"stream\", \"uniform\", \"value\" and \"state\" is required");
        }
        if (!stream.empty())
            input.Source = EnvironmentSource::Stream;
        else if (!uniform.empty())
            input.Source = EnvironmentSource::Uniform;
        else if (!state.empty())
            input.Source = EnvironmentSource::State;
        input.SourceName = stream + uniform + value + state;
        if (!state.empty())
            CheckState(element, state, input.Default);
        else if (value.empty())
            RequireCgName(element, input.SourceName);
        if (!uniform.empty() && !IsSampler(input.Type))
            DeclareUniform(element, input);
        else if (element.Find("per"))
            throw HostError(element.Where,
                            "\"per\" is allowed only with a \"uniform\" that is not a texture");
        return input;
    }

    /// Declares a uniform; all inputs that read it must agree on its type and rate. The default
    /// rate is per object, which is safe: a value set for each object may still be the same for
    /// all.
    void DeclareUniform(const XmlTree& element, const EnvironmentInput& input)
    {
        const std::string* per = element.Find("per");
        if (per && *per != "frame" && *per != "object")
            throw HostError(element.Where, "attribute \"per\" is neither \"frame\" nor \"object\"");
        const UniformRate rate = per && *per == "frame" ? UniformRate::Frame : UniformRate::Object;
        for (const EnvironmentUniform& known : _environment.Uniforms) {
            if (known.Name != input.SourceName)
                continue;
            if (known.Type != input.Type || known.Rate != rate)
                throw HostError(element.Where,
                                Compose("the uniform \"", known.Name, "\" is declared as ",
                                        known.Type.Format(), " per ", GetRateName(known.Rate),
                                        " elsewhere"));
            return;
        }
        _environment.Uniforms.push_back({input.SourceName, input.Type, rate});
    }

    void RequireCgName(const XmlTree& element, const std::string& name) const
    {
        if (!ShaderNode::IsValidCgName(name))
            throw HostError(element.Where, Compose("\"", name, "\" is not a valid Cg name"));
    }

    ShaderType TypeOf(const XmlTree& element) const
    {
        const std::string text = Attribute(element, "type");
        const auto type = ParseShaderType(text);
        Cg::Type known;
        if (!type || !Cg::FindBuiltInType(text.substr(0, text.find('[')), known))
            throw HostError(element.Where, Compose("\"", text, "\" is not a Cg type"));
        return *type;
    }

    static const std::vector<XmlTree>& ChildrenOf(const XmlTree& element)
    {
        if (element.WhereText.Line > 0)
            throw HostError(element.WhereText, "text is not allowed here");
        return element.Children;
    }

    static std::string Attribute(const XmlTree& element, const char* name)
    {
        std::string value = element.Get(name);
        if (value.empty())
            throw HostError(element.Where, Compose("attribute \"", name, "\" is missing"));
        return value;
    }

    Environment _environment;
    std::vector<std::filesystem::path> _open; ///< manifests being read
    std::vector<Manifest> _manifests;
    std::map<std::filesystem::path, std::size_t> _numbers; ///< manifest indices by identity
    std::map<std::filesystem::path, std::size_t> _code;    ///< likewise for code files
};

} // namespace

Environment ReadEnvironment(const std::filesystem::path& folder)
{
    return EnvironmentReader().Read(folder);
}

std::filesystem::path DefaultEnvironmentFolder()
{
    return (LibraryFolder() / MOX_DATA_FROM_LIBRARIES / "environment").lexically_normal();
}

} // namespace Mox::Host
