// Digamma and its scaled derivatives, over Amos's polygamma routine
// (ACM TOMS 610).  The routine returns -psi for the order 0, hence the sign
// in mPsi.

#include "qel/specialfunctions.h"
#include "qel/qelmessaging.h"
#include "qel/specialroutines.h"

#include <algorithm>

void mPsiDerivatives(double dX, int iFirstTerm, bool bScaled, int iTermCt,
                     std::vector<double>& rvdResults, int* piUnderflow)
{
    QEL_ASSERT(dX > 0.0);
    QEL_ASSERT(iFirstTerm >= 0);
    QEL_ASSERT((iTermCt >= 1) && (iTermCt <= 100));

    // A count outside 1 to 100 has been reported; it is held to that range
    // so that the vector can always be allocated (a count below 1 leaves it
    // empty, and the routine then refuses the call).
    const int iCount = std::min(std::max(iTermCt, 0), 100);
    rvdResults.assign(static_cast<std::size_t>(iCount), 0.0);

    double dArgument = dX;
    int iFirst = iFirstTerm;
    int iKode = bScaled ? 2 : 1;
    int iM = iCount;
    int iUnderflow = 0;
    int fiError = 0;
    XDPSIFN(&dArgument, &iFirst, &iKode, &iM, rvdResults.data(), &iUnderflow, &fiError);
    QEL_ASSERT(fiError == 0);

    if (piUnderflow != nullptr)
        *piUnderflow = iUnderflow;
}

double mPsi(double dX)
{
    std::vector<double> vdResults;
    mPsiDerivatives(dX, 0, false, 1, vdResults, nullptr);
    return -vdResults[0];
}
