#include "mox/interchange/ReadMaterial.h"

#include "mox/host/File.h"
#include "mox/interchange/MaterialXReader.h"
#include "mox/xml/XmlParser.h"

namespace Mox::Host {

namespace {

/// Stores the name of the root element and stops parsing there.
class RootName : public XmlHandler
{
public:
    explicit RootName(std::string_view text)
    {
        ProblemList problems;
        XmlParser parser({}, *this, problems);
        _parser = &parser;
        parser.Parse(text);
    }

    void StartElement(const XmlElement& element) override
    {
        Name = element.Name;
        _parser->Stop();
    }
    void EndElement() override {}
    void Text(std::string_view, int) override {}
    void Comment(std::string_view) override {}
    void Instruction(int) override {}

    std::string Name;

private:
    XmlParser* _parser = nullptr;
};

} // namespace

bool IsMaterialX(const std::filesystem::path& file, std::string_view text)
{
    return file.extension() == ".mtlx" || RootName(text).Name == "materialx";
}

MaterialDocument ReadMaterial(const std::filesystem::path& file, ProblemList& problems)
{
    return ReadDocumentText(
        file.string(), [&] { return ReadFile(file); }, ParseMaterial, problems);
}

MaterialDocument ReadMaterial(const std::filesystem::path& file)
{
    return WithoutErrors([&](ProblemList& problems) { return ReadMaterial(file, problems); });
}

MaterialDocument ParseMaterial(const std::string& file, std::string_view text,
                               ProblemList& problems)
{
    return IsMaterialX(file, text) ? ParseMaterialX(file, text, problems)
                                   : ParseMaterialDocument(file, text, problems);
}

MaterialDocument ParseMaterialX(const std::string& file, std::string_view text,
                                ProblemList& problems)
{
    return MaterialXReader(file, problems).Read(text);
}

} // namespace Mox::Host
