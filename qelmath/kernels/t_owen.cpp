// Owen's recursion for the noncentral t with integer degrees of freedom
// (D. B. Owen, "A special case of a bivariate non-central t-distribution",
// Biometrika 52, 1965), and the bivariate normal probability it rests on,
//     V(h, a) = P(X > h, Y > a X) = integral from h to infinity of
//               phi(x) Q(a x) dx,
// X, Y independent standard normals, a > 0, Q the normal upper tail.
// V(h, a) + V(a h, 1/a) = Q(h) Q(a h), so every a is brought to one of two
// expansions:
//   * a away from 1 (a > 4/3 after the exchange): the series in upper
//     incomplete gammas of negative half-integer order,
//         V(h, a) = phi(h) sum over r >= 1 of
//                   -(1/(2 h sqrt(pi))) (-h^2/2)^r Gamma(1/2 - r, (a h)^2/2),
//     which follows from expanding phi(x) about x = h and integrating
//     Q(a x) against the powers term by term; its terms fall like a^(-2r).
//     For (a h)^2/2 > 1 each Gamma comes from the Legendre continued
//     fraction, for smaller arguments from Gamma(1/2, y) by the upward-stable
//     recurrence Gamma(p, y) = (Gamma(p + 1, y) - y^p e^(-y)) / p.
//   * a near 1 (3/4 <= a <= 1): V(h, 1) = Q(h)^2/2 and
//         dV/da = -e^(-(1 + a^2) h^2 / 2) / (2 pi (1 + a^2)),
//     expanded in b = 1 - a: with q = (1 + s^2)/2 = 1 - eps, eps = u - u^2/2,
//     s = 1 - u, e^(-q h^2)/q = sum over i of eps^i Gamma(i + 1, h^2)/i!, and
//     integral from 0 to b of eps^i du
//         = sum over j of C(i, j) (-1/2)^j b^(i+j+1)/(i + j + 1).
#include "qelmath/kernels/t.h"

#include "qelmath/kernels/gamma_core.h"
#include "qelmath/kernels/kernel_protocol.h"
#include "qelmath/kernels/normal.h"

#include <cmath>
#include <cstdint>

namespace
{
constexpr double kPi = 3.14159265358979323846;
constexpr double kSqrtPi = 1.77245385090551602730;
constexpr double kSqrt2Pi = 2.50662827463100050242;
constexpr double kRelStop = 1e-15;

double mUpper(double x)
{
    double lower = 0.0, upper = 0.0;
    normal_df(x, &lower, &upper);
    return upper;
}
} // namespace

int owen_large(double h, double a, double* out)
{
    const double y = (h * a) * (h * a) / 2.0;
    const double h2 = h * h;
    double sum = 0.0;
    int terms = 0;
    if (y > 1.0)
    {
        double c = -1.0 / (kSqrtPi * 2.0 * h);
        const double logY = std::log(y);
        bool settled = false;
        for (int r = 1;; ++r)
        {
            const double p = 0.5 - r;
            if (p < -69.5)
                break;
            double G = 0.0;
            if (gamma_Jcf(y, p, &G) != 0)
            {
                kernel_terms = r;
                return 4;
            }
            G = std::exp((p - 1.0) * logY - y) * G;
            c *= -h2 / 2.0;
            const double term = G * c;
            sum += term;
            terms = r;
            if (std::fabs(term) <= kRelStop * sum)
            {
                settled = true;
                break;
            }
        }
        if (!settled)
        {
            kernel_terms = terms;
            return 4;
        }
    }
    else
    {
        double v = gamma_small_tail(y, 0.5) * std::sqrt(y) * std::exp(y);
        double c = -std::exp(-y) / (2.0 * h * std::sqrt(kPi * y));
        double p = 0.5;
        bool settled = false;
        for (int r = 1; r <= 70; ++r)
        {
            p -= 1.0;
            v = -(1.0 - v) * y / p;
            c *= -1.0 / (2.0 * y / h2);
            const double term = c * v;
            sum += term;
            terms = r;
            if (std::fabs(term) <= kRelStop * sum)
            {
                settled = true;
                break;
            }
        }
        if (!settled)
        {
            kernel_terms = terms;
            return 4;
        }
    }
    *out = normal_density(h) * sum;
    kernel_terms = terms;
    return 0;
}

int owen_near_one(double h, double a, double* out)
{
    const double b = 1.0 - a;
    const double h2 = h * h;
    const double eh = std::exp(-h2);
    double c = eh;       // Gamma(i + 1, h^2), i = 0
    double scale = b;    // b^(i+1)/i!
    double hp = 1.0;     // h^(2i)
    double S = 0.0;
    for (int i = 0; i < 200; ++i)
    {
        if (i > 0)
        {
            hp *= h2;
            c = eh * hp + i * c;
            scale *= b / i;
        }
        double r = 1.0 / (i + 1.0);
        double inner = r;
        for (int j = 1; j <= i; ++j)
        {
            r *= (i - j + 1.0) * (-b / 2.0) * (i + j) / ((i + j + 1.0) * j);
            inner += r;
        }
        const double term = scale * inner * c;
        S += term;
        if (std::fabs(term) <= kRelStop * std::fabs(S))
        {
            const double q = mUpper(h);
            *out = q * q / 2.0 + S / (4.0 * kPi);
            kernel_terms = i + 1;
            return 0;
        }
    }
    kernel_terms = 200;
    return 4;
}

int owen_tail(double h, double a, double* out)
{
    if (a > 1.333333)
        return owen_large(h, a, out);
    if (a >= 0.75 && a <= 1.0)
        return owen_near_one(h, a, out);
    double w = 0.0;
    const int code = a > 1.0 ? owen_near_one(a * h, 1.0 / a, &w) : owen_large(a * h, 1.0 / a, &w);
    if (code != 0)
        return code;
    *out = mUpper(h) * mUpper(a * h) - w;
    return 0;
}

double t_ncdf_owen(double t, double df, double delta)
{
    const int n = static_cast<int>(df);
    const double A = t / std::sqrt(static_cast<double>(n));
    const double B = n / (t * t + n);
    const double b = std::sqrt(B);
    const double m = delta * b;
    if (n == 1)
    {
        double v = 0.0;
        if (owen_tail(m, -A, &v) != 0)
            return -1.0;
        return 2.0 * v;
    }
    double lowerMA = 0.0, upperMA = 0.0;
    normal_df(m * A, &lowerMA, &upperMA);
    double M[3];
    M[0] = b * A * normal_density(m) * lowerMA;
    M[1] = (A * delta * M[0] + (A / kSqrt2Pi) * normal_density(delta)) * B;
    double even = M[0];
    double odd = M[1];
    double ak = 1.0;
    double prev2 = M[0], prev1 = M[1];
    for (int k = 2; k <= n - 2; ++k)
    {
        double Mk = 0.0;
        if (k == 2)
            Mk = (A * delta * prev1 + prev2) * B / 2.0;
        else
        {
            ak = 1.0 / ((k - 2.0) * ak);
            Mk = ((k - 1.0) / k) * B * (ak * A * delta * prev1 + prev2);
        }
        if (k % 2 == 0)
            even += Mk;
        else
            odd += Mk;
        prev2 = prev1;
        prev1 = Mk;
    }
    if (n % 2 == 0)
    {
        double lower = 0.0, upper = 0.0;
        normal_df(delta, &lower, &upper);
        return upper + kSqrt2Pi * even;
    }
    double v = 0.0;
    if (owen_tail(m, -A, &v) != 0)
        return -1.0;
    // n = 1 has no M terms; odd n >= 3 adds M1 + M3 + ... + M(n-2).
    return 2.0 * v + 2.0 * odd;
}
