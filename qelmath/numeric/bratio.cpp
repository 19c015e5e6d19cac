// The incomplete beta ratio I_x(a, b) and its complement by the method of
// DiDonato and Morris, "Algorithm 708: Significant digit computation of the
// incomplete beta function ratios", ACM TOMS 18 (1992), 360-373.
//
// BRATIO checks its arguments, settles the limits (x or y zero, a or b zero,
// both shapes below 0.001 eps), and then chooses among the method routines.
// With a0 = min(a, b) the regimes are:
//   * a0 <= 1: x is taken at most 0.5 by swapping (a, x) with (b, y); then
//     FPSER for a tiny b, APSER for a tiny a, BPSER for either tail where the
//     power series converges, and otherwise BUP followed by BGRAT;
//   * a0 > 1: lambda = (a + b) y - b (or a - (a + b) x) is made nonnegative by
//     swapping, which puts x below the mean; then BPSER for b < 40 and
//     b x <= 0.7, BUP with BPSER or BGRAT for b < 40, the continued fraction
//     BFRAC when the shapes are moderate or x is well away from the mean, and
//     the asymptotic expansion BASYM for large shapes near the mean.
// The tail computed directly is the smaller one; the other is formed as
// 0.5 + (0.5 - w), which loses nothing there.
//
// A NaN or an infinite shape fails the range test of the shapes (code 1) and
// a NaN x or y the range test of x or y (codes 3 and 4), so that no method
// routine ever sees one.
#include "qel/betaroutines.h"
#include "qel/specialroutines.h"

#include <algorithm>
#include <cmath>

namespace
{

double spmpar(int iI)
{
    return SPMPAR(&iI);
}

bool shapeInRange(double dShape)
{
    return dShape >= 0.0 && std::isfinite(dShape);
}
bool unitInRange(double dV)
{
    return dV >= 0.0 && dV <= 1.0;
}

double complementOf(double dW)
{
    return 0.5 + (0.5 - dW);
}

} // namespace

extern "C" void BRATIO(double* pa, double* pb, double* px, double* py, double* w, double* w1,
                       int* ierr)
{
    const double a = *pa, b = *pb, x = *px, y = *py;
    double eps = std::max(spmpar(1), 1.0e-15);
    *w = 0.0;
    *w1 = 0.0;

    if (!shapeInRange(a) || !shapeInRange(b))
    {
        *ierr = 1;
        return;
    }
    if (a == 0.0 && b == 0.0)
    {
        *ierr = 2;
        return;
    }
    if (!unitInRange(x))
    {
        *ierr = 3;
        return;
    }
    if (!unitInRange(y))
    {
        *ierr = 4;
        return;
    }
    const double z = ((x + y) - 0.5) - 0.5;
    if (std::fabs(z) > 3.0 * eps)
    {
        *ierr = 5;
        return;
    }

    *ierr = 0;
    // The limits.
    if (x == 0.0)
    {
        if (a == 0.0)
        {
            *ierr = 6;
            return;
        }
        *w = 0.0;
        *w1 = 1.0;
        return;
    }
    if (y == 0.0)
    {
        if (b == 0.0)
        {
            *ierr = 7;
            return;
        }
        *w = 1.0;
        *w1 = 0.0;
        return;
    }
    if (a == 0.0)
    {
        *w = 1.0;
        *w1 = 0.0;
        return;
    }
    if (b == 0.0)
    {
        *w = 0.0;
        *w1 = 1.0;
        return;
    }

    // Both shapes negligible: I_x(a, b) tends to b / (a + b) for every x.
    if (std::max(a, b) < 1.0e-3 * eps)
    {
        *w = b / (a + b);
        *w1 = a / (a + b);
        return;
    }

    bool swapped = false;
    double a0 = a, b0 = b, x0 = x, y0 = y;
    double lambda = 0.0;
    auto swapRoles = [&]()
    {
        swapped = true;
        a0 = b;
        b0 = a;
        x0 = y;
        y0 = x;
    };

    // The method chosen, with the tail it computes directly.
    enum class EMethod
    {
        eFpser,
        eApser,
        eBpser,
        eBpserComplement,
        eBupBgratComplement,
        eBgratComplement,
        eBupBpserOrBgrat,
        eBfrac,
        eBasym
    };
    EMethod method;
    int n = 0;

    if (std::min(a, b) <= 1.0)
    {
        // Procedure for a0 <= 1 or b0 <= 1.
        if (x > 0.5)
            swapRoles();
        if (b0 < std::min(eps, eps * a0))
            method = EMethod::eFpser;
        else if (a0 < std::min(eps, eps * b0) && b0 * x0 <= 1.0)
            method = EMethod::eApser;
        else if (std::max(a0, b0) <= 1.0)
        {
            if (a0 >= std::min(0.2, b0) || std::pow(x0, a0) <= 0.9)
                method = EMethod::eBpser;
            else if (x0 >= 0.3)
                method = EMethod::eBpserComplement;
            else
            {
                n = 20;
                method = EMethod::eBupBgratComplement;
            }
        }
        else if (b0 <= 1.0)
            method = EMethod::eBpser;
        else if (x0 >= 0.3)
            method = EMethod::eBpserComplement;
        else if (x0 < 0.1 && std::pow(x0 * b0, a0) <= 0.7)
            method = EMethod::eBpser;
        else if (b0 > 15.0)
            method = EMethod::eBgratComplement;
        else
        {
            n = 20;
            method = EMethod::eBupBgratComplement;
        }
    }
    else
    {
        // Procedure for a0 > 1 and b0 > 1: put x on the lower side of the
        // mean a / (a + b).
        lambda = a > b ? (a + b) * y - b : a - (a + b) * x;
        if (lambda < 0.0)
        {
            swapRoles();
            lambda = std::fabs(lambda);
        }
        if (b0 < 40.0 && b0 * x0 <= 0.7)
            method = EMethod::eBpser;
        else if (b0 < 40.0)
            method = EMethod::eBupBpserOrBgrat;
        else if (a0 > b0)
            method = (b0 <= 100.0 || lambda > 0.03 * b0) ? EMethod::eBfrac : EMethod::eBasym;
        else
            method = (a0 <= 100.0 || lambda > 0.03 * a0) ? EMethod::eBfrac : EMethod::eBasym;
    }

    double dw = 0.0, dw1 = 0.0;
    double eps15 = 15.0 * eps;
    int ierr1 = 0;
    switch (method)
    {
    case EMethod::eFpser:
        dw = FPSER(&a0, &b0, &x0, &eps);
        dw1 = complementOf(dw);
        break;
    case EMethod::eApser:
        dw1 = APSER(&a0, &b0, &x0, &eps);
        dw = complementOf(dw1);
        break;
    case EMethod::eBpser:
        dw = BPSER(&a0, &b0, &x0, &eps);
        dw1 = complementOf(dw);
        break;
    case EMethod::eBpserComplement:
        dw1 = BPSER(&b0, &a0, &y0, &eps);
        dw = complementOf(dw1);
        break;
    case EMethod::eBupBgratComplement:
        // I_y(b0, a0) = [I_y(b0, a0) - I_y(b0 + n, a0)] + I_y(b0 + n, a0).
        dw1 = BUP(&b0, &a0, &y0, &x0, &n, &eps);
        b0 += n;
        BGRAT(&b0, &a0, &y0, &x0, &dw1, &eps15, &ierr1);
        dw = complementOf(dw1);
        break;
    case EMethod::eBgratComplement:
        BGRAT(&b0, &a0, &y0, &x0, &dw1, &eps15, &ierr1);
        dw = complementOf(dw1);
        break;
    case EMethod::eBupBpserOrBgrat:
    {
        // b0 = n + e with 0 < e <= 1:
        // I_x(a0, b0) = I_x(a0, e) + [I_y(e, a0) - I_y(e + n, a0)].
        n = static_cast<int>(b0);
        b0 -= n;
        if (b0 == 0.0)
        {
            --n;
            b0 = 1.0;
        }
        dw = BUP(&b0, &a0, &y0, &x0, &n, &eps);
        if (x0 <= 0.7)
        {
            dw += BPSER(&a0, &b0, &x0, &eps);
        }
        else
        {
            if (a0 <= 15.0)
            {
                n = 20;
                dw += BUP(&a0, &b0, &x0, &y0, &n, &eps);
                a0 += n;
            }
            BGRAT(&a0, &b0, &x0, &y0, &dw, &eps15, &ierr1);
        }
        dw1 = complementOf(dw);
        break;
    }
    case EMethod::eBfrac:
        dw = BFRAC(&a0, &b0, &x0, &y0, &lambda, &eps15);
        dw1 = complementOf(dw);
        break;
    case EMethod::eBasym:
    {
        double eps100 = 100.0 * eps;
        dw = BASYM(&a0, &b0, &lambda, &eps100);
        dw1 = complementOf(dw);
        break;
    }
    }

    if (swapped)
    {
        *w = dw1;
        *w1 = dw;
    }
    else
    {
        *w = dw;
        *w1 = dw1;
    }
}
