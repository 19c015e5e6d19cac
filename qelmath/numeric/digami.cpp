// Derivatives of the incomplete gamma integral
//     I(x, p) = 1/Gamma(p) * integral from 0 to x of t^(p-1) e^-t dt
// with respect to x and to p, by Moore, Applied Statistics algorithm AS 187
// (1982), with the correction of the second derivative in p of 1993:
//   d[0] = dI/dx, d[1] = d2I/dx2, d[2] = dI/dp, d[3] = d2I/dp2,
//   d[4] = d2I/dx dp, d[5] = I.
// The derivatives in x are closed forms.  Those in p come from
//   * Pearson's series I = f S, f = x^p e^-x / Gamma(p + 1),
//     S = sum of x^k / ((p + 1) ... (p + k)), for x <= 1 or x < p;
//   * Legendre's continued fraction 1 - I = f S, f = x^p e^-x / Gamma(p),
//     otherwise, with the convergents rescaled by 1e-30 when they pass 1e+30,
// each differentiated term by term.  Convergence is at 1e-6 relative; after
// 2500 terms without it ifault is 1.
// The caller supplies log Gamma(p), log Gamma(p + 1), psi(p), psi(p + 1),
// psi'(p), psi'(p + 1).

#include "qel/specialroutines.h"

#include <cmath>
#include <limits>

namespace
{

const double kTolerance = 1.0e-6;
const double kOverflow = 1.0e30;
const double kMaxTerms = 2500.0;
const double kVerySmall = 1.0e-30;

// Limits at x = 0, where the closed forms meet 0 * log 0: I and its
// derivatives in p vanish; the density and its derivatives follow from
// x^(p-1) / Gamma(p) near 0.
void mAtZero(double* d, double dP)
{
    const double dInf = std::numeric_limits<double>::infinity();
    d[0] = dP > 1.0 ? 0.0 : (dP == 1.0 ? 1.0 : dInf);
    if (dP > 2.0)
        d[1] = 0.0;
    else if (dP == 2.0)
        d[1] = 1.0;
    else if (dP > 1.0)
        d[1] = dInf;
    else if (dP == 1.0)
        d[1] = -1.0;
    else
        d[1] = -dInf;
    d[2] = 0.0;
    d[3] = 0.0;
    d[4] = dP > 1.0 ? 0.0 : -dInf;
    d[5] = 0.0;
}

} // namespace

extern "C" {

void DIGAMI(double* d, double* x, double* p, double* gplog, double* gp1log, double* psip,
            double* psip1, double* psidp, double* psidp1, int* ifault)
{
    const double dX = *x;
    const double dP = *p;
    *ifault = 0;

    if (dX == 0.0 && dP > 0.0)
    {
        mAtZero(d, dP);
        return;
    }

    const double dPm1 = dP - 1.0;
    const double dXLog = std::log(dX);
    d[0] = std::exp(-*gplog + dPm1 * dXLog - dX);
    d[1] = d[0] * (dPm1 / dX - 1.0);
    d[4] = d[0] * (dXLog - *psip);

    if (!(dX > 1.0 && dX >= dP))
    {
        // Pearson's series.  Term k is c_k = x^k / ((p + 1) ... (p + k));
        // its derivatives in p are c_k g_k and c_k (g_k^2 + h_k) with
        // g_k = -sum 1/(p + j), h_k = sum 1/(p + j)^2.
        const double dF = std::exp(dP * dXLog - *gp1log - dX);
        const double dU = dXLog - *psip1;
        const double dFp = dF * dU;
        const double dFpp = dF * (dU * dU - *psidp1);

        double dC = 1.0;
        double dG = 0.0;
        double dH = 0.0;
        double dS = 1.0;
        double dSp = 0.0;
        double dSpp = 0.0;
        double dA = dP;
        const double dLast = dP + kMaxTerms;
        for (;;)
        {
            dA += 1.0;
            dC *= dX / dA;
            dG -= 1.0 / dA;
            dH += 1.0 / (dA * dA);
            dS += dC;
            dSp += dC * dG;
            dSpp += dC * (dG * dG + dH);
            if (dA > dLast)
            {
                *ifault = 1;
                return;
            }
            if (!(dC > kTolerance * dS))
                break;
        }
        d[5] = dS * dF;
        d[2] = dS * dFp + dF * dSp;
        d[3] = dS * dFpp + 2.0 * dFp * dSp + dF * dSpp;
        return;
    }

    // Legendre's continued fraction for (1 - I)/f: convergents A_n/B_n with
    // A_n = b_n A_(n-1) + a_n A_(n-2), b_n = x + 2n + 1 - p,
    // a_n = n (p - 1 - n); the derivatives in p follow the same recurrence
    // with db/dp = -1, da/dp = n.
    const double dF = std::exp(dP * dXLog - *gplog - dX);
    const double dU = dXLog - *psip;
    const double dFp = dF * dU;
    const double dFpp = dF * (dU * dU - *psidp);

    // Index 0, 1: convergent n - 2 (numerator, denominator); 2, 3: n - 1;
    // 4, 5: n.
    double pn[6];
    double dp[6] = {};
    double dpp[6] = {};
    double dA = dPm1;
    double dB = dX + 1.0 - dA;
    double dTerm = 0.0;
    pn[0] = 1.0;
    pn[1] = dX;
    pn[2] = dX + 1.0;
    pn[3] = dX * dB;
    dp[3] = -dX;
    double dS0 = pn[2] / pn[3];
    double dS = dS0;

    for (;;)
    {
        dA -= 1.0;
        dB += 2.0;
        dTerm += 1.0;
        const double dAn = dA * dTerm;
        pn[4] = dB * pn[2] + dAn * pn[0];
        pn[5] = dB * pn[3] + dAn * pn[1];
        dp[4] = dB * dp[2] - pn[2] + dAn * dp[0] + dTerm * pn[0];
        dp[5] = dB * dp[3] - pn[3] + dAn * dp[1] + dTerm * pn[1];
        dpp[4] = dB * dpp[2] + dAn * dpp[0] + 2.0 * (dTerm * dp[0] - dp[2]);
        dpp[5] = dB * dpp[3] + dAn * dpp[1] + 2.0 * (dTerm * dp[1] - dp[3]);

        if (!(std::fabs(pn[5]) < kVerySmall))
        {
            dS = pn[4] / pn[5];
            const double dChange = std::fabs(dS - dS0);
            if (!(dChange * dP > kTolerance) && dChange <= kTolerance * dS)
                break;
            dS0 = dS;
        }

        for (int i = 0; i < 4; ++i)
        {
            pn[i] = pn[i + 2];
            dp[i] = dp[i + 2];
            dpp[i] = dpp[i + 2];
        }
        if (dTerm > kMaxTerms)
        {
            *ifault = 1;
            return;
        }
        if (!(std::fabs(pn[4]) < kOverflow))
        {
            for (int i = 0; i < 4; ++i)
            {
                pn[i] /= kOverflow;
                dp[i] /= kOverflow;
                dpp[i] /= kOverflow;
            }
        }
    }

    d[5] = 1.0 - dF * dS;
    const double dSp = (dp[4] - dS * dp[5]) / pn[5];
    const double dSpp = (dpp[4] - dS * dpp[5] - 2.0 * dSp * dp[5]) / pn[5];
    d[2] = -dF * dSp - dS * dFp;
    d[3] = -dF * dSpp - 2.0 * dSp * dFp - dS * dFpp;
}

} // extern "C"
