#include "mox/document/DocumentEdit.h"

#include <algorithm>
#include <utility>

namespace Mox::Host {

DocumentEdit::~DocumentEdit()
{
    for (auto step = _done.rbegin(); step != _done.rend(); ++step)
        _document.Exchange(*step);
    ForgetDone();
}

void DocumentEdit::Do(DocumentStep step)
{
    _document.Prepare(step);
    _done.push_back(std::move(step));
    _document.Exchange(_done.back());
}

DocumentChange DocumentEdit::Finish() noexcept
{
    ForgetDone();
    std::reverse(_done.begin(), _done.end());
    return {std::exchange(_done, {})};
}

void DocumentEdit::ForgetDone() noexcept
{
    for (const DocumentStep& step : _done)
        _document.Forget(step);
}

} // namespace Mox::Host
