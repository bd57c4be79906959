#pragma once

#include "mox/batch/ExportBatch.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Mox::Host {

/// An output that no material has any longer.
struct LeftOutput
{
    std::filesystem::path File;
    std::string Reason; ///< why it is one, in words that follow the file's name
    bool IsRemoved = false;
};

/// The list of all files that exports have written into an output folder, with hashes of their
/// contents and the documents that they were made from. It is kept in that folder, in the file
/// ".mox-outputs", by paths relative to the folder, so both can be moved together.
class OutputRecord
{
public:
    /// @param folder the output folder; need not exist yet
    /// @param layout of the outputs that are added
    OutputRecord(const std::filesystem::path& folder, ExportLayout layout)
        : _folder(folder), _layout(layout)
    {}

    /// Adds what was exported from a document.
    /// @param outputs files in the folder
    void Add(const std::filesystem::path& document, std::vector<ExportedFile> outputs)
    {
        _added.push_back({document, std::move(outputs)});
    }

    /// Adds everything to the list in the folder, and finds the outputs that no material has any
    /// longer: those of documents that do not exist, and programs by content that no material
    /// names. Processes that do this at the same time wait for each other.
    /// @param prunes whether to remove these outputs. One that has other content than was exported,
    ///        or is reached through a symbolic link, is kept with a warning. No other export may
    ///        write into the folder at the same time.
    /// @param problems receives a warning for each output that is kept although it should be
    ///        removed, and if the list cannot be read or written
    /// @returns what is left and what was removed, by name, except for outputs with a warning
    std::vector<LeftOutput> Update(bool prunes, ProblemList& problems);

private:
    struct Export
    {
        std::filesystem::path Document;
        std::vector<ExportedFile> Outputs;
    };

    struct Entry
    {
        std::string Hash;
        std::set<std::string> Documents; ///< relative to the folder; none if no material has it
    };
    using Entries = std::map<std::string, Entry>; ///< by the file's name in the folder

    static bool Parse(const std::string& text, Entries& entries);
    static std::string Format(const Entries& entries);
    Entries Read(ProblemList& problems) const;
    void Write(const Entries& entries, ProblemList& problems) const;
    std::set<std::string> Merge(Entries& known, const std::filesystem::path& folder) const;
    std::string DescribeLeft(const Entry& entry) const;

    const std::filesystem::path _folder; ///< as it is named in messages
    const ExportLayout _layout;
    std::vector<Export> _added;
};

} // namespace Mox::Host
