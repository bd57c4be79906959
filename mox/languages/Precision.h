#pragma once

namespace Mox::Languages {

/// The precision of half and fixed.
enum class Precision
{
    Full,    ///< as precise as float
    Relaxed, ///< the language's own type or qualifier for low precision
};

} // namespace Mox::Languages
