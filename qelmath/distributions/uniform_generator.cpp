// The uniform generator: three multiplicative congruential streams with the
// 16-bit moduli of L'Ecuyer, Communications of the ACM 31 (1988), summed as
// fractions in the manner of Wichmann and Hill, Applied Statistics AS 183
// (1982), rather than by L'Ecuyer's difference.  Each stream's state lies in
// 1 to modulus - 1, so every product of state and multiplier fits 32 bits and
// the integer arithmetic is exact.
//
// The state is also a single number, the base: the three seeds less one as
// the digits of a mixed-radix number with radices 31726 and 31656, which
// ranges over [0, 32362 * 31726 * 31656) and is exact in a double.
#include "qel/uniformgenerator.h"

#include "qel/fuzzy.h"
#include "qel/qelmessaging.h"
#include "uniform_generator.h"

#include <chrono>
#include <cmath>
#include <ctime>

namespace
{
constexpr INTG kMultiplier1 = 157;
constexpr INTG kMultiplier2 = 146;
constexpr INTG kMultiplier3 = 142;
constexpr INTG kModulus1 = 32363;
constexpr INTG kModulus2 = 31727;
constexpr INTG kModulus3 = 31657;
} // namespace

CmUniformGenerator* CmUniformGenerator::s_pInstance = nullptr;

CmUniformGenerator* CmUniformGenerator::mInstance()
{
    // Never freed: the generator lives until the process ends.
    if (s_pInstance == nullptr)
        s_pInstance = new CmUniformGenerator();
    return s_pInstance;
}

CmUniformGenerator::CmUniformGenerator()
    : Singleton(1), m_iSeed1(1), m_iSeed2(1), m_iSeed3(1), m_bSeedsSaved(false), m_iSavedSeed1(1),
      m_iSavedSeed2(1), m_iSavedSeed3(1), m_dModulus1(32363.0), m_dModulus2(31727.0),
      m_dModulus3(31657.0)
{
    mReset();
}

double CmUniformGenerator::mGetRandom()
{
    m_iSeed1 = (kMultiplier1 * m_iSeed1) % kModulus1;
    m_iSeed2 = (kMultiplier2 * m_iSeed2) % kModulus2;
    m_iSeed3 = (kMultiplier3 * m_iSeed3) % kModulus3;

    // The order of the additions is part of the stream: a saved base must
    // replay the same doubles.
    double dSum =
        static_cast<double>(m_iSeed2) / m_dModulus2 + static_cast<double>(m_iSeed1) / m_dModulus1;
    dSum += static_cast<double>(m_iSeed3) / m_dModulus3;
    double dWhole = 0.0;
    return std::modf(dSum, &dWhole);
}

void CmUniformGenerator::mGetRandom(int iCount, std::vector<double>& rvdValues)
{
    rvdValues.clear();
    if (iCount <= 0)
        return;
    rvdValues.reserve(static_cast<std::size_t>(iCount));
    for (int i = 0; i < iCount; ++i)
        rvdValues.push_back(mGetRandom());
}

void CmUniformGenerator::mSetBase(double dBase)
{
    const double d1 = m_dModulus1 - 1.0;
    const double d2 = m_dModulus2 - 1.0;
    const double d3 = m_dModulus3 - 1.0;

    double dB = mModulo(std::fabs(dBase), d1 * d2 * d3);
    // An infinite or NaN base leaves no remainder to speak of; it counts as 0
    // so that the seeds stay within their streams.
    if (!(dB >= 0.0))
        dB = 0.0;

    // dB is at most the largest double below d1 * d2 * d3, whose quotient by
    // d3 * d2 still rounds below d1: every digit stays within its stream.
    const double dDigit1 = std::trunc(dB / (d3 * d2));
    const double dDigit2 = std::trunc(mModulo(dB / d3, d2));
    const double dDigit3 = std::trunc(mModulo(dB, d3));

    m_iSeed1 = static_cast<INTG>(dDigit1) + 1;
    m_iSeed2 = static_cast<INTG>(dDigit2) + 1;
    m_iSeed3 = static_cast<INTG>(dDigit3) + 1;
}

double CmUniformGenerator::mGetBase() const
{
    const double dDigit1 = static_cast<double>(m_iSeed1) - 1.0;
    const double dDigit2 = static_cast<double>(m_iSeed2) - 1.0;
    const double dDigit3 = static_cast<double>(m_iSeed3) - 1.0;
    return (dDigit1 * (m_dModulus2 - 1.0) + dDigit2) * (m_dModulus3 - 1.0) + dDigit3;
}

void CmUniformGenerator::mPushBase(double dBase)
{
    QEL_ASSERT_TEXT(!m_bSeedsSaved, "! m_bSeedsSaved");
    m_iSavedSeed1 = m_iSeed1;
    m_iSavedSeed2 = m_iSeed2;
    m_iSavedSeed3 = m_iSeed3;
    m_bSeedsSaved = true;
    mSetBase(dBase);
}

void CmUniformGenerator::mPopBase()
{
    QEL_ASSERT(m_bSeedsSaved);
    m_iSeed1 = m_iSavedSeed1;
    m_iSeed2 = m_iSavedSeed2;
    m_iSeed3 = m_iSavedSeed3;
    m_bSeedsSaved = false;
}

double mUniformBaseFromTimeOfDay(long lHundredths)
{
    long lRest = lHundredths < 0 ? -lHundredths : lHundredths;
    long lReversed = 0;
    for (int i = 0; i < 7; ++i)
    {
        lReversed = lReversed * 10 + lRest % 10;
        lRest /= 10;
    }
    return static_cast<double>(lReversed) * 3250000.0;
}

void CmUniformGenerator::mReset()
{
    using namespace std::chrono;
    const system_clock::time_point now = system_clock::now();
    const std::time_t tNow = system_clock::to_time_t(now);
    std::tm tmLocal{};
    localtime_r(&tNow, &tmLocal);
    long long llMillis = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    if (llMillis < 0)
        llMillis += 1000;

    const long lHundredths =
        ((static_cast<long>(tmLocal.tm_hour) * 60 + tmLocal.tm_min) * 60 + tmLocal.tm_sec) * 100 +
        static_cast<long>(llMillis / 10);
    mSetBase(mUniformBaseFromTimeOfDay(lHundredths));
}
