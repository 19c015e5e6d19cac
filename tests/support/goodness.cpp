#include "support/goodness.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace qeltest
{
namespace
{
// Upper tail of the Kolmogorov distribution,
// Q(x) = 2 sum_{k>=1} (-1)^(k-1) exp(-2 k^2 x^2).
double mKolmogorovUpper(double dX)
{
    if (dX < 0.2)
        return 1.0;
    double dSum = 0.0;
    for (int k = 1; k <= 100; ++k)
    {
        const double dTerm = std::exp(-2.0 * k * k * dX * dX);
        dSum += (k % 2 == 1) ? dTerm : -dTerm;
        if (dTerm < 1e-18)
            break;
    }
    return std::min(1.0, std::max(0.0, 2.0 * dSum));
}

// Upper tail of the chi-square distribution with iDF degrees of freedom by
// the regularised incomplete gamma function: the power series below a + 1,
// Legendre's continued fraction evaluated by Lentz's method (Applied Optics
// 15, 1976) above.
double mChiSquareUpper(double dStat, int iDF)
{
    const double a = 0.5 * iDF, x = 0.5 * dStat;
    if (x <= 0.0)
        return 1.0;
    const double dLogPrefix = a * std::log(x) - x - std::lgamma(a);
    if (x < a + 1.0)
    {
        double dTerm = 1.0 / a, dSum = dTerm;
        for (int n = 1; n < 100000; ++n)
        {
            dTerm *= x / (a + n);
            dSum += dTerm;
            if (dTerm < dSum * 1e-16)
                break;
        }
        return 1.0 - dSum * std::exp(dLogPrefix);
    }
    // Lentz's continued fraction for Q(a, x).
    double b = x + 1.0 - a, c = 1e300, d = 1.0 / b, h = d;
    for (int i = 1; i < 100000; ++i)
    {
        const double an = -i * (i - a);
        b += 2.0;
        d = an * d + b;
        if (std::fabs(d) < 1e-300)
            d = 1e-300;
        c = b + an / c;
        if (std::fabs(c) < 1e-300)
            c = 1e-300;
        d = 1.0 / d;
        const double del = d * c;
        h *= del;
        if (std::fabs(del - 1.0) < 1e-16)
            break;
    }
    return std::exp(dLogPrefix) * h;
}
} // namespace

KsResult mKolmogorovSmirnov(std::vector<double> vdSample, const std::function<double(double)>& rCdf)
{
    std::sort(vdSample.begin(), vdSample.end());
    const double n = static_cast<double>(vdSample.size());
    double dMax = 0.0;
    for (std::size_t i = 0; i < vdSample.size(); ++i)
    {
        const double F = rCdf(vdSample[i]);
        dMax = std::max(dMax, std::max(F - static_cast<double>(i) / n,
                                       static_cast<double>(i + 1) / n - F));
    }
    const double dRoot = std::sqrt(n);
    return KsResult{dMax, mKolmogorovUpper(dMax * (dRoot + 0.12 + 0.11 / dRoot))};
}

ChiSquareResult mChiSquare(const std::vector<double>& rvdSample, int iLower, int iUpper,
                           const std::function<double(int)>& rPmf)
{
    const double n = static_cast<double>(rvdSample.size());
    const int iCells = iUpper - iLower + 1;
    std::vector<double> vdObserved(static_cast<std::size_t>(iCells), 0.0);
    std::vector<double> vdExpected(static_cast<std::size_t>(iCells), 0.0);
    int iOutliers = 0;
    for (double x : rvdSample)
    {
        long long k = static_cast<long long>(std::llround(x)) - iLower;
        if (k < 0 || k >= iCells || x != std::round(x))
        {
            ++iOutliers;
            k = std::min<long long>(std::max<long long>(k, 0), iCells - 1);
        }
        vdObserved[static_cast<std::size_t>(k)] += 1.0;
    }
    for (int k = 0; k < iCells; ++k)
        vdExpected[static_cast<std::size_t>(k)] = n * rPmf(iLower + k);

    // Pool from both ends inward until each cell expects 5 or more.
    std::vector<double> vdO, vdE;
    double dO = 0.0, dE = 0.0;
    for (int k = 0; k < iCells; ++k)
    {
        dO += vdObserved[static_cast<std::size_t>(k)];
        dE += vdExpected[static_cast<std::size_t>(k)];
        if (dE >= 5.0)
        {
            vdO.push_back(dO);
            vdE.push_back(dE);
            dO = dE = 0.0;
        }
    }
    if (!vdE.empty())
    {
        vdO.back() += dO;
        vdE.back() += dE;
    }
    double dStat = 0.0;
    for (std::size_t i = 0; i < vdE.size(); ++i)
        dStat += (vdO[i] - vdE[i]) * (vdO[i] - vdE[i]) / vdE[i];
    const int iDF = static_cast<int>(vdE.size()) - 1;
    const double dP = iDF > 0 ? mChiSquareUpper(dStat, iDF) : 1.0;
    return ChiSquareResult{dStat, iDF, dP, iOutliers};
}

} // namespace qeltest
