// The process-wide source of uniform random numbers.
//
// Three multiplicative congruential streams with the small moduli of
// L'Ecuyer, "Efficient and portable combined random number generators",
// Communications of the ACM 31 (1988) (multipliers 157, 146, 142 and
// moduli 32363, 31727, 31657, so that every product fits 32 bits), combined as
// Wichmann and Hill combine theirs (Applied Statistics AS 183, 1982): the
// fractional part of the sum of the three fractions.
//
// The whole state can be written as one number, the base: a mixed-radix
// number whose digits are the three seeds less one.  A caller fixes a stream
// with mSetBase, reads the present position with mGetBase and resumes it
// later; mPushBase and mPopBase park and restore one state.
//
// One object serves the process and lives until it ends; it is for one thread
// at a time.
#pragma once

#include "qel/qelbt.h"
#include "qel/qelexport.h"

#include <vector>

class QEL_API CmUniformGenerator : public Singleton
{
public:
    // The instance, made at first use and seeded from the clock.
    static CmUniformGenerator* mInstance();

    // The next variate, in [0, 1).
    double mGetRandom();
    // Empties rvdValues and fills it with iCount variates (none for
    // iCount <= 0).
    void mGetRandom(int iCount, std::vector<double>& rvdValues);

    // Sets the state from a base.  The base is taken by its absolute value
    // modulo the number of states, 32362 * 31726 * 31656.
    void mSetBase(double dBase);
    // The base of the present state, a whole number in [0, 32501747400672).
    double mGetBase() const;

    // Parks the present state (one level only) and sets the base.
    void mPushBase(double dBase);
    // Restores the parked state.
    void mPopBase();

    // Sets the state from the local time of day.
    void mReset();

private:
    CmUniformGenerator();

    INTG m_iSeed1;
    INTG m_iSeed2;
    INTG m_iSeed3;
    bool m_bSeedsSaved;
    INTG m_iSavedSeed1;
    INTG m_iSavedSeed2;
    INTG m_iSavedSeed3;
    double m_dModulus1;
    double m_dModulus2;
    double m_dModulus3;

    static CmUniformGenerator* s_pInstance;
};

// By-reference entry points; each applies to the instance.
extern "C"
{
    // Reseeds from the clock.
    QEL_API void INIT_RANDOM();
    // Sets the base *pdBase.
    QEL_API void SETBAS(double* pdBase);
    // Stores the present base in *pdBase.
    QEL_API void GTBASE(double* pdBase);
    // The next variate; the argument is not used.
    QEL_API double XRND(double* pdUnused);
}
