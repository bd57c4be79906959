#include "mox/interchange/ReadMaterial.h"

#include "mox/Text.h"
#include "mox/host/File.h"
#include "mox/interchange/MaterialXIncludes.h"
#include "mox/interchange/MaterialXReader.h"
#include "mox/interchange/StandardNodes.h"
#include "mox/xml/XmlParser.h"
#include "mox/xml/XmlTree.h"

#include <algorithm>

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

MaterialDocument ParseEither(const std::string& file, std::string_view text,
                             const MaterialXOptions& options, ProblemList& problems)
{
    if (IsMaterialX(file, text))
        return MaterialXReader(file, options, problems).Read(text);
    if (!options.Material.empty())
        problems.Fail("interchange-file", {file},
                      "is not a MaterialX document, so no material can be chosen");
    return ParseMaterialDocument(file, text, problems);
}

} // namespace

bool IsMaterialX(const std::filesystem::path& file, std::string_view text)
{
    return file.extension() == ".mtlx" || RootName(text).Name == "materialx";
}

bool MayHoldMaterialX(const std::string& file) noexcept
{
    try {
        const std::string text = ReadFile(file);
        if (text.size() > MaterialXIncludes::MostBytes)
            return true;
        XmlTree root = ParseXmlTree(file, text);
        ProblemList problems; // discarded; reading the document reports them
        MaterialXIncludes(problems).Resolve(root, text.size());
        return root.Name != "materialx" ||
               std::ranges::any_of(root.Children, [](const XmlTree& child) {
                   return child.Name == "surfacematerial" ||
                          GetStandardNodes().FindSurface(child.Name);
               });
    } catch (...) {
        return true;
    }
}

MaterialDocument ReadMaterial(const std::filesystem::path& file, ProblemList& problems,
                              const std::string& material)
{
    return ReadDocumentText(
        file.string(), [&] { return ReadFile(file); },
        [&](const std::string& name, std::string_view text, ProblemList& found) {
            return ParseEither(name, text, {true, material}, found);
        },
        problems);
}

MaterialDocument ReadMaterial(const std::filesystem::path& file)
{
    return WithoutErrors([&](ProblemList& problems) { return ReadMaterial(file, problems); });
}

MaterialDocument ParseMaterial(const std::string& file, std::string_view text,
                               ProblemList& problems, const std::string& material)
{
    return ParseEither(file, text, {false, material}, problems);
}

MaterialDocument ParseMaterialX(const std::string& file, std::string_view text,
                                ProblemList& problems)
{
    return MaterialXReader(file, {}, problems).Read(text);
}

void RefuseMaterialX(const std::filesystem::path& file, std::string_view text)
{
    if (!IsMaterialX(file, text))
        return;
    const std::filesystem::path document = std::filesystem::path(file).replace_extension(".xml");
    throw HostError(file.string(),
                    Materials::Compose("is a MaterialX document; \"mox convert ", file.string(),
                                       " -o ", document.string(), "\" converts it to a material"));
}

} // namespace Mox::Host
