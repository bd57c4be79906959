#include "tests/support/RandomBody.h"

#include "tests/support/Random.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

namespace {

/// Every product adds three binary digits before and three after the point, so variables have a
/// degree: the maximum number of inputs multiplied in them.
constexpr int mostDegree = 3;

/// Joins the parts, which are evaluated in order.
std::string Join(std::initializer_list<std::string> parts)
{
    std::string text;
    for (const std::string& part : parts)
        text += part;
    return text;
}

struct Local
{
    const char* Name;
    int Degree;
};

class BodyMaker
{
public:
    BodyMaker(std::uint32_t seed, int count) : _random(seed), _count(count) {}

    std::string Make()
    {
        std::string body = Join({"T r = ", Value(1, 2), "; T s = ", Value(1, 1), "; "});
        EvenOut();
        for (std::size_t left = 2 + _random.Below(4); left > 0; --left)
            body += Statement(2);
        return body + "return r + s*0.5;";
    }

private:
    std::string Statement(int depth)
    {
        Local& local = _locals[_random.Below(_locals.size())];
        switch (_random.Below(depth > 0 ? 8 : 4)) {
        case 0:
            return Assign(local, "=");
        case 1:
            return Assign(local, _random.Below(2) == 0 ? "+=" : "-=");
        case 2:
            if (_count > 1) {
                Local& other = _locals[1 - (&local - _locals.data())];
                local.Degree = std::max(local.Degree, other.Degree);
                return Join({local.Name, ".yx = ", other.Name, ".", Letter(), Letter(), "; "});
            }
            return Assign(local, "+=");
        case 3:
            EvenOut();
            return Join({"twoOut( ", Value(1, 1), ", r, s ); "});
        case 4:
        case 5: {
            const auto before = _locals;
            std::string text = Join({"if( ", Condition(), " ) { ", Statement(depth - 1), "} "});
            if (_random.Below(2) == 0) {
                const auto after = std::exchange(_locals, before);
                text += Join({"else { ", Statement(depth - 1), "} "});
                RaiseTo(after);
            }
            RaiseTo(before);
            return text;
        }
        case 6:
            return Join({"for( int i = 0; i < 3; i++ ) { if( ", Condition(), " ) ",
                         _random.Below(2) == 0 ? "break" : "continue", "; ", local.Name,
                         " += ", Inputs(local.Degree), "; } "});
        default:
            EvenOut();
            return Join({"{ T t = r; r = s; s = t; } "});
        }
    }

    std::string Assign(Local& local, const char* how)
    {
        const int degree = 1 + static_cast<int>(_random.Below(mostDegree));
        const std::string text = Join({local.Name, " ", how, " ", Value(degree, 3), "; "});
        local.Degree = std::max(degree, *how == '=' ? 0 : local.Degree);
        return text;
    }

    /// Each local may keep its value or have the value from another branch.
    void RaiseTo(const std::array<Local, 2>& others)
    {
        for (std::size_t i = 0; i < _locals.size(); ++i)
            _locals[i].Degree = std::max(_locals[i].Degree, others[i].Degree);
    }

    /// Raises both locals to the greater degree.
    void EvenOut()
    {
        const int degree = std::max({_locals[0].Degree, _locals[1].Degree, 1});
        for (Local& local : _locals)
            local.Degree = degree;
    }

    std::string Condition()
    {
        static constexpr const char* comparisons[] = {"<", ">", "<=", ">=", "==", "!="};
        const auto compare = [&] {
            return Join({Input(), _count > 1 ? Join({".", Letter()}) : "", " ",
                         _random.Pick(comparisons), " ", Number()});
        };
        switch (_random.Below(4)) {
        case 0:
            return Join({compare(), " && ", compare()});
        case 1:
            return Join({"!( ", compare(), " ) || ", compare()});
        default:
            return compare();
        }
    }

    /// @param depth remaining nesting depth
    std::string Value(int degree, int depth)
    {
        if (depth == 0)
            return Leaf(degree);
        const auto value = [&] { return Value(degree, depth - 1); };
        switch (_random.Below(12)) {
        case 0:
            return Join({"( ", value(), " + ", value(), " )"});
        case 1:
            return Join({"( ", value(), " - ", value(), " )"});
        case 2:
        case 3:
            if (degree == 1)
                return Leaf(degree);
            return Join({Value(degree - 1, depth - 1), "*", Value(1, depth - 1)});
        case 4:
            return Join({"min( ", value(), ", ", value(), " )"});
        case 5:
            return Join({"max( ", value(), ", ", value(), " )"});
        case 6:
            return Join({"abs( ", value(), " )"});
        case 7:
            return Join({"-", Leaf(degree)});
        case 8:
            return Join({"( ", Input(), " < ", Input(), " ? ", value(), " : ", value(), " )"});
        case 9:
            return Join({"clamp( ", value(), ", -1, 2 )"});
        case 10:
            return Join({"frac( ", Input(), " )*2"});
        default:
            return Swizzle(value());
        }
    }

    std::string Leaf(int degree)
    {
        const Local& local = _locals[_random.Below(_locals.size())];
        if (local.Degree > 0 && local.Degree <= degree && _random.Below(2) == 0)
            return local.Name;
        return _random.Below(4) == 0 ? Join({"T( ", Number(), " )"}) : Input();
    }

    std::string Inputs(int degree) { return degree > 1 ? Join({Input(), "*", Input()}) : Input(); }

    std::string Input() { return std::string(1, "abc"[_random.Below(3)]); }

    std::string Number()
    {
        static constexpr const char* numbers[] = {"0", "1", "0.5", "-1.25", "2.0", "0.375"};
        return _random.Pick(numbers);
    }

    std::string Letter() { return std::string(1, "xyzw"[_random.Below(_count)]); }

    std::string Swizzle(const std::string& value)
    {
        std::string letters;
        for (int i = 0; i < _count; ++i)
            letters += Letter();
        return Join({"( ", value, " ).", letters});
    }

    Random _random;
    int _count;
    std::array<Local, 2> _locals = {{{"r", 0}, {"s", 0}}}; ///< degree 0 until a value is assigned
};

} // namespace

std::string MakeRandomBody(std::uint32_t seed, int count)
{
    return BodyMaker(seed, count).Make();
}
