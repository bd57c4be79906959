#include "mox/program/Environment.h"

#include "mox/Text.h"
#include "mox/cg/Type.h"
#include "mox/document/MaterialRules.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/host/LibraryFolder.h"
#include "mox/program/ProgramGraph.h"
#include "mox/program/ShaderTypeText.h"
#include "mox/shader/ShaderNode.h"
#include "mox/xml/XmlTree.h"

#include <sstream>

namespace Mox::Host {

namespace {

using Materials::Compose;

/// Each line with one tab before it and a newline behind it.
std::string Indent(const std::string& body)
{
    std::istringstream lines(body);
    lines.exceptions(std::ios::badbit); // otherwise a lack of memory looks like the end
    std::string text;
    for (std::string line; std::getline(lines, line);)
        text += "\t" + line + "\n";
    return text;
}

class EnvironmentReader
{
public:
    explicit EnvironmentReader(const std::filesystem::path& folder) : _folder(folder)
    {
        _environment.File = folder / "environment.xml";
        _environment.Files.push_back(_environment.File);
    }

    Environment Read()
    {
        const XmlTree root = ReadXmlTree(_environment.File);
        if (root.Name != "environment")
            throw HostError(root.Where, "the root element is not <environment>");
        if (Attribute(root, "version") != "1")
            throw HostError(root.Where, "only version 1 of an environment is read");
        for (const XmlTree& child : ChildrenOf(root)) {
            if (child.Name == "code")
                ReadCode(child);
            else if (child.Name == "value")
                _environment.Values.push_back(ReadEntry(child));
            else if (child.Name == "output")
                ReadOutput(child);
            else
                throw HostError(child.Where, "only <code>, <value> and <output> are allowed here");
        }
        return std::move(_environment);
    }

private:
    void ReadCode(const XmlTree& element)
    {
        const std::string fileName = Attribute(element, "file");
        if (!StaysInFolder(fileName)) {
            throw HostError(element.Where, Compose("the file \"", fileName,
                                                   "\" is outside the environment's folder"));
        }
        const std::filesystem::path file = _folder / fileName;
        EnvironmentCode code;
        std::istringstream names(Attribute(element, "provides"));
        names.exceptions(std::ios::badbit);
        for (std::string name; names >> name;)
            code.Provides.push_back(name);
        code.Text = ReadFile(file);
        _environment.Files.push_back(file);
        _environment.Code.push_back(std::move(code));
    }

    EnvironmentEntry ReadEntry(const XmlTree& element)
    {
        EnvironmentEntry entry;
        entry.Name = Attribute(element, "name");
        entry.Type = TypeOf(element);
        entry.Line = element.Where.Line;
        entry.When = ParseConditions(OptionalAttribute(element, "when"));
        for (const Condition& condition : entry.When)
            CheckCondition(element, condition);
        const std::string level = OptionalAttribute(element, "level");
        if (level == "vertex")
            entry.Level = ShaderLevel::Vertex;
        else if (level == "fragment")
            entry.Level = ShaderLevel::Fragment;
        else if (!level.empty())
            throw HostError(element.Where, "level is neither \"vertex\" nor \"fragment\"");
        for (const XmlTree& child : ChildrenOf(element)) {
            if (child.Name == "in")
                entry.Inputs.push_back(ReadInput(child));
            else if (child.Name == "body")
                entry.Body = ReadBody(child);
            else
                throw HostError(child.Where, "only <in> and <body> are allowed here");
        }
        if (entry.Body.empty() && entry.Inputs.size() != 1)
            throw HostError(element.Where, "without a <body> there must be exactly one <in>");
        return entry;
    }

    static void CheckCondition(const XmlTree& element, const Condition& condition)
    {
        if (condition.Name.empty())
            throw HostError(element.Where, "a condition is empty");
        for (const std::string& value : condition.Values)
            CheckState(element, condition.Name, value);
    }

    /// Whether the render state may have a value, so that what is misspelt is no condition that
    /// never holds.
    static void CheckState(const XmlTree& element, const std::string& name,
                           const std::string& value)
    {
        const XmlAttribute attribute{name, value};
        for (const AttributeProblem& problem : RenderStateRule.Check({&attribute, 1}))
            throw HostError(element.Where, Compose("render state: ", problem.Message));
    }

    static std::string ReadBody(const XmlTree& element)
    {
        if (!element.Children.empty())
            throw HostError(element.Children.front().Where, "only text is allowed here");
        return Indent(element.Text);
    }

    void ReadOutput(const XmlTree& element)
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
            throw HostError(element.Where, "register is none of \"VertexPosition\", "
                                           "\"FragmentColorOut\" and \"FragmentDepth\"");
        _environment.Outputs.push_back(std::move(entry));
    }

    EnvironmentInput ReadInput(const XmlTree& element)
    {
        EnvironmentInput input{Attribute(element, "name"), TypeOf(element),
                               EnvironmentSource::Value, "", OptionalAttribute(element, "default")};
        RequireCgName(element, input.Name);
        const std::string stream = OptionalAttribute(element, "stream");
        const std::string uniform = OptionalAttribute(element, "uniform");
        const std::string value = OptionalAttribute(element, "value");
        const std::string state = OptionalAttribute(element, "state");
        if (stream.empty() + uniform.empty() + value.empty() + state.empty() != 3) {
            throw HostError(element.Where, "exactly one of \"stream\", \"uniform\", \"value\" and "
                                           "\"state\" must be there");
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
            throw HostError(element.Where, "\"per\" is for a \"uniform\" that is no texture");
        return input;
    }

    /// All inputs that read one uniform must agree on it. Per object is a safe default: a value
    /// that is set for each object may as well be the same for all.
    void DeclareUniform(const XmlTree& element, const EnvironmentInput& input)
    {
        const std::string* per = element.Find("per");
        if (per && *per != "frame" && *per != "object")
            throw HostError(element.Where, "per is neither \"frame\" nor \"object\"");
        const UniformRate rate = per && *per == "frame" ? UniformRate::Frame : UniformRate::Object;
        for (const EnvironmentUniform& known : _environment.Uniforms) {
            if (known.Name != input.SourceName)
                continue;
            if (known.Type != input.Type || known.Rate != rate)
                throw HostError(element.Where,
                                Compose("the uniform \"", known.Name, "\" is ", known.Type.Format(),
                                        " per ", GetRateName(known.Rate), " elsewhere"));
            return;
        }
        _environment.Uniforms.push_back({input.SourceName, input.Type, rate});
    }

    void RequireCgName(const XmlTree& element, const std::string& name) const
    {
        if (!ShaderNode::IsValidCgName(name))
            throw HostError(element.Where, Compose("\"", name, "\" is no Cg name"));
    }

    ShaderType TypeOf(const XmlTree& element) const
    {
        const std::string text = Attribute(element, "type");
        const auto type = ParseShaderType(text);
        Cg::Type known;
        if (!type || !Cg::FindBuiltInType(text.substr(0, text.find('[')), known))
            throw HostError(element.Where, Compose("\"", text, "\" is no Cg type"));
        return *type;
    }

    static const std::vector<XmlTree>& ChildrenOf(const XmlTree& element)
    {
        if (element.WhereText.Line > 0)
            throw HostError(element.WhereText, "text is not allowed here");
        return element.Children;
    }

    static std::string OptionalAttribute(const XmlTree& element, const char* name)
    {
        const std::string* value = element.Find(name);
        return value ? *value : std::string();
    }

    static std::string Attribute(const XmlTree& element, const char* name)
    {
        std::string value = OptionalAttribute(element, name);
        if (value.empty())
            throw HostError(element.Where, Compose("attribute \"", name, "\" is missing"));
        return value;
    }

    std::filesystem::path _folder;
    Environment _environment;
};

} // namespace

Environment ReadEnvironment(const std::filesystem::path& folder)
{
    return EnvironmentReader(folder).Read();
}

std::filesystem::path DefaultEnvironmentFolder()
{
    return (LibraryFolder() / MOX_DATA_FROM_LIBRARIES / "environment").lexically_normal();
}

} // namespace Mox::Host
