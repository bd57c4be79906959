#pragma once

#include <boost/noncopyable.hpp>

#include <clocale>

namespace Mox::Materials {

/// Switches the C library to the "C" locale on this thread for the lifetime of the object: numbers
/// use a decimal point, and only ASCII letters have upper and lower case. Other threads are
/// unaffected.
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
