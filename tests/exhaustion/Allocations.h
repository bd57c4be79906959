#pragma once

#include <cstddef>

/// Counts and fails allocations of this program, its libraries and the plug-ins that it loads:
/// operator new, wherever it is called, and those of libxml2. Not synchronised.
namespace Allocations {

/// Which allocations fail, counted from 1 for the next one.
enum class Shortage
{
    Once,   ///< only the given one, like a request that is too large for the remaining memory
    Lasting ///< the given one and all later ones, so that cleaning up must not allocate
};

/// Whose allocations are meant.
enum class Owner
{
    New, ///< operator new
    Xml, ///< libxml2
    All,
};

/// The number of blocks currently allocated.
std::size_t LiveCount(Owner owner);

/// Makes the number-th of the following allocations of an owner fail.
void FailAt(std::size_t number, Shortage shortage, Owner owner = Owner::All);

/// Stops failing allocations.
/// @returns whether an allocation has failed
bool EndFailing();

/// Redirects libxml2's allocations to this module; must be called before libxml2 is used.
void TakeOverXml();

} // namespace Allocations
