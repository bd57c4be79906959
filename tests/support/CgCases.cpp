#include "tests/support/CgCases.h"

#include "mox/Text.h"
#include "tests/support/NodeModes.h"
#include "tests/support/RandomBody.h"

#include <algorithm>
#include <regex>

using Mox::Materials::Compose;

namespace {

/// T stands for each of the types, E for its component type; a, b and c have type T. A row that
/// contains "return" is a complete body.
struct Row
{
    const char* Types; ///< F: floats, V: float vectors, W: three-component vectors, I: ints, B:
                       ///< bools
    const char* Code;
};

constexpr Row rows[] = {
    // functions
    {"F", "abs( a )"},
    {"F", "acos( a/8 ) + asin( a/8 )"},
    {"F", "atan( a )"},
    {"F", "atan2( a, b + 0.0625 )"},
    {"F", "ceil( a ) + floor( b ) + trunc( c )"},
    {"F", "clamp( a, -abs( b ), abs( c ) )"},
    {"F", "cos( a ) + sin( b ) + tan( c/4 )"},
    {"F", "cosh( a/2 ) + sinh( b/2 ) + tanh( c )"},
    {"F", "degrees( a ) + radians( b )"},
    {"F", "dot( a, b )"},
    {"F", "exp( a ) + exp2( b )"},
    {"F", "faceforward( a, b, c + 0.0625 )"},
    {"F", "fmod( abs( a ), abs( b ) + 0.5 )"},
    {"F", "frac( a )"},
    {"F", "length( a ) + distance( b, c )"},
    {"F", "lerp( a, b, c )"},
    {"F", "log( abs( a ) + 0.5 ) + log2( abs( b ) + 0.5 ) + log10( abs( c ) + 0.5 )"},
    {"F", "max( a, b ) - min( b, c )"},
    {"F", "normalize( a + 8.5 )"},
    {"F", "pow( abs( a ) + 0.5, b )"},
    {"F", "reflect( a, b )"},
    {"V", "refract( normalize( a + 8.5 ), normalize( b + 8.5 ), 0.5 )"},
    {"F", "rsqrt( abs( a ) + 0.5 ) + sqrt( abs( b ) )"},
    {"F", "saturate( a )"},
    {"F", "sign( a )"},
    {"F", "smoothstep( -2, 3, a )"},
    {"F", "step( a, b )"},
    {"F", "round( a + 0.125 )"},
    {"F", "any( isnan( a ) ) || any( isinf( b ) ) || !all( isfinite( c ) ) ? a : b"},
    {"F", "T s; T t; sincos( a, s, t ); return s*2 + t;"},
    {"F", "T whole; T rest = modf( a, whole ); return whole*4 + rest;"},
    {"F", "lit( a, b, 2 ).y + lit( abs( a ), abs( b ), 2 ).z"},
    {"W", "cross( a, b )"},
    {"I", "abs( a ) + sign( b ) + max( a, c ) - min( b, c ) + clamp( a, -1, 2 )"},
    {"B", "all( a ) || any( b )"},
    // operators
    {"F", "a + b*c - a/( abs( b ) + 1 )"},
    {"F", "-a - -b + +c"},
    {"F", "( a + b )*( b - c ) - ( a - ( b - c ) )"},
    {"F", "a < b ? b : c"},
    {"F", "a >= b && b != c || !( a <= c ) ? a : b"},
    {"F", "a == trunc( a ) ? 1 : 0.25"},
    {"F", "E( a > b ? 1 : 0 )*2 + ( b == c )"},
    {"F", "T r = a; r += b; r *= c; r -= 0.5; r /= 4; r = r++ + --r; return r;"},
    {"F", "T r = a; T q = r += b; return q*2 + r;"},
    {"F", "T r = a; return ( r = b, r + c );"},
    {"I", "a + b*c - a/( b*b + 1 )"},
    {"I", "a%( abs( b ) + 1 )"},
    {"I", "T r = a; r %= abs( b ) + 1; return r;"},
    {"I", "a < b ? b : c"},
    {"I", "a < b && b != c ? -a : !a"},
    {"B", "a && b || !c"},
    {"B", "a == b ? b : c"},
    {"B", "a + b*c"},
    // conversions
    {"F", "(T)(bool4)a.x + (T)(int4)b.x + (T)true"},
    {"F", "(T)(half)(fixed)(float)a.x"},
    {"F", "T( dot( a, b ) ) + 2"},
    {"I", "T( 2.75 ) + (T)1.5f + (T)true + a"},
    {"B", "T( a ) || (T)0.25"},
    // selections
    {"V", "a.yx.yxy.xyx.x*b"},
    {"V", "a.rg.y + b.xxyy.zw.x*c"},
    {"V", "T r = a; r.yx = b.xy; r.x *= 2; r.xy += 1; return r;"},
    {"W", "T r = a; r.zx = r.xz; r.yz = 0.5; r[1] += r[2]; return r.zyx;"},
    {"F", "a.x + a.xxxx.w"},
    {"F", "2.0.xx.x*a + 3.x"},
    // statements
    {"F", "T r = 0; for( int i = 0; i < 3; i++ ) { if( i == 1 ) continue; r += a*i; } return r;"},
    {"F", "T r = b; int i = 0; while( i++ < 3 ) { r += a; if( i > 1 ) break; } return r;"},
    {"F",
     "T r = b; int i = 5; do { r *= 0.5; i -= 2; if( i == 3 ) continue; r += a; } while( i > 0 ); "
     "return r;"},
    {"F", "T r; if( a.x > 0 ) r = b; else if( b.x > 0 ) r = c; else { r = a; } return r;"},
    {"F", "if( a.x > 1 ) return b; if( b.x > 0 ) return c; return a;"},
    {"F", "T r[3] = { a, b, c }; int i = 0; r[i + 1] += a; T q[3] = r; q[2] = r[0]; return q[1] - "
          "q[2];"},
    {"F", "for( int i = 0, j = 2; i < j; ++i, --j ) a += b*j; return a;"},
    // calls
    {"F", "T r; T s = b; twoOut( a, r, s ); return r + s*2;"},
    {"F", "T r = a; r = andOut( r, r )*2 + r; return r;"},
    {"V", "T r = a; twoOut( b.x, r.y, r.x ); return r;"},
    {"F", "T r[2] = { a, b }; twoOut( c, r[1], r[0] ); return r[0]*2 + r[1];"},
    {"F", "T r = a; twoOut( b, r, r ); return r;"},
    {"F", "T r = b; bool t = r.x > 0 && andOut( a, r ).x > 1; return t ? r : c;"},
    {"F", "T r = 0; while( andOut( a, r ).x + r.x < 0 ) { a += 1; } return r;"},
    {"F", "Pair p = { a.x, (float3)b.x }; Pair q = swapped( p ); p.two.y = q.one; "
          "return T( p.two.y + q.two.z );"},
    {"F", "pick( (half)a.x ) + pick( (float)b.x )*2 + pick( (int)c.x )*4"},
    {"F", "weights[1]*a + weights[2]*two"},
};

/// M is a matrix type with R rows and C columns; m is built from a, b and c; v has R components, w
/// has C.
constexpr const char* matrixRows[] = {
    "mul( v, m )",
    "mul( m, w )",
    "m[1]",
    "m[R - 1].yx",
    "m._m01 + m._21",
    "m._m00_m11*v.x",
    "m*m + 2*m - m/4 - m/( m*m + 1 ); sum",
    "transpose( m )[1]",
    "mul( transpose( m ), m )[0]",
    "m[1] = w; m[0].yx = v.xy; m._m01 += 1; m[1][0] *= 3; m = -m; sum",
    "int i = 1; m[i] = w*2; m[i - 1][i] += v.x; sum",
    "m += 1; m *= 0.5; sum",
};

constexpr const char* helpers = R"(
struct Pair { float one; float3 two; };
static const float weights[3] = { 0.25, 0.5, -0.25 };
static const int two = 2;
float4 wide( float r ) { return float4( r, 0, 0, 0 ); }
float4 wide( float2 r ) { return float4( r, 0, 0 ); }
float4 wide( float3 r ) { return float4( r, 0 ); }
float4 wide( float4 r ) { return r; }
float4 wide( int r ) { return wide( (float)r ); }
float4 wide( int2 r ) { return wide( (float2)r ); }
float4 wide( int3 r ) { return wide( (float3)r ); }
float4 wide( int4 r ) { return (float4)r; }
float4 wide( bool r ) { return wide( (float)r ); }
float4 wide( bool2 r ) { return wide( (float2)r ); }
float4 wide( bool3 r ) { return wide( (float3)r ); }
float4 wide( bool4 r ) { return (float4)r; }
Pair swapped( Pair p ) { Pair q = p; q.one = p.two.x; q.two = p.one; return q; }
float pick( half x ) { return x + 1; }
float pick( float x ) { return x*2; }
float pick( int x ) { return x*3; }
float4 texel4( float at ) { return float4( at, 0.25, 0.5, 1 ); }
float4 texel4( float2 at ) { return float4( at, 0.5, 1 ); }
float4 texel4( float3 at ) { return float4( at, 1 ); }
float4 texel4( float4 at ) { return at; }
float3 texel3( float at ) { return texel4( at ).xyz; }
float3 texel3( float2 at ) { return texel4( at ).xyz; }
float3 texel3( float3 at ) { return at; }
)";

/// The inputs for which the functions of nodes and of the environment are compared.
struct Domain
{
    const char* Functions; ///< pattern of their names; the first row that matches counts
    const char* Input;     ///< Cg expression of an input "x"; null if they are not compared
};

constexpr const char* positive = "( abs( x ) + 0.25 )"; // from 1/4 to 17/4
constexpr const char* inside = "( abs( x )/8 + 0.25 )"; // from 1/4 to 3/4

constexpr Domain domains[] = {
    // the root of a negative number
    {"DXT5 Normal", nullptr},
    // differences between neighbouring pixels, but each case is one pixel
    {"NormalMaths.*From Height", nullptr},
    // division by zero at 0 or 1
    {"CoreLayerBlend.*(Colour Dodge|Colour Burn|Vivid Light)", inside},
    // powers of negative numbers, and frames before the first one
    {"^Core(?!Texture)", positive},
    {"ColourAdjust.*Gamma", positive},
    // division by zero, and remainders of a quotient that is close to an integer
    {"MathsArithmetic.*(Divide|Modulo|Reciprocal)", positive},
    // zero and negative numbers
    {"MathsArithmetic.*(Inverse Square Root|Logarithm)", positive},
    // poles
    {"MathsTrigonometry.*=Tangent", inside},
    // the angle at the origin
    {"MathsTrigonometry.*Arc Tangent 2", positive},
    // directions of length zero, negative shares of light, and division by w
    {"environment (physicalLight|coatedLight|pixelColour|screenUv)", inside},
    {"", "x"},
};

const char* DomainOf(const std::string& name)
{
    return std::find_if(std::begin(domains), std::end(domains),
                        [&](const Domain& domain) {
                            return std::regex_search(name, std::regex(domain.Functions));
                        })
        ->Input;
}

/// Replaces texels with the coordinates that are read, because the cases have no textures.
std::string WithoutTextures(std::string text)
{
    static const std::regex sampler(R"(\bsampler(1D|2D|3D|CUBE)\b)");
    static const std::regex three(R"(\b[hf]3tex\w+\( \w+, )");
    static const std::regex four(R"(\b([hf]4)?tex(1D|2D|3D|CUBE)\w*\( \w+, )");
    text = std::regex_replace(text, sampler, "float");
    text = std::regex_replace(text, three, "texel3( ");
    return std::regex_replace(text, four, "texel4( ");
}

const char* const vertexCode =
    R"(void main( in float2 place : ATTR0, in float4 a : ATTR1, in float4 b : ATTR2,
	in float4 c : ATTR3, in float k : ATTR4, out float4 position : POSITION,
	out float4 pa : TEXCOORD0, out float4 pb : TEXCOORD1, out float4 pc : TEXCOORD2, out float pk : TEXCOORD3 )
{
	position = float4( place, 0.5, 1 );
	pa = a;
	pb = b;
	pc = c;
	pk = k;
}
)";

std::string ReplaceWord(const std::string& text, const char* word, const std::string& by)
{
    return std::regex_replace(text, std::regex(Compose("\\b", word, "\\b")), by);
}

/// Functions that rows for a type may call.
std::string OutFunctions(const std::string& type)
{
    return ReplaceWord(
        "void twoOut( T x, out T y, inout T z ) { y = -x; if( x.x > 0 ) { y = x; } z += x; }\n"
        "T andOut( T x, out T y ) { y = x + 1; return x*2; }\n",
        "T", type);
}

struct CgParameter
{
    bool IsOut;
    std::string Type;
    std::string Name;
    int Length; ///< of an array; otherwise 0
};

/// Parses the parameters in the head of a node's function.
std::vector<CgParameter> ParametersOf(const std::string& function)
{
    static const std::regex pattern(R"((in|out) (\w+) (\w+)(?:\[(\d+)\])?)");
    const std::string head = function.substr(0, function.find('\n'));
    std::vector<CgParameter> parameters;
    for (std::sregex_iterator it(head.begin(), head.end(), pattern), end; it != end; ++it)
        parameters.push_back(
            {(*it)[1] == "out", (*it)[2], (*it)[3], (*it)[4].matched ? std::stoi((*it)[4]) : 0});
    return parameters;
}

class Collector
{
public:
    explicit Collector(const std::function<bool(const std::string&)>& isExcluded)
        : _isExcluded(isExcluded)
    {}

    void Add(const std::string& type, const std::string& element, const std::string& code)
    {
        const std::string name = Compose(type, ": ", code);
        if (_isExcluded(name))
            return;
        const std::string number = std::to_string(_current.Names.size());
        _current.Names.push_back(name);
        const bool isBody = code.find("return ") != std::string::npos;
        std::string body = isBody ? code : Compose("return ", code, ";");
        body = ReplaceWord(ReplaceWord(body, "T", type), "E", element);
        body = std::regex_replace(body, std::regex("return ([^;]*);"), "return wide( $1 );");
        _functions +=
            Compose("float4 e", number, "( float4 in_a, float4 in_b, float4 in_c )\n{\n\t", type,
                    " a = (", type, ")in_a; ", type, " b = (", type, ")in_b; ", type, " c = (",
                    type, ")in_c;\n\t", body, "\n}\n");
        _types += _types.find(Compose("out ", type, " y")) == std::string::npos &&
                          body.find("Out(") != std::string::npos
                      ? OutFunctions(type)
                      : "";
        EndCase();
    }

    /// Adds a function with inputs from its domain.
    void Add(const ModeFunction& function)
    {
        const char* const domain = DomainOf(function.Name);
        const std::string text = WithoutTextures(function.Text);
        std::string name = function.Name + "\n";
        std::vector<std::string> code;
        for (const std::string& piece : function.Code) {
            code.push_back(WithoutTextures(piece));
            name += code.back();
        }
        name += text;
        if (!domain || _isExcluded(name))
            return;
        for (const std::string& piece : code) {
            if (_code.find(piece) == std::string::npos)
                _code += piece + "\n";
        }
        const std::string number = std::to_string(_current.Names.size());
        _current.Names.push_back(name);
        _functions +=
            std::regex_replace(text, std::regex(R"(^void \w+\()"), Compose("void f", number, "("),
                               std::regex_constants::format_first_only);
        std::string locals, arguments, sum;
        std::size_t inputs = 0;
        for (const auto& [isOut, type, parameter, length] : ParametersOf(text)) {
            arguments += arguments.empty() ? " " : ", ";
            if (isOut) {
                locals += Compose("\t", type, " ", parameter, ";\n");
                arguments += parameter;
                sum += Compose(sum.empty() ? "" : " + ", "wide( ", parameter, " )");
                continue;
            }
            if (length == 0) {
                arguments += MakeInput(type, inputs++, domain);
                continue;
            }
            locals += Compose("\t", type, " ", parameter, "[", length, "] = { ");
            for (int i = 0; i < length; ++i)
                locals += Compose(i > 0 ? ", " : "", MakeInput(type, inputs++, domain));
            locals += " };\n";
            arguments += parameter;
        }
        _functions +=
            Compose("float4 e", number, "( float4 in_a, float4 in_b, float4 in_c )\n{\n", locals,
                    "\tf", number, "(", arguments, " );\n\treturn ", sum, ";\n}\n");
        EndCase();
    }

    std::vector<CgCases> Take()
    {
        if (!_current.Names.empty())
            Finish();
        return std::move(_cases);
    }

private:
    /// @param index of the input: the first three are "in_a" to "in_c", and so on
    static std::string MakeInput(const std::string& type, std::size_t index, const char* domain)
    {
        const auto vector = [&](std::size_t i) {
            return ReplaceWord(domain, "x", Compose("in_", std::string(1, "abc"[i % 3])));
        };
        if (type != "float4x4")
            return Compose("(", type, ")", vector(index));
        return Compose("float4x4( ", vector(index), ", ", vector(index + 1), ", ",
                       vector(index + 2), ", ", vector(index), ".wzyx )");
    }

    void EndCase()
    {
        constexpr std::size_t most = 16;
        if (_current.Names.size() == most)
            Finish();
    }

    void Finish()
    {
        std::string main = "void main( in float4 pa : TEXCOORD0, in float4 pb : TEXCOORD1, "
                           "in float4 pc : TEXCOORD2, in float pk : TEXCOORD3, "
                           "out float4 colour : COLOR0 )\n{\n\tcolour = pa + pb + pc;\n";
        for (std::size_t i = 0; i < _current.Names.size(); ++i)
            main += Compose("\tif( pk == ", i, " ) colour = e", i, "( pa, pb, pc );\n");
        _current.Vertex = vertexCode;
        _current.Fragment = helpers + _types + _code + _functions + main + "}\n";
        _cases.push_back(std::move(_current));
        _current = {};
        _code.clear();
        _functions.clear();
        _types.clear();
    }

    const std::function<bool(const std::string&)>& _isExcluded;
    std::vector<CgCases> _cases;
    CgCases _current;
    std::string _code; ///< of the library and the environment
    std::string _functions;
    std::string _types;
};

void AddVectors(Collector& cases, const Row& row, const std::string& element)
{
    for (int count = 1; count <= 4; ++count) {
        const std::string types = row.Types;
        if ((types == "V" && count == 1) || (types == "W" && count != 3))
            continue;
        cases.Add(count == 1 ? element : Compose(element, count), element, row.Code);
    }
}

void AddMatrix(Collector& cases, const std::string& element, int rowCount, int columnCount)
{
    const std::string height = std::to_string(rowCount);
    const std::string width = std::to_string(columnCount);
    std::string made;
    std::string sum;
    for (int row = 0; row < rowCount; ++row) {
        const std::string source(1, "abca"[row]);
        made +=
            Compose(row > 0 ? ", " : "", "(", element, width, ")", source, row == 3 ? ".wzyx" : "");
        sum += Compose(row > 0 ? " + " : "", "m[", row, "]*", row + 1, ".0");
    }
    const std::string begin =
        Compose(element, height, "x", width, " m = ", element, height, "x", width, "( ", made,
                " ); ", element, height, " v = (", element, height, ")c; ", element, width,
                " w = (", element, width, ")b; ");
    const auto add = [&](const std::string& code) {
        const std::string sized = ReplaceWord(code, "R", height);
        std::string body = begin;
        if (sized.ends_with("; sum")) {
            const std::string before = sized.substr(0, sized.size() - 5);
            const bool isValue = before.starts_with("m*m");
            body += Compose(isValue ? "m = " : "", before, "; return ", sum, ";");
        } else {
            body += Compose("return ", sized, ";");
        }
        cases.Add(Compose(element, 4), element, body);
    };
    for (const char* code : matrixRows)
        add(code);
    if (rowCount == columnCount)
        add("determinant( m )");
    if (rowCount > 2 && columnCount > 2)
        add("((float2x2)m)[1]");
}

} // namespace

std::vector<CgCases> MakeCgCases(const std::function<bool(const std::string&)>& isExcluded)
{
    Collector cases(isExcluded);
    for (const Row& row : rows) {
        const std::string types = row.Types;
        if (types == "I" || types == "B")
            AddVectors(cases, row, types == "I" ? "int" : "bool");
        else
            for (const char* element : {"float", "half"})
                AddVectors(cases, row, element);
    }
    for (const auto& [rowCount, columnCount] :
         {std::pair(2, 2), std::pair(3, 3), std::pair(4, 4), std::pair(2, 4), std::pair(4, 3)}) {
        AddMatrix(cases, "float", rowCount, columnCount);
        AddMatrix(cases, "half", rowCount, columnCount);
    }
    static const std::vector<ModeFunction> functionsOfModes = FunctionsOfEveryMode();
    for (const ModeFunction& function : functionsOfModes)
        cases.Add(function);
    constexpr std::uint32_t bodies = 12;
    std::uint32_t seed = 0;
    for (const char* element : {"float", "half"}) {
        for (int count = 1; count <= 4; ++count) {
            const std::string type = count == 1 ? element : Compose(element, count);
            for (std::uint32_t i = 0; i < bodies; ++i)
                cases.Add(type, element, MakeRandomBody(++seed, count));
        }
    }
    return cases.Take();
}
