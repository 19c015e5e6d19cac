// The odd part of the noncentral t as a noncentral-beta sum (Lenth, Applied
// Statistics AS 243).  With y the beta argument, h = df/2 and L = delta^2/2,
// the distribution function of the noncentral t is a mixture of Beta(j + 1/2, h)
// with Poisson(L) weights (the even part, beta_ncdf) plus the odd part
//     sum over j >= 0 of w(j) I(j),   w(j) = L^(j+1/2) e^(-L) / Gamma(j + 3/2),
// I(j) the lower tail of Beta(j + 1, h) at y; the w(j) add up to
// 2 (Phi(delta) - 1/2) = 2c.  Each of the four sums below forms one side,
// in the two frames of the beta argument: Beta(j + 1, h) at y = t^2/(df + t^2)
// (df >= t^2), or the mirrored Beta(h, j + 1) at y = df/(df + t^2)
// (df < t^2).  They walk the ratios of neighbouring terms to the peak, take
// the peak term in logarithms and sum away from it until the geometric bound
// of the rest is below 5e-10 of the sum, as the sums of beta_ncdf do; the
// weight ratio is L/(j + 1/2).  A sum passing 0.9 of 2c stops early (route
// + 100) so that the caller forms the opposite side instead.  Routes are
// added to kernel_method_code: descending sums (the lower side) 11 series
// failed, 12 peak below the log floor, 13 done; ascending sums (the upper
// side) 21 series failed, 22 index limit or a ratio that is not a number,
// 23 peak below the log floor, 24 done.  The code returned in *code is 0,
// 1 when the peak fell below the floor (the sum is then 0), or 4.
#include "qelmath/kernels/t.h"

#include "qelmath/kernels/beta.h"
#include "qelmath/kernels/kernel_helpers.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/poisson.h"

#include <cmath>
#include <cstdint>

namespace
{
constexpr double kCut = 5e-10;
constexpr double kSwitch = 0.9;
constexpr double kMaxIndex = 1e8;

double mUpperCut(double L)
{
    std::uint32_t k = 0;
    double frac = 0.0;
    poisson_upper_quant(kCut, L, &k, &frac);
    return static_cast<double>(k);
}

double mLowerCut(double L)
{
    std::uint32_t k = 0;
    double frac = 0.0;
    poisson_lower_quant(kCut, L, &k, &frac);
    return k > 0 ? static_cast<double>(k - 1) : 0.0;
}

// log of w(j) times the density of Beta(a, b) at y times r.
double mLogTerm(double j, double L, double a, double b, double y, double r)
{
    double lnWeight = 0.0, lnDensity = 0.0;
    gamma_log_pdf(j + 1.5, L, &lnWeight);
    beta_log_pdf(a, b, y, &lnDensity);
    return lnWeight + lnDensity + std::log(r);
}

// The Poisson quantiles and the beta series write kernel_method_code; the
// route of the caller is put back before the sum adds its own.
class RouteKeeper
{
public:
    RouteKeeper() : m_iRoute(kernel_method_code) {}
    void mRestore() const { kernel_method_code = m_iRoute; }

private:
    int m_iRoute;
};

bool mNegligible(double rho, double T, double sum)
{
    return rho < 1.0 && T / (1.0 - rho) / sum < kCut;
}

void mFinish(int* code, int c, int route, double k, double j)
{
    kernel_method_code += route;
    kernel_terms_a = static_cast<std::int32_t>(k);
    kernel_terms_b = static_cast<std::int32_t>(j);
    *code = c;
}

// Descending sum of w(j) G(j) where G(j) = r(j) f(j), f(j) the density of the
// j-th beta, r(j) carried by next(r, j) from r(j) to r(j - 1), ratio(r, j)
// = G(j)/G(j - 1) and back(r, j) = G(j - 1)/G(j) with r = r(j - 1).
// first/second: the beta shapes of index j.
template <class Next, class Ratio, class Back, class Shapes>
double mDescend(double L, double y, double k, double r, double limit, int routeBase,
                Next next, Ratio ratio, Back back, Shapes shapes, int* code)
{
    double j = k;
    double S = 0.0;
    while (j > 0.0)
    {
        const double rho = (L / (j + 0.5)) * ratio(r, j);
        if (!(rho < 1.0))
            break;
        S = rho * (S + 1.0);
        j -= 1.0;
        r = next(r, j);
    }
    double a = 0.0, b = 0.0;
    shapes(j, &a, &b);
    const double lnT = mLogTerm(j, L, a, b, y, r);
    if (lnT < KERNEL_LOG_FLOOR)
    {
        mFinish(code, 1, routeBase + 2, k, j);
        return 0.0;
    }
    double T = std::exp(lnT);
    double sum = T * (1.0 + S);
    if (sum > limit)
    {
        mFinish(code, 0, 100, k, j);
        return sum;
    }
    while (j > 0.0)
    {
        const double rho = back(r, j) * ((j + 0.5) / L);
        T *= rho;
        sum += T;
        if (sum > limit)
        {
            mFinish(code, 0, 100, k, j);
            return sum;
        }
        if (mNegligible(rho, T, sum))
            break;
        j -= 1.0;
        r = next(r, j);
    }
    mFinish(code, 0, routeBase + 3, k, j);
    return sum;
}

// Ascending counterpart: next(r, j) carries r(j) to r(j + 1), ratio(r, j)
// = G(j + 1)/G(j).
template <class Next, class Ratio, class Shapes>
double mAscend(double L, double y, double k, double r, double limit, int routeBase,
               Next next, Ratio ratio, Shapes shapes, int* code)
{
    double j = k;
    double S = 0.0;
    for (;;)
    {
        if (j >= kMaxIndex)
        {
            mFinish(code, 4, routeBase + 2, k, j);
            return -2.0;
        }
        const double rho = ((j + 1.5) / L) / ratio(r, j);
        if (std::isnan(rho))
        {
            mFinish(code, 4, routeBase + 2, k, j);
            return -2.0;
        }
        if (rho >= 1.0)
            break;
        S = rho * (S + 1.0);
        r = next(r, j);
        j += 1.0;
    }
    double a = 0.0, b = 0.0;
    shapes(j, &a, &b);
    const double lnT = mLogTerm(j, L, a, b, y, r);
    if (lnT < KERNEL_LOG_FLOOR)
    {
        mFinish(code, 1, routeBase + 3, k, j);
        return 0.0;
    }
    double T = std::exp(lnT);
    double sum = T * (1.0 + S);
    if (sum > limit)
    {
        mFinish(code, 0, 100, k, j);
        return sum;
    }
    for (;;)
    {
        const double rho = ratio(r, j) * (L / (j + 1.5));
        T *= rho;
        sum += T;
        if (std::isnan(sum))
        {
            mFinish(code, 4, routeBase + 2, k, j);
            return -2.0;
        }
        if (sum > limit)
        {
            mFinish(code, 0, 100, k, j);
            return sum;
        }
        if (mNegligible(rho, T, sum))
            break;
        r = next(r, j);
        j += 1.0;
        if (j >= kMaxIndex)
            break;
    }
    mFinish(code, 0, routeBase + 4, k, j);
    return sum;
}
} // namespace

// Lower tails of Beta(j + 1, h) at y, descending; r(j) = I / density.
double t_ncdf_low_i(double y, double h, double L, double c, int* code)
{
    const RouteKeeper keep;
    const double k = mUpperCut(L);
    const double s = 1.0 + h;
    double r = 0.0;
    if (beta_Iabx(k + 2.0, h, y, &r) != 0)
    {
        keep.mRestore();
        mFinish(code, 4, 11, k, k);
        return -1.0;
    }
    // From the ratio of shape k + 2 to that of shape k + 1.
    r = (y / (1.0 + k)) * ((s + k) * r + 1.0 - y);
    auto next = [&](double rr, double j) { return (y / (1.0 + j)) * ((s + j) * rr + 1.0 - y); };
    auto ratio = [&](double rr, double j) {
        return (s + j - 1.0) * rr / ((s + j - 1.0) * rr + 1.0 - y);
    };
    auto back = [&](double rr, double j) { return (1.0 - y) / ((s + j - 1.0) * rr) + 1.0; };
    auto shapes = [&](double j, double* a, double* b) {
        *a = j + 1.0;
        *b = h;
    };
    keep.mRestore();
    return mDescend(L, y, k, r, 2.0 * kSwitch * c, 10, next, ratio, back, shapes, code);
}

// Upper tails of Beta(j + 1, h) at y, ascending; r(j) = upper / density.
double t_ncdf_up_j(double y, double h, double L, double c, int* code)
{
    const RouteKeeper keep;
    const double k = mLowerCut(L);
    const double s = 1.0 + h;
    double J = 0.0;
    if (beta_Jabx(1.0 + k, h, y, &J) != 0)
    {
        keep.mRestore();
        mFinish(code, 4, 21, k, k);
        return -1.0;
    }
    const double yy = y * (1.0 - y);
    const double r = J * (1.0 - y) / h;
    auto next = [&](double rr, double j) {
        return (1.0 - y) / (s + j) + (1.0 + j) * rr / ((s + j) * y);
    };
    // G(j + 1)/G(j) of the upper tails.
    auto ratio = [&](double rr, double j) { return yy / ((1.0 + j) * rr) + 1.0; };
    auto shapes = [&](double j, double* a, double* b) {
        *a = j + 1.0;
        *b = h;
    };
    keep.mRestore();
    return mAscend(L, y, k, r, 2.0 * kSwitch * c, 20, next, ratio, shapes, code);
}

// Mirrored frame, Beta(h, j + 1) at y: the lower tail of the original is the
// upper tail here, descending from the upper cut; r(j) = upper / density.
double t_ncdf_low_i2(double y, double h, double L, double c, int* code)
{
    const RouteKeeper keep;
    const double k = mUpperCut(L);
    const double s = h + 1.0;
    double t0 = 0.0;
    if (beta_Jabx(h, k + 2.0, y, &t0) != 0)
    {
        keep.mRestore();
        mFinish(code, 4, 11, k, k);
        return -1.0;
    }
    double r = ((1.0 - y) / (k + 2.0)) * t0;
    r = ((1.0 - y) / (1.0 + k)) * ((s + k) * r + y);
    auto next = [&](double rr, double j) { return ((1.0 - y) / (1.0 + j)) * ((s + j) * rr + y); };
    auto ratio = [&](double rr, double j) { return (s + j - 1.0) * rr / ((s + j - 1.0) * rr + y); };
    auto back = [&](double rr, double j) { return y / ((s + j - 1.0) * rr) + 1.0; };
    auto shapes = [&](double j, double* a, double* b) {
        *a = h;
        *b = j + 1.0;
    };
    keep.mRestore();
    return mDescend(L, y, k, r, 2.0 * kSwitch * c, 10, next, ratio, back, shapes, code);
}

// Mirrored frame: the upper tail of the original is the lower tail of
// Beta(h, j + 1) at y, ascending from the lower cut; r(j) = lower / density.
double t_ncdf_up_j2(double y, double h, double L, double c, int* code)
{
    const RouteKeeper keep;
    const double k = mLowerCut(L);
    const double s = h + 1.0;
    double r = 0.0;
    if (beta_Iabx(h, 1.0 + k, y, &r) != 0)
    {
        keep.mRestore();
        mFinish(code, 4, 21, k, k);
        return -1.0;
    }
    const double yy = y * (1.0 - y);
    auto next = [&](double rr, double j) {
        return y / (s + j) + (1.0 + j) * rr / ((s + j) * (1.0 - y));
    };
    auto ratio = [&](double rr, double j) { return yy / ((1.0 + j) * rr) + 1.0; };
    auto shapes = [&](double j, double* a, double* b) {
        *a = h;
        *b = j + 1.0;
    };
    keep.mRestore();
    return mAscend(L, y, k, r, 2.0 * kSwitch * c, 20, next, ratio, shapes, code);
}
