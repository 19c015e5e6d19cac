// Every closed-form family against mpmath (tests/data/closedform_values.txt
// and closedform_quantiles.txt, written by tests/data/gen_closedform.py).
//
// Errors are relative and reported in units of the double epsilon.  Each
// family and kind has a bound for the regime in which its formula is well
// conditioned; where a prescribed formula cancels (a tail formed as 1 minus
// a number near 1, a logarithm of 1 - p for small p) or the function itself
// is ill conditioned in its point (an exponent of size t amplifies the
// rounding of t by t), the allowance grows with the stated factor, and the
// worst case of each is reported.
#include "closedform_families.h"

#include "support/reftable.h"

#include "qel/qelbt.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using closedformtest::Family;
using closedformtest::mFindFamily;

namespace
{
constexpr double kEps = DBL_EPSILON;
// Relative accuracy of the kernel routes: the chi-square kernel at two
// degrees of freedom near 0 (lower tails near a threshold) and the normal
// kernel, whose series stop at 1e-9.
constexpr double kChiSqRoute = 1e-12;
constexpr double kNormalRoute = 1e-9;
// Below the kernels' smallest nonzero point (gamma_df treats x below
// 2.2250738585072014e-288 as 0 and sets a tail whose logarithm is below
// -662.34472 to 0) a tail through a kernel may be 0.
constexpr double kKernelFloor = 2.3e-288;

enum EKind : int
{
    kPdf = 0,
    kLower = 1,
    kUpper = 2,
    kQuantile = 3
};

const char* const kKindNames[] = {"density", "lower tail", "upper tail", "quantile"};

std::string mRowText(const Family& rFamily, const char* pszKind, const std::vector<double>& row,
                     double dComputed, double dReference)
{
    std::ostringstream os;
    os.precision(17);
    os << rFamily.pszName << " " << pszKind << " at " << row[1] << " (" << row[2] << ", "
       << row[3] << ", " << row[4] << "): " << dComputed << ", mpmath " << dReference;
    return os.str();
}

double mNormalDensity(double z) { return std::exp(-0.5 * z * z) / std::sqrt(2.0 * M_PI); }

// The absolute error allowed at a row: eps times (8 |reference| plus the
// amplification of rounding that the prescribed formula and the conditioning
// of the function bring), plus the part owed to a kernel route.
struct Allowance
{
    double dAmp;
    double dKernel;
    double mTotal(double dRef) const { return kEps * (8.0 * std::fabs(dRef) + dAmp) + dKernel; }
};

// The allowance at one row of the values table for kind k (density, lower,
// upper).
Allowance mValueAllowance(int iCode, int k, const std::vector<double>& row)
{
    const double x = row[1], a = row[2], b = row[3], c = row[4];
    const double ref = row[5 + k];
    const double r = std::fabs(ref);
    double dAmp = 0.0;
    double dKernel = 0.0;
    switch (iCode)
    {
    case 1: // Cauchy: the tails are 1/2 + atan(z) / pi, absolute near 0 and 1.
        dAmp = (k == kPdf) ? 2.0 * r : 1.0;
        break;
    case 2: // exponential: exp(-z) amplifies the rounding of z by z.
    {
        const double z = (x - b) / a, e = std::exp(-z);
        if (k == kLower)
        {
            if (e <= 0.999)
                dAmp = e * (1.0 + std::fabs(z)) + 1.0;
            else
                dKernel = kChiSqRoute * r, dAmp = 2.0 * r;
        }
        else
            dAmp = r * std::fabs(z);
        break;
    }
    case 3:
    case 4: // extreme value: exp(-e), e = exp(-z); the smallest by reflection.
    {
        const double z = (iCode == 3) ? (x - a) / b : (a - x) / b;
        const double e = std::exp(-z);
        const int kk = (iCode == 3 || k == kPdf) ? k : (k == kLower ? kUpper : kLower);
        if (kk == kPdf)
            dAmp = r * std::fabs(z) * (1.0 + e);
        else if (kk == kLower)
            dAmp = r * e * (1.0 + std::fabs(z));
        else if (std::exp(-e) <= 0.999)
            dAmp = std::exp(-e) * e * (1.0 + std::fabs(z)) + 1.0;
        else
            dKernel = kChiSqRoute * r, dAmp = r * (1.0 + std::fabs(z));
        break;
    }
    case 5: // Laplace: the small tail is exp(-|z|) / 2, the large one
            // 1/2 + (1 - exp(-|z|)) / 2.
    {
        const double z = (k == kUpper) ? (a - x) / b : (x - a) / b;
        if (k == kPdf || z < 0.0)
            dAmp = r * std::fabs(z);
        else
            dAmp = 1.0 + 0.5 * std::exp(-z) * z;
        break;
    }
    case 6: // logistic
        dAmp = r * std::fabs((x - a) / b);
        break;
    case 7: // loglogistic: the rounding of log(x - threshold) moves z.
    {
        const double w = std::log(x - c), z = (w - a) / b;
        dAmp = r * ((std::fabs(w) + std::fabs(a) + 1.0) / b + std::fabs(z) + 1.0);
        break;
    }
    case 8: // lognormal: through the normal density and distribution function.
    {
        const double w = std::log(x - c), z = (w - a) / b;
        const double dz = (std::fabs(w) + std::fabs(a) + 1.0) / b + std::fabs(z);
        if (k == kPdf)
            dAmp = r * (1.0 + std::fabs(z) * dz);
        else
            dAmp = r * (1.0 + std::fabs(z)) * (dz + 1.0), dKernel = kNormalRoute * r;
        break;
    }
    case 9: // Weibull: v = z^k, exp(-v) amplifies the rounding of z by k v.
    {
        const double z = (x - c) / b, v = std::pow(z, a);
        const double e = std::exp(-v);
        if (k == kPdf)
            dAmp = r * (std::fabs(a - 1.0) + a * v + 2.0);
        else if (k == kUpper)
            dAmp = r * (a * v + 1.0);
        else if (e <= 0.999)
            dAmp = e * (a * v + 1.0) + 1.0;
        else
            dKernel = kChiSqRoute * r, dAmp = r * (a + 1.0);
        break;
    }
    case 10: // uniform
        dAmp = r * (2.0 + (std::fabs(a) + std::fabs(b)) / (b - a));
        break;
    case 11: // triangular
        dAmp = r * (4.0 + 2.0 * (std::fabs(x) + std::fabs(a) + std::fabs(b) + std::fabs(c)) /
                              (c - a));
        break;
    case 12: // half-normal: 2 Phi(z) - 1 and its complement, absolute.
    {
        const double z = (x - b) / a;
        if (k == kPdf)
            dAmp = r * (1.0 + z * z);
        else
            dAmp = 4.0 + std::fabs(z), dKernel = kNormalRoute * row[7];
        break;
    }
    case 13: // Tukey lambda: the root search stops when Q(u) - z is within
             // |z| eps, which moves u by that over Q'(u) = 1 / density.
    {
        const double lam = a, z = (x - b) / c;
        const double u = row[6], v = row[7];
        const double dStd = row[5] * c;
        const double du = kEps * ((2.0 * std::fabs(z) + 2.0 / std::fabs(lam) + 1.0) * dStd +
                                  std::min(u, v));
        if (k == kPdf)
        {
            const double m = std::min(u, v);
            dAmp = (m > 0.0) ? r * 8.0 * std::fabs(lam - 1.0) * du / (kEps * m) : 0.0;
        }
        else
            dAmp = 8.0 * du / kEps;
        break;
    }
    default:
        break;
    }
    return Allowance{dAmp, dKernel};
}

// The allowance at one row of the quantile table.
Allowance mQuantileAllowance(int iCode, const std::vector<double>& row)
{
    const double p = row[1], a = row[2], b = row[3], c = row[4];
    const double ref = row[5];
    const double m = std::min(p, 1.0 - p);
    double dAmp = 0.0;
    double dKernel = 0.0;
    switch (iCode)
    {
    case 1: // tan near its pole: relative 1 / (pi min(p, 1 - p)).
        dAmp = std::fabs(ref - a) / m + std::fabs(a);
        break;
    case 2: // t - s log(1 - p); 1 - p rounds for p below 1/2.
        dAmp = std::fabs(a) + std::fabs(b);
        break;
    case 3:
    case 5:
    case 6:
        dAmp = std::fabs(a) + 2.0 * b + std::fabs(ref - a);
        break;
    case 4: // log(-log(1 - p)): 1 - p rounds, relative eps / p.
        dAmp = std::fabs(a) + b * (1.0 + 1.0 / p) + std::fabs(ref - a);
        break;
    case 7: // threshold + exp(logistic quantile)
    {
        const double y = ref - c, w = std::log(y);
        dAmp = std::fabs(c) + y * (std::fabs(a) + 2.0 * b + std::fabs(w - a) + 1.0);
        break;
    }
    case 8: // threshold + exp(mu + sigma z), z from the normal quantile
    {
        const double y = ref - c, zq = (std::log(y) - a) / b;
        dAmp = std::fabs(c) + y * (std::fabs(a) + b * std::fabs(zq) + 2.0);
        dKernel = y * b * std::fabs(zq) * kNormalRoute;
        break;
    }
    case 9: // threshold + s (-log(1 - p))^(1/k)
    {
        const double y = ref - c;
        dAmp = std::fabs(c) + y * (2.0 + std::fabs(std::log(y / b)) + (p < 0.5 ? 1.0 / (a * p) : 0.0));
        break;
    }
    case 10:
        dAmp = std::fabs(a) + std::fabs(b);
        break;
    case 11: // max - sqrt(...) cancels next to an end
        dAmp = std::fabs(a) + std::fabs(c) + 2.0 * (c - a);
        break;
    case 12: // (p + 1) / 2 rounds by eps / 2, moved by 1 / (2 phi(z)).
    {
        const double zq = (ref - b) / a;
        dAmp = std::fabs(b) + a / (2.0 * mNormalDensity(zq));
        dKernel = std::fabs(ref - b) * kNormalRoute;
        break;
    }
    case 13:
    {
        const double lam = a;
        dAmp = std::fabs(b) +
               c * (4.0 + 4.0 * (std::pow(p, lam) + std::pow(1.0 - p, lam)) / std::fabs(lam));
        break;
    }
    default:
        break;
    }
    return Allowance{dAmp, dKernel};
}

// Whether the tail at this row goes through a kernel whose floor may give 0.
bool mIsKernelTail(int iCode, int k)
{
    return (iCode == 2 && k == kLower) || (iCode == 3 && k == kUpper) ||
           (iCode == 4 && k == kLower) || (iCode == 9 && k == kLower) ||
           (iCode == 8 && k != kPdf) || (iCode == 12 && k != kPdf);
}

// Worst errors of one family and kind: the relative error where the formula
// is well conditioned (its amplification at most 16 relative; the error of a
// kernel route stays in), and the error in units of the allowance everywhere.
// The lambda tails, whose root search stops on a test absolute in the
// probability, report their absolute error, and the lambda density its
// relative error over all rows.
struct Worst
{
    std::unique_ptr<qeltest::WorstError> pClean;
    std::unique_ptr<qeltest::WorstError> pRatio;
};

class WorstTable
{
public:
    Worst& mGet(const Family& rFamily, int k)
    {
        Worst& rWorst = m_map[rFamily.iCode * 4 + k];
        if (!rWorst.pClean)
        {
            const std::string sWhat = std::string(rFamily.pszName) + " " + kKindNames[k];
            if (mIsAbsolute(rFamily.iCode, k))
                rWorst.pClean.reset(new qeltest::WorstError(sWhat + ", all rows", "absolute"));
            else if (mIsAllRows(rFamily.iCode, k))
                rWorst.pClean.reset(new qeltest::WorstError(sWhat + ", all rows"));
            else
                rWorst.pClean.reset(new qeltest::WorstError(sWhat + ", well conditioned"));
            rWorst.pRatio.reset(
                new qeltest::WorstError(sWhat + ", everywhere", "fraction of allowance"));
        }
        return rWorst;
    }
    void mPrint() const
    {
        for (const auto& rEntry : m_map)
        {
            std::cout << rEntry.second.pClean->mReport() << "\n";
            std::cout << rEntry.second.pRatio->mReport() << "\n";
        }
    }
    static bool mIsAbsolute(int iCode, int k) { return iCode == 13 && (k == kLower || k == kUpper); }
    static bool mIsAllRows(int iCode, int k) { return iCode == 13 && k == kPdf; }

private:
    std::map<int, Worst> m_map;
};

// Checks one computed value against its reference and records it.
void mCheck(WorstTable& rTable, const Family& rFamily, int k, const std::vector<double>& row,
            double dGot, double dRef, const Allowance& rAllowance)
{
    const std::string sRow = mRowText(rFamily, kKindNames[k], row, dGot, dRef);
    if (k != kQuantile && mIsKernelTail(rFamily.iCode, k) && dRef < kKernelFloor)
    {
        EXPECT_GE(dGot, 0.0) << sRow;
        EXPECT_LE(dGot, kKernelFloor) << sRow;
        return;
    }
    const double dAllowance = rAllowance.mTotal(dRef);
    const double dErr = std::fabs(dGot - dRef);
    EXPECT_LE(dErr, dAllowance) << sRow << ", allowance " << dAllowance;
    Worst& rWorst = rTable.mGet(rFamily, k);
    rWorst.pRatio->mUpdate(dErr / dAllowance, qeltest::mUlpDistance(dGot, dRef), sRow);
    if (WorstTable::mIsAbsolute(rFamily.iCode, k))
        rWorst.pClean->mUpdate(dErr, qeltest::mUlpDistance(dGot, dRef), sRow);
    else if (WorstTable::mIsAllRows(rFamily.iCode, k) || rAllowance.dAmp <= 16.0 * std::fabs(dRef))
        rWorst.pClean->mUpdate(qeltest::mRelativeError(dGot, dRef),
                               qeltest::mUlpDistance(dGot, dRef), sRow);
}
} // namespace

TEST(ClosedFormReference, DensityAndBothTailsMatchMpmath)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("closedform_values.txt");
    ASSERT_GT(table.rows.size(), 1000u);
    CmAssertCapture capture;
    WorstTable worst;
    int iSeen[closedformtest::kFamilyCount + 1] = {};
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 8u);
        const Family* pFamily = mFindFamily(static_cast<int>(row[0]));
        ASSERT_NE(pFamily, nullptr);
        ++iSeen[pFamily->iCode];
        const double x = row[1], a = row[2], b = row[3], c = row[4];
        const double got[3] = {pFamily->pfnPdf(x, a, b, c), pFamily->pfnCdf(x, a, b, c, false),
                               pFamily->pfnCdf(x, a, b, c, true)};
        for (int k = kPdf; k <= kUpper; ++k)
            mCheck(worst, *pFamily, k, row, got[k], row[5 + k],
                   mValueAllowance(pFamily->iCode, k, row));
    }
    for (int i = 1; i <= closedformtest::kFamilyCount; ++i)
        EXPECT_GT(iSeen[i], 20) << "family " << i;
    EXPECT_EQ(capture.mGetCount(), 0);
    worst.mPrint();
}

TEST(ClosedFormReference, QuantilesMatchMpmath)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("closedform_quantiles.txt");
    ASSERT_GT(table.rows.size(), 800u);
    CmAssertCapture capture;
    WorstTable worst;
    for (const std::vector<double>& row : table.rows)
    {
        ASSERT_EQ(row.size(), 6u);
        const Family* pFamily = mFindFamily(static_cast<int>(row[0]));
        ASSERT_NE(pFamily, nullptr);
        const double p = row[1], a = row[2], b = row[3], c = row[4];
        const double dGot = pFamily->pfnInvCdf(p, a, b, c);
        mCheck(worst, *pFamily, kQuantile, row, dGot, row[5],
               mQuantileAllowance(pFamily->iCode, row));
    }
    EXPECT_EQ(capture.mGetCount(), 0);
    worst.mPrint();
}

