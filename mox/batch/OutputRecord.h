#pragma once

#include "mox/batch/ExportBatch.h"

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Mox::Host {

/// An output that no longer belongs to any material.
struct LeftOutput
{
    std::filesystem::path File;
    std::string Reason; ///< why it is left over, phrased to follow the file's name
    bool IsRemoved = false;
};

/// The list of all files that exports have written into an output folder, with hashes of their
/// content and the documents from which they were made. It is stored in that folder, in
/// ".mox-outputs", and its paths are relative to the folder, so everything can be moved together.
class OutputRecord
{
public:
    /// @param folder the output folder; need not exist yet
    /// @param layout of the outputs that are added
    OutputRecord(const std::filesystem::path& folder, ExportLayout layout)
        : _folder(folder), _layout(layout)
    {}

    /// Adds the outputs exported from a document.
    /// @param outputs files in the folder
    void Add(const std::filesystem::path& document, std::vector<ExportedFile> outputs)
    {
        _added.push_back({document, std::move(outputs)});
    }

    /// Merges everything added so far into the list in the folder, and finds outputs that no longer
    /// belong to any material: those of deleted documents, and programs stored by content that no
    /// material names. Concurrent processes wait for each other.
    /// @param prunes whether to remove these outputs. An output that has changed since it was
    ///        exported, or that is reached through a symbolic link, is kept with a warning. No
    ///        other export may write into the folder at the same time.
    /// @param problems receives a warning for each output that could not be removed, and if the
    ///        list cannot be read or written
    /// @returns outputs that are left over or were removed, sorted by name, except those with a
    ///          warning
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
        std::set<std::string> Documents; ///< relative to the folder; empty if the output belongs to
                                         ///< no material
    };
    using Entries = std::map<std::string, Entry>; ///< keyed by the file's name in the folder

    static bool Parse(const std::string& text, Entries& entries);
    static std::string Format(const Entries& entries);
    Entries Read(ProblemList& problems) const;
    void Write(const Entries& entries, ProblemList& problems) const;
    std::set<std::string> Merge(Entries& known, const std::filesystem::path& folder) const;
    std::string DescribeLeft(const Entry& entry) const;

    const std::filesystem::path _folder; ///< as messages name it
    const ExportLayout _layout;
    std::vector<Export> _added;
};

} // namespace Mox::Host
