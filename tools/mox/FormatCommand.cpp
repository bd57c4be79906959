#include "Commands.h"
#include "mox/batch/MaterialFiles.h"
#include "mox/document/MaterialDocument.h"
#include "mox/host/AtomicFile.h"
#include "mox/host/File.h"
#include "mox/host/HostError.h"

#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace Mox::Tool {

namespace {

constexpr const char* footer =
    R"(A document in the one form stays as it is when it is written again, and a
changed value changes one line. Nothing of a document is lost. With --check
the exit status is 1 if a document is in another form. One that cannot be read
stops no other. A document that is read-only or has hard links is written with
--force only: it is replaced, and the other names keep the old document.

Examples:
  mox format rim.xml
  mox format materials --check
)";

struct FormatOptions
{
    std::vector<std::string> Files;
    bool IsCheck = false;
    bool IsForced = false;
};

/// @throws HostError if to replace a document changes more than what it says
void RequireReplaceable(const std::string& file)
{
    constexpr mode_t anyWriting = 0222;
    struct stat status = {};
    const Host::Place where{file};
    if (stat(file.c_str(), &status) != 0)
        return;
    if ((status.st_mode & anyWriting) == 0 || access(file.c_str(), W_OK) != 0)
        throw Host::HostError(where, "is read-only; --force replaces it all the same");
    if (status.st_nlink > 1) {
        throw Host::HostError(where, "has other hard links, which would keep the old document; "
                                     "--force replaces it all the same");
    }
}

/// @returns whether the document is in the canonical form afterwards
bool FormatDocument(const std::string& file, const FormatOptions& options)
{
    const std::string text = Host::FormatMaterialDocument(Host::ReadMaterialDocument(file));
    if (Host::ReadFile(file) == text)
        return true;
    if (options.IsCheck) {
        std::cout << file << '\n';
        return false;
    }
    if (!options.IsForced)
        RequireReplaceable(file);
    Host::WriteIfChanged(file, text);
    return true;
}

void FormatDocuments(const FormatOptions& options)
{
    bool isInForm = true;
    for (const Host::MaterialFile& material :
         Host::FindMaterials({options.Files.begin(), options.Files.end()}, 1)) {
        try {
            isInForm &= FormatDocument(material.Document, options);
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
    const auto options = std::make_shared<FormatOptions>();
    command->add_option("FILE", options->Files, "Material documents and folders")
        ->type_name("")
        ->required();
    auto* check =
        command->add_flag("--check", options->IsCheck, "Only list the documents that would change");
    command
        ->add_flag("--force", options->IsForced,
                   "Also replace documents that are read-only or have other hard links")
        ->excludes(check);
    command->footer(footer);
    command->callback([=] { FormatDocuments(*options); });
}

} // namespace Mox::Tool
