// Counting and subsets: factorials, binomial coefficients, permutations and
// combinations, and enumerators of the k-subsets of {0, ..., n-1}, without and
// with replacement.
//
// The counts go through the logarithm of the gamma function, so they are exact
// only as far as rounding to the nearest integer restores them.  Overflow is
// handled differently from function to function on purpose: mNFactorial and
// mNChooseK answer 0, while mPermutations and mCombinations let CmFloatOverflow
// pass to the caller.
//
// The by-reference entries N_CHOOSE_K, INIT_N_CHOOSE_K_SUBSETS and
// NEXT_N_CHOOSE_K_SUBSET serve callers that pass every argument by address;
// the last two share one process-wide enumerator, for one enumeration at a
// time and one thread at a time, and count subscripts from 1.
#pragma once

#include "qel/qelexport.h"

#include <vector>

// n!; 0 when it exceeds mGetMaxInteger().
QEL_API int mNFactorial(int iN);
// The binomial coefficient, rounded and converted to int without a range check.
QEL_API int mNChooseK(int iN, int iK);
// The logarithm of the binomial coefficient.
QEL_API double mLogNChooseK(int iN, int iK);
// Ordered and unordered selections of dK out of dN, as rounded doubles.
QEL_API double mPermutations(double dN, double dK);
QEL_API double mCombinations(double dN, double dK);

// The subsets of iK distinct subscripts out of 0, ..., iN-1 in lexicographic
// order.  mInitialize returns the number of subsets; each mNextSubset hands out
// the next one, and a call beyond the last is reported and changes nothing.
class QEL_API CmSubsetsOfNChooseK
{
public:
    CmSubsetsOfNChooseK();
    CmSubsetsOfNChooseK(const CmSubsetsOfNChooseK& rOther);
    virtual ~CmSubsetsOfNChooseK();
    // Refused: reported through mAssert, and nothing is copied.
    CmSubsetsOfNChooseK& operator=(const CmSubsetsOfNChooseK& rOther);

    int mInitialize(int iN, int iK);
    void mNextSubset(std::vector<int>& rviSubset);

private:
    std::vector<int> m_viSubset; // the subset the next call hands out, 0-based
    int m_iN;
    int m_iK;
    int m_iTotal;
    int m_iPosition; // the number of subsets handed out so far
};

// The multisets of iK subscripts out of 0, ..., iN-1 (subsets with
// replacement), each as a non-decreasing sequence.  The iN constant subsets come
// first, 0...0 up to (iN-1)...(iN-1); the others follow in lexicographic order.
class QEL_API CmSubsetsOfNChooseKWithReplacement
{
public:
    CmSubsetsOfNChooseKWithReplacement();
    CmSubsetsOfNChooseKWithReplacement(const CmSubsetsOfNChooseKWithReplacement& rOther);
    virtual ~CmSubsetsOfNChooseKWithReplacement();
    // Refused: reported through mAssert, and nothing is copied.
    CmSubsetsOfNChooseKWithReplacement& operator=(const CmSubsetsOfNChooseKWithReplacement& rOther);

    int mInitialize(int iN, int iK);
    void mNextSubset(std::vector<int>& rviSubset);

private:
    std::vector<int> m_viSubset; // the subset the next call hands out, 0-based
    int m_iN;
    int m_iK;
    int m_iTotal;
    int m_iPosition; // the number of subsets handed out so far
};

extern "C" {
// mNChooseK(*iN, *iK).
QEL_API int N_CHOOSE_K(int* iN, int* iK);
// Starts the process-wide enumeration of the iK-subsets of iN; returns their count.
QEL_API int INIT_N_CHOOSE_K_SUBSETS(int* iN, int* iK);
// Stores the next subset of that enumeration in piSubset[0 .. *pfiSize-1], each
// subscript plus 1.
QEL_API void NEXT_N_CHOOSE_K_SUBSET(int* piSubset, int* pfiSize);
}
