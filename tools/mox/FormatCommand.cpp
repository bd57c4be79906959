#include "Commands.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <iostream>

namespace Mox::Tool {

namespace {

constexpr const char* footer =
    R"(A document in the one form stays as it is when it is written again, and a
changed value changes one line. Nothing of a document is lost. With --check
the exit status is 1 if a document is in another form. One that cannot be read
stops no other.

Examples:
  mox format rim.xml
  mox format materials --check
)";

/// @returns whether the document is in the one form afterwards
bool FormatDocument(const std::string& file, bool isCheck)
{
    const std::string text = Host::FormatMaterialDocument(Host::ReadMaterialDocument(file));
    if (!isCheck) {
        Host::WriteIfChanged(file, text);
        return true;
    }
    const bool isInForm = Host::ReadFile(file) == text;
    if (!isInForm)
        std::cout << file << '\n';
    return isInForm;
}

void FormatDocuments(const std::vector<std::string>& files, bool isCheck)
{
    bool isInForm = true;
    for (const Host::MaterialFile& material : Host::FindMaterials({files.begin(), files.end()})) {
        try {
            isInForm &= FormatDocument(material.Document, isCheck);
        } catch (const Host::HostError& error) {
            std::cerr << "mox: " << error.what() << '\n';
            isInForm = false;
        }
    }
    if (!isInForm)
        throw CLI::RuntimeError(failureStatus);
}

} // namespace

void AddFormatCommand(CLI::App& program)
{
    auto* command = program.add_subcommand("format", "Bring material documents into the one form");
    const auto files = std::make_shared<std::vector<std::string>>();
    const auto isCheck = std::make_shared<bool>(false);
    command->add_option("FILE", *files, "Material documents and folders")
        ->type_name("")
        ->required();
    command->add_flag("--check", *isCheck, "Only list the documents that would change");
    command->footer(footer);
    command->callback([=] { FormatDocuments(*files, *isCheck); });
}

} // namespace Mox::Tool
