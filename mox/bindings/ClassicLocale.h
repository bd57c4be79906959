#pragma once

#include <boost/noncopyable.hpp>

#include <clocale>

namespace Mox::Materials {

/// While it lives, the C library works on this thread as it does in the "C" locale: a point in
/// numbers, and upper and lower case for ASCII letters only. Other threads see nothing of it.
class ClassicLocale : private boost::noncopyable
{
public:
    ClassicLocale();
    ~ClassicLocale();

private:
    locale_t _classic;
    locale_t _previous;
};

} // namespace Mox::Materials
