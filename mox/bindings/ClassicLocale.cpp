#include "mox/bindings/ClassicLocale.h"

#include <new>

namespace Mox::Materials {

ClassicLocale::ClassicLocale() : _classic(newlocale(LC_ALL_MASK, "C", nullptr)), _previous(nullptr)
{
    if (!_classic)
        throw std::bad_alloc();
    _previous = uselocale(_classic);
}

ClassicLocale::~ClassicLocale()
{
    uselocale(_previous);
    freelocale(_classic);
}

} // namespace Mox::Materials
