#pragma once

#include "mox/host/Problem.h"
#include "mox/xml/XmlTree.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <vector>

namespace Mox::Host {

/// Replaces the includes of a MaterialX document with the contents of the files. Only files in the
/// folder of the including file or its subfolders are read, and each file only once.
class MaterialXIncludes
{
public:
    /// The maximum total size of a document and all its includes.
    static constexpr std::size_t MostBytes = 64U << 20U;

    /// @param problems must outlive the object; receives errors in includes, and warnings for files
    ///        that are not read
    explicit MaterialXIncludes(ProblemList& problems) : _problems(problems) {}

    /// Must be called only once.
    /// @param root the root element of the document; its location contains the file name
    /// @param bytes the size of the document
    /// @returns the files that were read
    std::vector<std::filesystem::path> Resolve(XmlTree& root, std::size_t bytes);

private:
    void Expand(XmlTree& root);
    void Append(std::vector<XmlTree>& children, const XmlTree& include);
    XmlTree Read(const std::filesystem::path& file, const XmlTree& include);

    ProblemList& _problems;
    std::size_t _bytes = 0; ///< number of bytes read so far
    std::vector<std::filesystem::path> _open;
    std::set<std::filesystem::path> _seen;
    std::vector<std::filesystem::path> _files; ///< those read so far, as their includes name them
};

} // namespace Mox::Host
