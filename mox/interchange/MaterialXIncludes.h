#pragma once

#include "mox/host/Problem.h"
#include "mox/xml/XmlTree.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <vector>

namespace Mox::Host {

/// Puts the contents of other MaterialX files in the place of a document's includes. Only files in
/// the folder of the including file or below are read, and each only once.
class MaterialXIncludes
{
public:
    /// The most that is read of a document and all that it includes.
    static constexpr std::size_t MostBytes = 64U << 20U;

    /// @param problems must outlive the object; takes what is wrong with includes, as errors, and
    ///        which files are not read, as warnings
    explicit MaterialXIncludes(ProblemList& problems) : _problems(problems) {}

    /// To be called once.
    /// @param root of the document; its place tells the file
    /// @param bytes of the document's text
    void Resolve(XmlTree& root, std::size_t bytes);

private:
    void Expand(XmlTree& root);
    void Append(std::vector<XmlTree>& children, const XmlTree& include);
    XmlTree Read(const std::filesystem::path& file, const XmlTree& include);

    ProblemList& _problems;
    std::size_t _bytes = 0; ///< read so far
    std::vector<std::filesystem::path> _open;
    std::set<std::filesystem::path> _seen;
};

} // namespace Mox::Host
