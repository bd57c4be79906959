#include "mox/document/MaterialDocument.h"

#include "mox/document/MaterialReader.h"
#include "mox/document/MaterialWriter.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

namespace Mox::Host {

MaterialDocument ReadMaterialDocument(const std::filesystem::path& file)
{
    ProblemList problems;
    MaterialDocument document = ReadMaterialDocument(file, problems);
    problems.ThrowFirstError();
    return document;
}

MaterialDocument ReadMaterialDocument(const std::filesystem::path& file, ProblemList& problems)
{
    std::string text;
    try {
        text = ReadFile(file);
    } catch (const HostError& error) {
        problems.Fail("unreadable", error);
        MaterialDocument document;
        document.File = file.string();
        return document;
    }
    return ParseMaterialDocument(file.string(), text, problems);
}

MaterialDocument ParseMaterialDocument(const std::string& file, std::string_view text,
                                       ProblemList& problems)
{
    return MaterialReader(file, problems).Read(text);
}

std::string FormatMaterialDocument(const MaterialDocument& document)
{
    MaterialWriter writer(document.File);
    writer.WriteDocument(document);
    return writer.Finish();
}

} // namespace Mox::Host
