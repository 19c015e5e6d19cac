// By-reference entry points of the uniform generator, for callers that pass
// every argument by address.  Each applies to the process-wide instance.
#include "qel/uniformgenerator.h"

extern "C"
{
    void INIT_RANDOM()
    {
        CmUniformGenerator::mInstance()->mReset();
    }

    // A null address has nothing to read or fill and is passed over.
    void SETBAS(double* pdBase)
    {
        if (pdBase != nullptr)
            CmUniformGenerator::mInstance()->mSetBase(*pdBase);
    }

    void GTBASE(double* pdBase)
    {
        if (pdBase != nullptr)
            *pdBase = CmUniformGenerator::mInstance()->mGetBase();
    }

    double XRND(double*)
    {
        return CmUniformGenerator::mInstance()->mGetRandom();
    }
}
