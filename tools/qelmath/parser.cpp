// Parser of the evaluator's expressions: name(arg, ...), or
// name(arg, ...).operation(arg, ...) for an operation of an object, where an
// argument is a number in C syntax, true, false, an enumerator name, "*" for
// the missing value, [a, b, ...] or {key: value, ...}.
#include "value.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>

namespace qeltool
{
namespace
{

class Parser
{
public:
    explicit Parser(const std::string& rs) : m_s(rs) {}

    Call mParseWhole()
    {
        Call call;
        mSkipSpace();
        call.name = mIdentifier();
        if (call.name.empty())
            mFail("expected a function name");
        call.args = mArguments();
        mSkipSpace();
        if (mPeek() == '.')
        {
            ++m_i;
            mSkipSpace();
            call.bHasMethod = true;
            call.method = mIdentifier();
            if (call.method.empty())
                mFail("expected an operation name after '.'");
            call.methodArgs = mArguments();
            mSkipSpace();
        }
        if (m_i != m_s.size())
            mFail("unexpected text after the closing parenthesis: '" + m_s.substr(m_i) + "'");
        return call;
    }

private:
    const std::string& m_s;
    std::size_t m_i = 0;

    [[noreturn]] void mFail(const std::string& rsWhat) { throw ParseError{rsWhat}; }

    char mPeek() const { return m_i < m_s.size() ? m_s[m_i] : '\0'; }

    void mSkipSpace()
    {
        while (m_i < m_s.size() && std::isspace(static_cast<unsigned char>(m_s[m_i])))
            ++m_i;
    }

    void mExpect(char c)
    {
        mSkipSpace();
        if (mPeek() != c)
        {
            if (m_i >= m_s.size())
                mFail(std::string("expected '") + c + "' at the end of the line");
            mFail(std::string("expected '") + c + "' at column " + std::to_string(m_i + 1));
        }
        ++m_i;
    }

    std::string mIdentifier()
    {
        std::size_t start = m_i;
        if (m_i < m_s.size() &&
            (std::isalpha(static_cast<unsigned char>(m_s[m_i])) || m_s[m_i] == '_'))
        {
            ++m_i;
            for (;;)
            {
                if (m_i < m_s.size() &&
                    (std::isalnum(static_cast<unsigned char>(m_s[m_i])) || m_s[m_i] == '_'))
                    ++m_i;
                else if (m_s.compare(m_i, 2, "::") == 0)
                    m_i += 2;
                else
                    break;
            }
        }
        return m_s.substr(start, m_i - start);
    }

    // "(" [value {"," value}] ")"
    std::vector<Value> mArguments()
    {
        mSkipSpace();
        mExpect('(');
        return mValuesUntil(')');
    }

    // [value {"," value}] followed by cClose, the opening already read.
    std::vector<Value> mValuesUntil(char cClose)
    {
        std::vector<Value> values;
        mSkipSpace();
        if (mPeek() != cClose)
        {
            for (;;)
            {
                values.push_back(mValue());
                mSkipSpace();
                if (mPeek() == ',')
                {
                    ++m_i;
                    continue;
                }
                break;
            }
        }
        mExpect(cClose);
        return values;
    }

    Value mValue()
    {
        mSkipSpace();
        const char c = mPeek();
        Value v;
        if (c == '*')
        {
            ++m_i;
            v.kind = Value::Kind::Missing;
            return v;
        }
        if (c == '[')
        {
            ++m_i;
            v.kind = Value::Kind::Vector;
            v.items = mValuesUntil(']');
            return v;
        }
        if (c == '{')
        {
            ++m_i;
            v.kind = Value::Kind::Map;
            mSkipSpace();
            if (mPeek() != '}')
            {
                for (;;)
                {
                    Value key = mValue();
                    mExpect(':');
                    Value val = mValue();
                    v.entries.emplace_back(std::move(key), std::move(val));
                    mSkipSpace();
                    if (mPeek() == ',')
                    {
                        ++m_i;
                        continue;
                    }
                    break;
                }
            }
            mExpect('}');
            return v;
        }
        if (std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '+')
            return mNumber();
        std::string word = mIdentifier();
        if (word.empty())
        {
            if (m_i >= m_s.size())
                mFail("expected an argument at the end of the line");
            mFail(std::string("unexpected character '") + c + "' at column " +
                  std::to_string(m_i + 1));
        }
        if (word == "true" || word == "false")
        {
            v.kind = Value::Kind::Bool;
            v.boolean = word == "true";
            return v;
        }
        if (word == "inf" || word == "infinity" || word == "nan")
        {
            v.kind = Value::Kind::Number;
            v.number = std::strtod(word.c_str(), nullptr);
            return v;
        }
        v.kind = Value::Kind::Name;
        v.name = word;
        return v;
    }

    Value mNumber()
    {
        const char* begin = m_s.c_str() + m_i;
        char* end = nullptr;
        errno = 0;
        const double d = std::strtod(begin, &end);
        if (end == begin)
            mFail("malformed number at column " + std::to_string(m_i + 1));
        const std::string token(begin, static_cast<std::size_t>(end - begin));
        m_i += token.size();
        Value v;
        v.kind = Value::Kind::Number;
        v.number = d;
        const bool bHex = token.find_first_of("xX") != std::string::npos;
        const bool bWhole = bHex ? token.find_first_of(".pP") == std::string::npos
                                 : token.find_first_of(".eEiInN") == std::string::npos;
        if (bWhole)
        {
            errno = 0;
            char* iend = nullptr;
            const long long ll = std::strtoll(token.c_str(), &iend, bHex ? 16 : 10);
            if (errno == 0 && iend && *iend == '\0')
            {
                v.kind = Value::Kind::Integer;
                v.integer = ll;
            }
        }
        return v;
    }
};

} // namespace

Call mParseCall(const std::string& rsLine) { return Parser(rsLine).mParseWhole(); }

} // namespace qeltool
