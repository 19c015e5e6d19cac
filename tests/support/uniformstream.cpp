#include "support/uniformstream.h"

#include <cmath>

namespace qeltest
{
namespace
{
constexpr std::int64_t kM1 = 32363, kM2 = 31727, kM3 = 31657;
constexpr std::int64_t kA1 = 157, kA2 = 146, kA3 = 142;
} // namespace

UniformStream::UniformStream(double dBase)
{
    const auto b = static_cast<std::int64_t>(dBase);
    const std::int64_t r2 = kM2 - 1, r3 = kM3 - 1;
    m_s3 = b % r3 + 1;
    m_s2 = (b / r3) % r2 + 1;
    m_s1 = b / (r3 * r2) + 1;
}

double UniformStream::mNext()
{
    m_s1 = (kA1 * m_s1) % kM1;
    m_s2 = (kA2 * m_s2) % kM2;
    m_s3 = (kA3 * m_s3) % kM3;
    double dSum = static_cast<double>(m_s2) / static_cast<double>(kM2) +
                  static_cast<double>(m_s1) / static_cast<double>(kM1);
    dSum += static_cast<double>(m_s3) / static_cast<double>(kM3);
    return dSum - std::floor(dSum);
}

std::vector<double> UniformStream::mNext(int iCount)
{
    std::vector<double> v;
    for (int i = 0; i < iCount; ++i)
        v.push_back(mNext());
    return v;
}

double UniformStream::mBase() const
{
    return static_cast<double>(((m_s1 - 1) * (kM2 - 1) + (m_s2 - 1)) * (kM3 - 1) + (m_s3 - 1));
}

int mCountDraws(double dFrom, double dTo, int iLimit)
{
    UniformStream s(dFrom);
    for (int k = 0; k <= iLimit; ++k)
    {
        if (s.mBase() == dTo)
            return k;
        s.mNext();
    }
    return -1;
}

} // namespace qeltest
