// Machine constants of IEEE double precision for the special-function
// routines: the integer and real tables that Amos's polygamma routine
// (ACM TOMS 610) reads, and the parameter table of DiDonato and Morris
// (ACM TOMS 708) from which SPMPAR and EXPARG derive precision, range and the
// limits of the exponential.
//
// The tables are indexed from 1 and hold only the entries these routines read;
// the other entries are 0.  An index outside a table gives 0 as well.

#include "qel/specialroutines.h"

#include <cmath>

namespace
{

const int kI1MachTable[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 53, -1021, 1024};

const double kD1MachTable[5] = {0.0, 0.0, 0.0, 2.220446049250313e-16, 0.3010299956639812};

// 1-3: base, digits and largest value of int; 4-7: base, digits, smallest and
// largest exponent of single precision; 8-10: digits, smallest and largest
// exponent of double precision.
const int kIpmparTable[10] = {2, 31, 2147483647, 2, 24, -125, 128, 53, -1021, 1024};

int mIpmpar(int iIndex)
{
    return IPMPAR(&iIndex);
}

} // namespace

extern "C" {

int I1MACH(int* i)
{
    if (*i < 1 || *i > 16)
        return 0;
    return kI1MachTable[*i - 1];
}

double D1MACH(int* i)
{
    if (*i < 1 || *i > 5)
        return 0.0;
    return kD1MachTable[*i - 1];
}

int IPMPAR(int* i)
{
    if (*i < 1 || *i > 10)
        return 0;
    return kIpmparTable[*i - 1];
}

// 1: b^(1 - m); 2: b^(emin - 1), reached from b^(emin + 2) by three divisions
// so that no intermediate underflows; 3: (1 - b^-m) b^emax, assembled so that
// no intermediate overflows.
double SPMPAR(int* i)
{
    const double dBase = mIpmpar(4);
    const int iDigits = mIpmpar(8);
    if (*i <= 1)
        return std::pow(dBase, 1 - iDigits);
    if (*i == 2)
    {
        const double dInverse = 1.0 / dBase;
        const double dW = std::pow(dBase, mIpmpar(9) + 2);
        return ((dW * dInverse) * dInverse) * dInverse;
    }
    const double dZ = std::pow(dBase, iDigits - 1);
    const double dW = ((dZ - 1.0) * dBase + (dBase - 1.0)) / (dBase * dZ);
    const double dScale = std::pow(dBase, mIpmpar(10) - 2);
    return ((dW * dScale) * dBase) * dBase;
}

// 0.99999 of the exponent range times log of the base: a safe margin inside
// the range of exp.
double EXPARG(int* l)
{
    const int iBase = mIpmpar(4);
    double dLogBase;
    if (iBase == 2)
        dLogBase = 0.69314718055995;
    else if (iBase == 8)
        dLogBase = 2.0794415416798;
    else if (iBase == 16)
        dLogBase = 2.7725887222398;
    else
        dLogBase = std::log(static_cast<double>(iBase));

    const int iExponent = (*l == 0) ? mIpmpar(10) : mIpmpar(9) - 1;
    return 0.99999 * (iExponent * dLogBase);
}

} // extern "C"
