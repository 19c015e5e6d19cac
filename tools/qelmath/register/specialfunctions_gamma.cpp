// Digamma and polygamma, the incomplete gamma ratio with the derivatives of
// the incomplete gamma integral, and the error function.
#include "../registry.h"

#include "qel/specialfunctions.h"

#include <vector>

QEL_EVAL_FUNCTIONS(specialfunctions_gamma)
{
    reg.mAdd("mPsi", &mPsi, "dX");
    reg.mAdd("mPsiDerivatives",
             +[](double dX, int iFirstTerm, bool bScaled, int iTermCt) {
                 std::vector<double> vdResults;
                 mPsiDerivatives(dX, iFirstTerm, bScaled, iTermCt, vdResults, nullptr);
                 return vdResults;
             },
             "dX, iFirstTerm, bScaled, iTermCt");
    reg.mAdd("mIncompleteGammaRatio", &mIncompleteGammaRatio, "dX, dP, bUpper");
    reg.mAdd("mIncompleteGammaDerivatives",
             +[](double dX, double dP) {
                 std::vector<double> vdResults;
                 mIncompleteGammaDerivatives(dX, dP, vdResults);
                 return vdResults;
             },
             "dX, dP");
    reg.mAdd("mErrorFunction", &mErrorFunction, "dX, bComplement");
}
