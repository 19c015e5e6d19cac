// Counting, subsets, ranks and vector utilities.  Functions that return their
// results through reference or array arguments are registered as lambdas that
// return those results as a vector.  The two subset entries share the library's
// one enumeration, so a script may call INIT_N_CHOOSE_K_SUBSETS and then
// NEXT_N_CHOOSE_K_SUBSET on the lines that follow.
#include "../registry.h"

#include "qel/combinatorics.h"
#include "qel/ranks.h"

#include <cstddef>
#include <vector>

QEL_EVAL_FUNCTIONS(mathutilities_combinatorics)
{
    reg.mAdd("mNFactorial", &mNFactorial, "iN");
    reg.mAdd("mNChooseK", &mNChooseK, "iN, iK");
    reg.mAdd("mLogNChooseK", &mLogNChooseK, "iN, iK");
    reg.mAdd("mPermutations", &mPermutations, "dN, dK");
    reg.mAdd("mCombinations", &mCombinations, "dN, dK");

    reg.mAdd("N_CHOOSE_K", &N_CHOOSE_K, "iN, iK");
    reg.mAdd("INIT_N_CHOOSE_K_SUBSETS", &INIT_N_CHOOSE_K_SUBSETS, "iN, iK");
    // The next subset, counted from 1, in an array of iSize elements.
    reg.mAdd(
        "NEXT_N_CHOOSE_K_SUBSET",
        +[](int iSize) {
            std::vector<int> viSubset(iSize > 0 ? static_cast<std::size_t>(iSize) : 1u, 0);
            NEXT_N_CHOOSE_K_SUBSET(viSubset.data(), &iSize);
            viSubset.resize(iSize > 0 ? static_cast<std::size_t>(iSize) : 0u);
            return viSubset;
        },
        "iSize");

    // The ranks of all the data.
    reg.mAdd(
        "mComputeRanks",
        +[](std::vector<double> vdData, bool bAverageTies, bool bAscending) {
            std::vector<double> vdRanks;
            mComputeRanks(vdData, vdRanks, bAverageTies, bAscending);
            return vdRanks;
        },
        "rvdData, bAverageTies, bAscending");

    reg.mAdd(
        "mHadamardProduct",
        +[](std::vector<double> vdV, std::vector<double> vdW) {
            std::vector<double> vdResult;
            mHadamardProduct(vdV, vdW, vdResult);
            return vdResult;
        },
        "rvdV, rvdW");
    reg.mAdd(
        "mExponentiateVector",
        +[](std::vector<double> vdV) {
            std::vector<double> vdResult;
            mExponentiateVector(vdV, vdResult);
            return vdResult;
        },
        "rvdV");
    reg.mAdd(
        "mLogVector",
        +[](std::vector<double> vdV) {
            std::vector<double> vdResult;
            mLogVector(vdV, vdResult);
            return vdResult;
        },
        "rvdV");
    reg.mAdd("mGetINTGVectorIntersection", &mGetINTGVectorIntersection, "rviA, rviB");
}
