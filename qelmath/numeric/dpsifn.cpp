// Scaled derivatives of the digamma function by Amos, "A portable Fortran
// subroutine for derivatives of the psi function", ACM TOMS 9 (1983),
// Algorithm 610:
//     ans[k] = (-1)^(j+1) psi^(j)(x) / j!,  j = n + k,  k = 0 .. m-1,
// and with kode = 2 the term of order 0 is -psi(x) + log x.
//
// Regimes:
//   * x below the rounding unit: the leading term x^-(j+1) alone;
//   * j >= 1, x well below the crossover and few terms needed: the direct
//     series sum over k of (x + k)^-(j+1);
//   * otherwise the asymptotic expansion in the Bernoulli numbers at
//     max(x, xmin), the crossover xmin = 3.5 + 0.4 f + (0.21 + f (0.0006038 f
//     + 0.008677)) j growing with the order, followed by downward recurrence
//     from xmin to x; the lower orders come from the highest one by rescaling
//     the same terms.
// Error codes are those of the publication: 1 bad input, 2 overflow (x too
// small or the order too large), 3 the recurrence would need more than 100
// steps; with these machine constants code 3 cannot arise, as an order high
// enough to need it underflows first.  nz counts the highest orders set to 0
// by underflow.
//
// PSI(x) is -ans[0] of the call with n = 0, kode = 1, m = 1.

#include "qel/specialroutines.h"

#include <algorithm>
#include <cmath>

namespace
{

// B(1) = 1, B(2) = -1/2, B(k) = the Bernoulli number B_(2k-4) for k >= 3.
const double kBernoulli[22] = {
    1.00000000000000000e+00,  -5.00000000000000000e-01, 1.66666666666666667e-01,
    -3.33333333333333333e-02, 2.38095238095238095e-02,  -3.33333333333333333e-02,
    7.57575757575757576e-02,  -2.53113553113553114e-01, 1.16666666666666667e+00,
    -7.09215686274509804e+00, 5.49711779448621554e+01,  -5.29124242424242424e+02,
    6.19212318840579710e+03,  -8.65802531135531136e+04, 1.42551716666666667e+06,
    -2.72982310678160920e+07, 6.01580873900642368e+08,  -1.51163157670921569e+10,
    4.29614643061166667e+11,  -1.37116552050883328e+13, 4.88332318973593167e+14,
    -1.92965793419400681e+16};

const int kMaxRecurrence = 100;

int mI1mach(int iIndex)
{
    return I1MACH(&iIndex);
}
double mD1mach(int iIndex)
{
    return D1MACH(&iIndex);
}

// Bernoulli coefficient k (1-based, as in the table above).
double mB(int k)
{
    return kBernoulli[k - 1];
}

} // namespace

extern "C" {

void XDPSIFN(double* x, int* n, int* kode, int* m, double* ans, int* nz, int* ierr)
{
    const double dX = *x;
    const int iN = *n;
    const int iKode = *kode;
    *ierr = 0;
    *nz = 0;
    if (!(dX > 0.0) || iN < 0 || iKode < 1 || iKode > 2 || *m < 1)
    {
        *ierr = 1;
        return;
    }

    int iCount = *m;
    const double dR1m5 = mD1mach(5);
    const double dWdTol = std::max(0.5 * mD1mach(4), 0.5e-18);
    const int iExponentRange = std::min(-mI1mach(15), mI1mach(16));
    // Approximate limit of the exponent before exp over- or underflows.
    const double dElim = 2.302 * (iExponentRange * dR1m5 - 3.0);
    const double dXLog = std::log(dX);

    // Terms of the asymptotic series, kept to be rescaled for lower orders;
    // terms of the downward recurrence.
    double dTrm[22] = {};
    double dTrmr[kMaxRecurrence] = {};

    for (;;)
    {
        // Highest order asked for; held in floating point so that a large n
        // cannot overflow an int.
        const double dHighest = static_cast<double>(iN) + (iCount - 1);
        double dFn = dHighest;
        double dT = (dFn + 1.0) * dXLog;

        if (std::fabs(dT) > dElim)
        {
            if (dT <= 0.0)
            {
                // x^-(j+1) overflows.
                *nz = 0;
                *ierr = 2;
                return;
            }
            // The highest order underflows: set it to 0 and try one fewer.
            ++*nz;
            ans[iCount - 1] = 0.0;
            --iCount;
            if (iCount == 0)
                return;
            continue;
        }

        if (dX < dWdTol)
        {
            // Only the leading term x^-(j+1) counts.
            ans[0] = std::pow(dX, -(static_cast<double>(iN) + 1.0));
            for (int k = 1; k < iCount; ++k)
                ans[k] = ans[k - 1] / dX;
            if (iN == 0 && iKode == 2)
                ans[0] += dXLog;
            return;
        }

        // Crossover xmin above which the asymptotic series reaches the
        // precision, as a function of the order; the number of decimal digits
        // is held at 18.06 at most.
        const double dRln = std::min(dR1m5 * mI1mach(14), 18.06);
        double dFln = std::max(dRln, 3.0) - 3.0;
        const double dYint = 3.50 + 0.40 * dFln;
        const double dSlope = 0.21 + dFln * (0.0006038 * dFln + 0.008677);
        const double dXmin = std::floor(dYint + dSlope * dFn) + 1.0;

        if (iN != 0)
        {
            // Number of terms the direct series needs for the lowest order.
            double dXm = -2.302 * dRln - std::min(0.0, dXLog);
            const double dArg = std::min(0.0, dXm / iN);
            const double dEps = std::exp(dArg);
            dXm = 1.0 - dEps;
            if (std::fabs(dArg) < 1.0e-3)
                dXm = -dArg;
            dFln = dX * dXm / dEps;
            if (dXmin - dX > 7.0 && dFln < 15.0)
            {
                // Direct series sum over k of (x + k)^-(n+1).
                const int iTerms = static_cast<int>(dFln) + 1;
                const double dNp = static_cast<double>(iN) + 1.0;
                double dLead = std::exp(-dNp * dXLog);
                double dSum = dLead;
                double dDen = dX;
                for (int i = 0; i < iTerms; ++i)
                {
                    dDen += 1.0;
                    dTrm[i] = std::pow(dDen, -dNp);
                    dSum += dTrm[i];
                }
                ans[0] = dSum;
                // Higher orders: each term divided once more by x + k.
                const double dTol = dWdTol / 5.0;
                for (int j = 1; j < iCount; ++j)
                {
                    dLead /= dX;
                    dSum = dLead;
                    const double dTols = dLead * dTol;
                    dDen = dX;
                    for (int i = 0; i < iTerms; ++i)
                    {
                        dDen += 1.0;
                        dTrm[i] /= dDen;
                        dSum += dTrm[i];
                        if (dTrm[i] < dTols)
                            break;
                    }
                    ans[j] = dSum;
                }
                return;
            }
        }

        // Shift x up to xmin for the asymptotic series.
        double dXdmy = dX;
        double dXdmln = dXLog;
        double dXinc = 0.0;
        if (dX < dXmin)
        {
            dXinc = dXmin - std::floor(dX);
            dXdmy = dX + dXinc;
            dXdmln = std::log(dXdmy);
        }

        // Asymptotic expansion of the highest order at xdmy.
        dT = dFn * dXdmln;
        const double dTk0 = std::max({std::fabs(dT), std::fabs(2.0 * dXdmln),
                                      std::fabs(dT + dXdmln)});
        if (dTk0 > dElim)
        {
            ++*nz;
            ans[iCount - 1] = 0.0;
            --iCount;
            if (iCount == 0)
                return;
            continue;
        }
        double dTss = std::exp(-dT);
        const double dTt = 0.5 / dXdmy;
        double dT1 = dTt;
        const double dTst = dWdTol * dTt;
        if (dHighest != 0.0)
            dT1 = dTt + 1.0 / dFn;
        const double dRxsq = 1.0 / (dXdmy * dXdmy);
        const double dTa = 0.5 * dRxsq;
        dT = (dFn + 1.0) * dTa;
        double dS = dT * mB(3);
        if (std::fabs(dS) >= dTst)
        {
            double dTk = 2.0;
            for (int k = 4; k <= 22; ++k)
            {
                dT = dT * ((dTk + dFn + 1.0) / (dTk + 1.0)) * ((dTk + dFn) / (dTk + 2.0)) * dRxsq;
                dTrm[k - 1] = dT * mB(k);
                if (std::fabs(dTrm[k - 1]) < dTst)
                    break;
                dS += dTrm[k - 1];
                dTk += 2.0;
            }
        }
        dS = (dS + dT1) * dTss;

        // Downward recurrence from xdmy to x:
        // w_j(x) = w_j(x + 1) + x^-(j+1).
        int iSteps = 0;
        if (dXinc != 0.0)
        {
            iSteps = static_cast<int>(dXinc);
            if (iSteps > kMaxRecurrence)
            {
                *nz = 0;
                *ierr = 3;
                return;
            }
            if (dHighest == 0.0)
            {
                for (int i = 1; i <= iSteps; ++i)
                    dS += 1.0 / (dX + (iSteps - i));
                ans[0] = (iKode == 2) ? (dXdmy == dX ? dS : dS - std::log(dXdmy / dX))
                                      : dS - dXdmln;
                return;
            }
            const double dNp = dHighest + 1.0;
            // x + (xinc - 1), x + (xinc - 2), ...: formed from x each time,
            // which keeps them accurate for small x.
            double dXm = dXinc - 1.0;
            for (int i = 0; i < iSteps; ++i)
            {
                dTrmr[i] = std::pow(dX + dXm, -dNp);
                dS += dTrmr[i];
                dXm -= 1.0;
            }
        }
        ans[iCount - 1] = dS;
        if (dFn == 0.0)
        {
            ans[0] = (iKode == 2) ? (dXdmy == dX ? dS : dS - std::log(dXdmy / dX)) : dS - dXdmln;
            return;
        }

        // Lower orders, from the highest downward, by rescaling the terms.
        for (int j = 2; j <= iCount; ++j)
        {
            dFn -= 1.0;
            dTss *= dXdmy;
            dT1 = dTt;
            if (dFn != 0.0)
                dT1 = dTt + 1.0 / dFn;
            dT = (dFn + 1.0) * dTa;
            dS = dT * mB(3);
            if (std::fabs(dS) >= dTst)
            {
                double dTk = 4.0 + dFn;
                for (int k = 4; k <= 22; ++k)
                {
                    dTrm[k - 1] = dTrm[k - 1] * (dFn + 1.0) / dTk;
                    if (std::fabs(dTrm[k - 1]) < dTst)
                        break;
                    dS += dTrm[k - 1];
                    dTk += 2.0;
                }
            }
            dS = (dS + dT1) * dTss;
            if (dXinc != 0.0)
            {
                if (dFn == 0.0)
                {
                    for (int i = 1; i <= iSteps; ++i)
                        dS += 1.0 / (dX + (iSteps - i));
                }
                else
                {
                    double dXm = dXinc - 1.0;
                    for (int i = 0; i < iSteps; ++i)
                    {
                        dTrmr[i] *= dX + dXm;
                        dS += dTrmr[i];
                        dXm -= 1.0;
                    }
                }
            }
            if (dFn == 0.0)
            {
                ans[0] = (iKode == 2) ? (dXdmy == dX ? dS : dS - std::log(dXdmy / dX))
                                      : dS - dXdmln;
                return;
            }
            ans[iCount - j] = dS;
        }
        return;
    }
}

void DPSIFN(double* x, int* n, int* kode, int* m, double* ans, int* nz, int* ierr)
{
    XDPSIFN(x, n, kode, m, ans, nz, ierr);
}

double PSI(double* x)
{
    int n = 0;
    int kode = 1;
    int m = 1;
    double dAns = 0.0;
    int nz = 0;
    int ierr = 0;
    XDPSIFN(x, &n, &kode, &m, &dAns, &nz, &ierr);
    // 0 where the digamma function cannot be computed, as in TOMS 708.
    if (ierr != 0)
        return 0.0;
    return -dAns;
}

} // extern "C"
