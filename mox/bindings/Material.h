#pragma once

#include "mox/Export.h"
#include "mox/bindings/Binding.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

namespace Mox::Materials {

/// What nodes hand their bindings to.
class MOX_API Material : private boost::noncopyable
{
public:
    Material();
    ~Material();

    /// Appends a binding and keeps it.
    void AddBinding(const boost::shared_ptr<Binding>& binding);

    std::vector<boost::shared_ptr<Binding>> Bindings; ///< in the order of AddBinding
};

} // namespace Mox::Materials
