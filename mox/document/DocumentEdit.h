#pragma once

#include "mox/document/IndexedDocument.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace Mox::Host {

/// One run of changes over the records of a document. Unless it is finished, it takes all of them
/// back in the end.
class DocumentEdit
{
public:
    explicit DocumentEdit(IndexedDocument& document) : _document(document) {}
    DocumentEdit(const DocumentEdit&) = delete;
    DocumentEdit& operator=(const DocumentEdit&) = delete;
    ~DocumentEdit();

    const IndexedDocument& Document() const { return _document; }

    /// Makes a step. A new record needs a number that is free.
    void Do(DocumentStep step);

    /// Steps for a node, an edge or a binding. Each number is that of a record.
    /// @param before number of the record that follows, or None
    /// @returns the number of the new record
    template <class Record>
    std::size_t Insert(Record record, std::size_t before)
    {
        const std::size_t index = _document.Reserve<Record>();
        Do(RecordChange<Record>{index, std::move(record), before});
        return index;
    }

    template <class Record>
    void Replace(std::size_t index, Record record)
    {
        const std::size_t next = RecordsOf<Record>(_document.Document()).Next(index);
        Do(RecordChange<Record>{index, std::move(record), next});
    }

    template <class Record>
    void Erase(std::size_t index)
    {
        Do(RecordChange<Record>{index, std::nullopt});
    }

    /// The steps so far, each turned into the one that takes it back, in the order of doing.
    const std::vector<DocumentStep>& Done() const { return _done; }

    /// Makes what was done final.
    /// @returns the change that takes it back
    DocumentChange Finish() noexcept;

private:
    void ForgetDone() noexcept;

    IndexedDocument& _document;
    std::vector<DocumentStep> _done;
};

} // namespace Mox::Host
