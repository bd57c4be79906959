#pragma once

#include "mox/host/HostError.h"
#include "mox/host/Problem.h"

namespace Mox::Python {

/// A view was used whose node or port no longer exists.
class StaleView : public Host::HostError
{
public:
    using HostError::HostError;
};

/// An operation is impossible because the material has errors.
class FaultyMaterial : public Host::HostError
{
public:
    /// @param problems must contain an error; the first one becomes the message
    explicit FaultyMaterial(const Host::ProblemList& problems);

    Host::ProblemList Problems;
};

/// Translates the host's exceptions into those of mox._errors.
void TranslateErrors();

} // namespace Mox::Python
