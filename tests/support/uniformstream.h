// An independent replica of the library's uniform stream, for tests that
// derive variates from the recorded uniforms or count how many uniforms a
// generator consumed.  Written from the published description of the
// generator (three multiplicative congruential streams with L'Ecuyer's 1988
// 16-bit multipliers and moduli, their fractions summed in the manner of
// Wichmann and Hill), not from the library's code.
#pragma once

#include <cstdint>
#include <vector>

namespace qeltest
{

class UniformStream
{
public:
    // The state that the library's mSetBase(dBase) sets, for a whole dBase in
    // [0, 32362 * 31726 * 31656).
    explicit UniformStream(double dBase);

    // The next uniform, formed as the library forms it:
    // fraction of (s2 / 31727 + s1 / 32363) + s3 / 31657.
    double mNext();
    // The next iCount uniforms.
    std::vector<double> mNext(int iCount);
    // The base of the present state.
    double mBase() const;

private:
    std::int64_t m_s1, m_s2, m_s3;
};

// How many uniforms take the stream from base dFrom to base dTo: the
// smallest k <= iLimit with that property, or -1 when there is none.
int mCountDraws(double dFrom, double dTo, int iLimit = 1000000);

} // namespace qeltest
