// A parsed argument of the evaluator.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace qeltool
{

struct Value
{
    enum class Kind
    {
        Number,  // a double written with a point, an exponent, inf or nan
        Integer, // a whole number written without them
        Bool,
        Missing, // "*"
        Name,    // an enumerator name
        Vector,  // [a, b, ...]
        Map      // {key: value, ...}
    };

    Kind kind = Kind::Number;
    double number = 0.0;
    long long integer = 0;
    bool boolean = false;
    std::string name;
    std::vector<Value> items;
    std::vector<std::pair<Value, Value>> entries;

    // The value as a double when it is numeric (an integer included).
    bool mIsNumeric() const { return kind == Kind::Number || kind == Kind::Integer; }
    double mAsDouble() const { return kind == Kind::Integer ? static_cast<double>(integer) : number; }
};

// A call as written: name(arg, ...), or an operation of an object,
// name(arg, ...).method(arg, ...).
struct Call
{
    std::string name;
    std::vector<Value> args;
    bool bHasMethod = false;
    std::string method;
    std::vector<Value> methodArgs;
};

// Thrown for a malformed line; the evaluator prints "error: parse: <what>".
struct ParseError
{
    std::string what;
};

Call mParseCall(const std::string& rsLine);

} // namespace qeltool
