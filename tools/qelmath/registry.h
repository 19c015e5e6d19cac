// The evaluator's registry: every exported function of the library that takes
// scalars, vectors or maps is registered here, with its parameter names, by a
// file under register/ that belongs to its module:
//
//     #include "registry.h"
//     QEL_EVAL_FUNCTIONS(normal)
//     {
//         reg.mAdd("mNormalCdf", &mNormalCdf, "dX, dMu, dSigma, bUpper");
//         reg.mAddEnum("eTwoSided", eTwoSided);
//     }
//
// The adapter converts each argument to the parameter's type (double, integer
// types, bool, enumerations, std::vector, std::map, and pointers to scalars,
// whose pointee is passed) and formats the result: a double in %.17g, the
// missing value as "*", integers as integers, bools as true/false, vectors as
// [a, b, ...].  A function returning void prints the values behind its pointer
// parameters after the call (one value, or a vector of them).  Overloads are
// registered through a cast to the wanted function type, or a lambda with "+".
#pragma once

#include "value.h"

#include "qel/qelbt.h"
#include "qel/qelstrings.h"

#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace qeltool
{

// Thrown for an argument that does not fit its parameter; printed as a parse
// error naming the argument.
struct ArgError
{
    std::string what;
};

std::string mFormatDouble(double d);
long long mLookUpEnumerator(const std::string& rsName); // throws ArgError when unknown

// ---------------------------------------------------------------------------
// Argument conversion.

template <class T, class Enable = void>
struct ArgTraits;

template <>
struct ArgTraits<double>
{
    static double mFrom(const Value& v)
    {
        if (v.mIsNumeric())
            return v.mAsDouble();
        if (v.kind == Value::Kind::Missing)
            return mGetMissingValueCode();
        throw ArgError{"expected a number"};
    }
    static const char* mKind() { return "double"; }
};

template <class T>
struct ArgTraits<T, std::enable_if_t<std::is_integral<T>::value && !std::is_same<T, bool>::value>>
{
    static T mFrom(const Value& v)
    {
        double d;
        if (v.kind == Value::Kind::Integer)
            d = static_cast<double>(v.integer);
        else if (v.kind == Value::Kind::Number && std::floor(v.number) == v.number)
            d = v.number;
        else
            throw ArgError{"expected a whole number"};
        if (d < static_cast<double>(std::numeric_limits<T>::lowest()) ||
            d > static_cast<double>(std::numeric_limits<T>::max()))
            throw ArgError{"whole number out of range"};
        return v.kind == Value::Kind::Integer ? static_cast<T>(v.integer) : static_cast<T>(d);
    }
    static const char* mKind() { return "integer"; }
};

template <>
struct ArgTraits<bool>
{
    static bool mFrom(const Value& v)
    {
        if (v.kind == Value::Kind::Bool)
            return v.boolean;
        if (v.kind == Value::Kind::Integer && (v.integer == 0 || v.integer == 1))
            return v.integer == 1;
        throw ArgError{"expected true or false"};
    }
    static const char* mKind() { return "bool"; }
};

template <class E>
struct ArgTraits<E, std::enable_if_t<std::is_enum<E>::value>>
{
    static E mFrom(const Value& v)
    {
        if (v.kind == Value::Kind::Name)
            return static_cast<E>(mLookUpEnumerator(v.name));
        if (v.kind == Value::Kind::Integer)
            return static_cast<E>(v.integer);
        throw ArgError{"expected an enumerator name"};
    }
    static const char* mKind() { return "enum"; }
};

template <>
struct ArgTraits<CmString>
{
    static CmString mFrom(const Value& v)
    {
        if (v.kind == Value::Kind::Name)
            return CmString(v.name);
        throw ArgError{"expected a word"};
    }
    static const char* mKind() { return "word"; }
};

template <class T>
struct ArgTraits<std::vector<T>>
{
    static std::vector<T> mFrom(const Value& v)
    {
        if (v.kind != Value::Kind::Vector)
            throw ArgError{"expected a vector [a, b, ...]"};
        std::vector<T> out;
        out.reserve(v.items.size());
        for (const Value& item : v.items)
            out.push_back(ArgTraits<T>::mFrom(item));
        return out;
    }
    static const char* mKind() { return "vector"; }
};

template <class K, class T>
struct ArgTraits<std::map<K, T>>
{
    static std::map<K, T> mFrom(const Value& v)
    {
        if (v.kind != Value::Kind::Map)
            throw ArgError{"expected a map {key: value, ...}"};
        std::map<K, T> out;
        for (const auto& entry : v.entries)
            out[ArgTraits<K>::mFrom(entry.first)] = ArgTraits<T>::mFrom(entry.second);
        return out;
    }
    static const char* mKind() { return "map"; }
};

// How a parameter is held between conversion and call: by value, or, for a
// pointer to a scalar, as the pointee whose address is passed.
template <class A>
struct ParamTraits
{
    using Store = std::decay_t<A>;
    static Store mConvert(const Value& v) { return ArgTraits<Store>::mFrom(v); }
    static Store& mPass(Store& s) { return s; }
    static constexpr bool kIsOut = false;
};

template <class P>
struct ParamTraits<P*>
{
    using Store = std::remove_const_t<P>;
    static Store mConvert(const Value& v) { return ArgTraits<Store>::mFrom(v); }
    static P* mPass(Store& s) { return &s; }
    static constexpr bool kIsOut = !std::is_const<P>::value;
};

// ---------------------------------------------------------------------------
// Result formatting.

template <class T, class Enable = void>
struct ResultTraits;

template <>
struct ResultTraits<double>
{
    static std::string mFormat(double d) { return mFormatDouble(d); }
};

template <>
struct ResultTraits<float>
{
    static std::string mFormat(float f) { return mFormatDouble(f); }
};

template <>
struct ResultTraits<bool>
{
    static std::string mFormat(bool b) { return b ? "true" : "false"; }
};

template <class T>
struct ResultTraits<T, std::enable_if_t<std::is_integral<T>::value && !std::is_same<T, bool>::value>>
{
    static std::string mFormat(T i) { return std::to_string(i); }
};

template <class E>
struct ResultTraits<E, std::enable_if_t<std::is_enum<E>::value>>
{
    static std::string mFormat(E e)
    {
        return std::to_string(static_cast<long long>(e));
    }
};

template <>
struct ResultTraits<CmString>
{
    static std::string mFormat(const CmString& s) { return s.mGetString(); }
};

template <>
struct ResultTraits<const char*>
{
    static std::string mFormat(const char* psz) { return psz ? psz : ""; }
};

template <class T>
struct ResultTraits<std::vector<T>>
{
    static std::string mFormat(const std::vector<T>& v)
    {
        std::string s = "[";
        for (std::size_t i = 0; i < v.size(); ++i)
        {
            if (i)
                s += ", ";
            s += ResultTraits<T>::mFormat(v[i]);
        }
        return s + "]";
    }
};

// ---------------------------------------------------------------------------
// Entries.

struct Entry
{
    std::string name;
    std::string params;
    std::size_t arity = 0;
    std::function<std::string(const std::vector<Value>&)> call;
};

namespace detail
{
template <class A>
typename ParamTraits<A>::Store mConvertArg(const Value& v, std::size_t uIndex)
{
    try
    {
        return ParamTraits<A>::mConvert(v);
    }
    catch (const ArgError& e)
    {
        throw ArgError{"argument " + std::to_string(uIndex + 1) + ": " + e.what};
    }
}

template <class R, class... A, std::size_t... I>
std::string mInvoke(R (*pfn)(A...), const std::vector<Value>& args, std::index_sequence<I...>)
{
    std::tuple<typename ParamTraits<A>::Store...> stores;
    // Convert in order, so that the first bad argument is the one reported.
    ((std::get<I>(stores) = mConvertArg<A>(args[I], I)), ...);
    if constexpr (std::is_void<R>::value)
    {
        pfn(ParamTraits<A>::mPass(std::get<I>(stores))...);
        std::vector<std::string> outs;
        ((ParamTraits<A>::kIsOut
              ? outs.push_back(ResultTraits<typename ParamTraits<A>::Store>::mFormat(
                    std::get<I>(stores)))
              : void()),
         ...);
        if (outs.size() == 1)
            return outs[0];
        std::string s = "[";
        for (std::size_t i = 0; i < outs.size(); ++i)
            s += (i ? ", " : "") + outs[i];
        return s + "]";
    }
    else
    {
        return ResultTraits<std::decay_t<R>>::mFormat(
            pfn(ParamTraits<A>::mPass(std::get<I>(stores))...));
    }
}
} // namespace detail

class Registry
{
public:
    template <class R, class... A>
    void mAdd(const std::string& rsName, R (*pfn)(A...), const std::string& rsParams)
    {
        Entry e;
        e.name = rsName;
        e.params = rsParams;
        e.arity = sizeof...(A);
        e.call = [pfn](const std::vector<Value>& args) {
            return detail::mInvoke(pfn, args, std::index_sequence_for<A...>{});
        };
        mInsert(std::move(e));
    }

    template <class E>
    void mAddEnum(const std::string& rsName, E eValue)
    {
        m_mEnumerators[rsName] = static_cast<long long>(eValue);
    }

    // Operations of objects, name(args).operation(args): a module that makes
    // objects installs the handler, which formats the result or throws
    // ArgError.
    typedef std::string (*PFnObjectCall)(const Call& rCall);
    void mSetObjectHandler(PFnObjectCall pfn) { m_pfnObjectCall = pfn; }
    PFnObjectCall mGetObjectHandler() const { return m_pfnObjectCall; }

    // Commands beside eval, list and help ("random"), with a line of usage
    // for the help text.  The handler gets the arguments after the command
    // word and returns the exit status.
    typedef int (*PFnCommand)(int argc, char** argv);
    struct Command
    {
        PFnCommand pfn;
        std::string usage;
    };
    void mAddCommand(const std::string& rsName, PFnCommand pfn, const std::string& rsUsage)
    {
        m_mCommands[rsName] = Command{pfn, rsUsage};
    }
    const std::map<std::string, Command>& mCommands() const { return m_mCommands; }

    // Objects that expressions can make, WORD(params), with their parameter
    // lists, for list.
    void mAddObject(const std::string& rsWord, const std::string& rsParams)
    {
        m_mObjects[rsWord] = rsParams;
    }
    const std::map<std::string, std::string>& mObjects() const { return m_mObjects; }

    const Entry* mFind(const std::string& rsName) const;
    const std::map<std::string, Entry>& mEntries() const { return m_mEntries; }
    const std::map<std::string, long long>& mEnumerators() const { return m_mEnumerators; }

    static Registry& mInstance(); // filled by every registrar at first use

private:
    void mInsert(Entry e);
    std::map<std::string, Entry> m_mEntries;
    std::map<std::string, long long> m_mEnumerators;
    std::map<std::string, Command> m_mCommands;
    std::map<std::string, std::string> m_mObjects;
    PFnObjectCall m_pfnObjectCall = nullptr;
};

typedef void (*PFnRegister)(Registry&);

// Static registration: each register/ file defines one registrar.
struct Registrar
{
    explicit Registrar(PFnRegister pfn);
};

} // namespace qeltool

#define QEL_EVAL_FUNCTIONS(tag)                                                                    \
    static void qelEvalRegister_##tag(::qeltool::Registry& reg);                                   \
    static const ::qeltool::Registrar qelEvalRegistrar_##tag(&qelEvalRegister_##tag);              \
    static void qelEvalRegister_##tag(::qeltool::Registry& reg)
