// Shared pieces of the benchmarks: the size of the argument arrays and the
// fixed pseudo-random sequence that makes them, so that every run and every
// library compared is asked exactly the same questions.
#pragma once

#include <cstdint>

namespace qelbench
{

constexpr int kCount = 1024;

// A 64-bit linear congruential generator (Knuth's MMIX constants), its top
// 53 bits as a double in [0, 1).
class Lcg
{
public:
    explicit Lcg(std::uint64_t uSeed = 20261121ULL) : m_uState(uSeed) {}

    double mNext()
    {
        m_uState = m_uState * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(m_uState >> 11) * (1.0 / 9007199254740992.0);
    }

    // The same sequence with 0 skipped: a value in (0, 1).
    double mNextPositive()
    {
        double d = 0.0;
        while (d == 0.0)
            d = mNext();
        return d;
    }

    // Uniform on [-1, 1).
    double mNextSigned() { return 2.0 * mNext() - 1.0; }

private:
    std::uint64_t m_uState;
};

} // namespace qelbench
