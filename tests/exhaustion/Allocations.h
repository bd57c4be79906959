#pragma once

#include <cstddef>

/// The allocations of this program, of the libraries that it links and of the plug-ins that it
/// loads: operator new wherever it is called, and libxml2's own. Not synchronised.
namespace Allocations {

/// Which allocations fail, counted from 1 for the next one.
enum class Shortage
{
    Once,   ///< the given one alone: a request too large for what is left
    Lasting ///< the given one and all behind it, so that cleaning up must do without
};

/// Whose allocations.
enum class Owner
{
    New, ///< operator new
    Xml, ///< libxml2
    All,
};

/// Blocks that are allocated now.
std::size_t LiveCount(Owner owner);

/// From now on the number-th allocation of an owner fails.
void FailAt(std::size_t number, Shortage shortage, Owner owner = Owner::All);

/// Ends the failing.
/// @returns whether an allocation has failed
bool EndFailing();

/// Directs libxml2's memory through here; before anything else uses it.
void TakeOverXml();

} // namespace Allocations
