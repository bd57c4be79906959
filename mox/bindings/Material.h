#pragma once

#include "mox/Export.h"
#include "mox/bindings/Binding.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

namespace Mox::Materials {

/// Receives the bindings that nodes create.
class MOX_API Material : private boost::noncopyable
{
public:
    Material();
    ~Material();

    /// Appends a binding and shares ownership of it.
    void AddBinding(const boost::shared_ptr<Binding>& binding);

    std::vector<boost::shared_ptr<Binding>> Bindings; ///< in the order of the AddBinding calls
};

} // namespace Mox::Materials
