#include "mox/program/Environment.h"

#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"
#include "mox/host/LibraryFolder.h"
#include "mox/program/ShaderTypeText.h"
#include "mox/shader/ShaderNode.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <memory>
#include <new>
#include <sstream>

namespace Mox::Host {

namespace {

using Materials::Compose;

struct XmlFree
{
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
    void operator()(xmlChar* text) const { xmlFree(text); }
};

const xmlChar* Bytes(const char* text)
{
    return reinterpret_cast<const xmlChar*>(text);
}

std::string ToString(const xmlChar* text)
{
    return text ? reinterpret_cast<const char*>(text) : std::string();
}

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
        Parse(ReadFile(_environment.File));
        const xmlNode* root = xmlDocGetRootElement(_document.get());
        if (NameOf(root) != "environment")
            throw HostError(PlaceOf(root), "the root element is not <environment>");
        if (Attribute(root, "version") != "1")
            throw HostError(PlaceOf(root), "only version 1 of an environment is read");
        ForEachChild(root, [this](const xmlNode* child) {
            if (NameOf(child) == "code")
                ReadCode(child);
            else if (NameOf(child) == "value")
                _environment.Values.push_back(ReadEntry(child));
            else if (NameOf(child) == "output")
                ReadOutput(child);
            else
                throw HostError(PlaceOf(child),
                                "only <code>, <value> and <output> are allowed here");
        });
        return std::move(_environment);
    }

private:
    void Parse(const std::string& bytes)
    {
        const std::unique_ptr<xmlParserCtxt, XmlFree> parser(xmlNewParserCtxt());
        if (!parser)
            throw std::bad_alloc();
        _document.reset(xmlCtxtReadMemory(
            parser.get(), bytes.data(), static_cast<int>(bytes.size()), _environment.File.c_str(),
            nullptr,
            XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NOCDATA));
        const int code = parser->lastError.code;
        if (code == XML_ERR_NO_MEMORY || (!_document && code == XML_ERR_OK))
            throw std::bad_alloc();
        if (!_document) {
            std::string message = parser->lastError.message ? parser->lastError.message : "";
            while (!message.empty() && message.back() == '\n')
                message.pop_back();
            throw HostError({_environment.File.string(), parser->lastError.line, {}, {}}, message);
        }
        if (_document->intSubset) {
            throw HostError({_environment.File.string(), 0, {}, {}},
                            "document type declarations are not allowed");
        }
    }

    void ReadCode(const xmlNode* element)
    {
        const std::filesystem::path file = _folder / Attribute(element, "file");
        EnvironmentCode code;
        std::istringstream names(Attribute(element, "provides"));
        names.exceptions(std::ios::badbit);
        for (std::string name; names >> name;)
            code.Provides.push_back(name);
        code.Text = ReadFile(file);
        _environment.Files.push_back(file);
        _environment.Code.push_back(std::move(code));
    }

    EnvironmentEntry ReadEntry(const xmlNode* element)
    {
        EnvironmentEntry entry;
        entry.Name = Attribute(element, "name");
        entry.Type = TypeOf(element);
        entry.Line = static_cast<int>(xmlGetLineNo(element));
        entry.When = OptionalAttribute(element, "when");
        const std::string level = OptionalAttribute(element, "level");
        if (level == "vertex")
            entry.Level = ShaderLevel::Vertex;
        else if (level == "fragment")
            entry.Level = ShaderLevel::Fragment;
        else if (!level.empty())
            throw HostError(PlaceOf(element), "level is neither \"vertex\" nor \"fragment\"");
        ForEachChild(element, [&](const xmlNode* child) {
            if (NameOf(child) == "in") {
                entry.Inputs.push_back(ReadInput(child));
            } else if (NameOf(child) == "body") {
                const std::unique_ptr<xmlChar, XmlFree> text(xmlNodeGetContent(child));
                if (!text)
                    throw std::bad_alloc();
                entry.Body = Indent(ToString(text.get()));
            } else {
                throw HostError(PlaceOf(child), "only <in> and <body> are allowed here");
            }
        });
        if (entry.Body.empty() && entry.Inputs.size() != 1)
            throw HostError(PlaceOf(element), "without a <body> there must be exactly one <in>");
        return entry;
    }

    void ReadOutput(const xmlNode* element)
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
            throw HostError(PlaceOf(element), "register is none of \"VertexPosition\", "
                                              "\"FragmentColorOut\" and \"FragmentDepth\"");
        _environment.Outputs.push_back(std::move(entry));
    }

    EnvironmentInput ReadInput(const xmlNode* element)
    {
        EnvironmentInput input{Attribute(element, "name"), TypeOf(element),
                               EnvironmentSource::Value, "", OptionalAttribute(element, "default")};
        RequireCgName(element, input.Name);
        const std::string stream = OptionalAttribute(element, "stream");
        const std::string uniform = OptionalAttribute(element, "uniform");
        const std::string value = OptionalAttribute(element, "value");
        if (stream.empty() + uniform.empty() + value.empty() != 2) {
            throw HostError(PlaceOf(element),
                            "exactly one of \"stream\", \"uniform\" and \"value\" must be there");
        }
        if (!stream.empty())
            input.Source = EnvironmentSource::Stream;
        else if (!uniform.empty())
            input.Source = EnvironmentSource::Uniform;
        input.SourceName = stream + uniform + value;
        if (value.empty())
            RequireCgName(element, input.SourceName);
        return input;
    }

    void RequireCgName(const xmlNode* element, const std::string& name) const
    {
        if (!ShaderNode::IsValidCgName(name))
            throw HostError(PlaceOf(element), Compose("\"", name, "\" is no Cg name"));
    }

    ShaderType TypeOf(const xmlNode* element) const
    {
        const std::string text = Attribute(element, "type");
        const auto type = ParseShaderType(text);
        if (!type)
            throw HostError(PlaceOf(element), Compose("\"", text, "\" is no Cg type"));
        return *type;
    }

    template <class Visit>
    void ForEachChild(const xmlNode* parent, Visit visit) const
    {
        for (const xmlNode* child = parent->children; child; child = child->next) {
            if (child->type == XML_ELEMENT_NODE)
                visit(child);
            else if (child->type != XML_COMMENT_NODE && !xmlIsBlankNode(child))
                throw HostError(PlaceOf(child), "text is not allowed here");
        }
    }

    static std::string NameOf(const xmlNode* element) { return ToString(element->name); }

    static std::string OptionalAttribute(const xmlNode* element, const char* name)
    {
        if (!xmlHasProp(element, Bytes(name)))
            return {};
        const std::unique_ptr<xmlChar, XmlFree> text(xmlGetProp(element, Bytes(name)));
        if (!text)
            throw std::bad_alloc();
        return ToString(text.get());
    }

    std::string Attribute(const xmlNode* element, const char* name) const
    {
        std::string value = OptionalAttribute(element, name);
        if (value.empty())
            throw HostError(PlaceOf(element), Compose("attribute \"", name, "\" is missing"));
        return value;
    }

    Place PlaceOf(const xmlNode* node) const
    {
        return {_environment.File.string(), static_cast<int>(xmlGetLineNo(node)), {}, {}};
    }

    std::filesystem::path _folder;
    Environment _environment;
    std::unique_ptr<xmlDoc, XmlFree> _document;
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
