#pragma once

namespace Mox::Languages {

/// How exact half and fixed are.
enum class Precision
{
    Full,    ///< as float
    Relaxed, ///< as the language's own type or qualifier for such numbers
};

} // namespace Mox::Languages
