#pragma once

#include "mox/host/HostError.h"
#include "mox/host/Problem.h"

#include <string>

namespace Mox::Python {

/// A view of a node or port that does not exist any more.
class StaleView : public Host::HostError
{
public:
    using HostError::HostError;
};

/// A material has errors, so that what was requested cannot be made of it.
class FaultyMaterial : public Host::HostError
{
public:
    /// @param problems have an error; the first one is the message
    explicit FaultyMaterial(const Host::ProblemList& problems);

    Host::ProblemList Problems;
};

/// Makes Python raise the exceptions of mox._errors for those of the host.
void TranslateErrors();

} // namespace Mox::Python
