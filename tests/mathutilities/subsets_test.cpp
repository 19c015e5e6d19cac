// The subset enumerators: every subset for n up to 8 and every k, in the
// stated order and without repeats, checked against enumerations written here
// independently (bit masks for subsets, recursion for multisets); the refused
// assignment, copying, calls beyond the last subset, bad arguments, and the
// by-reference entries with their process-wide enumerator.
#include "qel/qelmath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace
{

typedef std::vector<std::vector<int>> Subsets;

// All k-subsets of {0..n-1} as ascending vectors, in lexicographic order.
Subsets mSubsetsByMasks(int iN, int iK)
{
    Subsets out;
    for (unsigned uMask = 0; uMask < (1u << iN); ++uMask)
    {
        std::vector<int> v;
        for (int i = 0; i < iN; ++i)
            if (uMask & (1u << i))
                v.push_back(i);
        if (static_cast<int>(v.size()) == iK)
            out.push_back(v);
    }
    std::sort(out.begin(), out.end());
    return out;
}

// All non-decreasing sequences of length k over {0..n-1}, in lexicographic
// order, built by recursion.
void mMultisets(int iN, int iK, std::vector<int>& rvPrefix, Subsets& rOut)
{
    if (static_cast<int>(rvPrefix.size()) == iK)
    {
        rOut.push_back(rvPrefix);
        return;
    }
    const int iFrom = rvPrefix.empty() ? 0 : rvPrefix.back();
    for (int v = iFrom; v < iN; ++v)
    {
        rvPrefix.push_back(v);
        mMultisets(iN, iK, rvPrefix, rOut);
        rvPrefix.pop_back();
    }
}

// The order the with-replacement enumerator promises: the constant sequences
// 0...0 to (n-1)...(n-1), then the others in lexicographic order.
Subsets mMultisetsConstantsFirst(int iN, int iK)
{
    Subsets all;
    std::vector<int> vPrefix;
    mMultisets(iN, iK, vPrefix, all);
    Subsets out;
    for (int v = 0; v < iN; ++v)
        out.push_back(std::vector<int>(static_cast<std::size_t>(iK), v));
    for (const auto& s : all)
        if (s.front() != s.back())
            out.push_back(s);
    return out;
}

template <class Enumerator>
Subsets mDrain(Enumerator& e, int iCount)
{
    Subsets out;
    for (int i = 0; i < iCount; ++i)
    {
        std::vector<int> v;
        e.mNextSubset(v);
        out.push_back(v);
    }
    return out;
}

} // namespace

// ---------------------------------------------------------------------------
// Without replacement

TEST(SubsetsOfNChooseK, TwoOfThreeInLexicographicOrder)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseK e;
    ASSERT_EQ(e.mInitialize(3, 2), 3);
    const Subsets expected = {{0, 1}, {0, 2}, {1, 2}};
    EXPECT_EQ(mDrain(e, 3), expected);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(SubsetsOfNChooseK, EverySubsetUpToEightInOrderWithoutRepeats)
{
    CmAssertCapture capture;
    for (int n = 0; n <= 8; ++n)
    {
        for (int k = 0; k <= n; ++k)
        {
            const Subsets expected = mSubsetsByMasks(n, k);
            CmSubsetsOfNChooseK e;
            ASSERT_EQ(e.mInitialize(n, k), static_cast<int>(expected.size()))
                << "n=" << n << " k=" << k;
            const Subsets got = mDrain(e, static_cast<int>(expected.size()));
            EXPECT_EQ(got, expected) << "n=" << n << " k=" << k;
            EXPECT_EQ(std::set<std::vector<int>>(got.begin(), got.end()).size(), got.size());
        }
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(SubsetsOfNChooseK, CallBeyondTheLastIsReportedAndChangesNothing)
{
    CmSubsetsOfNChooseK e;
    e.mInitialize(4, 3);
    mDrain(e, 4);
    CmAssertCapture capture;
    std::vector<int> v = {9, 9};
    e.mNextSubset(v);
    EXPECT_EQ(v, (std::vector<int>{9, 9}));
    e.mNextSubset(v);
    EXPECT_EQ(v, (std::vector<int>{9, 9}));
    EXPECT_EQ(capture.mGetTexts(), (std::vector<std::string>{"false", "false"}));
}

TEST(SubsetsOfNChooseK, DefaultConstructedHasNoSubsets)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseK e;
    std::vector<int> v = {5};
    e.mNextSubset(v);
    EXPECT_EQ(v, std::vector<int>{5});
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
}

TEST(SubsetsOfNChooseK, CopyContinuesFromTheSamePlace)
{
    CmSubsetsOfNChooseK e;
    e.mInitialize(5, 2);
    mDrain(e, 4);
    CmSubsetsOfNChooseK copy(e);
    const Subsets fromOriginal = mDrain(e, 6);
    const Subsets fromCopy = mDrain(copy, 6);
    EXPECT_EQ(fromCopy, fromOriginal);
    EXPECT_EQ(fromCopy.front(), (std::vector<int>{1, 2}));
}

TEST(SubsetsOfNChooseK, AssignmentIsRefusedAndCopiesNothing)
{
    CmSubsetsOfNChooseK source;
    source.mInitialize(6, 3);
    CmSubsetsOfNChooseK target;
    target.mInitialize(3, 2);
    std::vector<int> v;
    target.mNextSubset(v);

    CmAssertCapture capture;
    target = source;
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
    // The target goes on with its own walk: (0,2), (1,2), then the end.
    const Subsets expected = {{0, 2}, {1, 2}};
    EXPECT_EQ(mDrain(target, 2), expected);
    EXPECT_EQ(capture.mGetCount(), 1);
    target.mNextSubset(v);
    EXPECT_EQ(capture.mGetCount(), 2);
}

TEST(SubsetsOfNChooseK, ReinitialisingStartsAgain)
{
    CmSubsetsOfNChooseK e;
    e.mInitialize(4, 2);
    mDrain(e, 3);
    EXPECT_EQ(e.mInitialize(4, 1), 4);
    const Subsets expected = {{0}, {1}, {2}, {3}};
    EXPECT_EQ(mDrain(e, 4), expected);
}

TEST(SubsetsOfNChooseK, KAboveNIsReportedAndTheCountThrowsLeavingTheWalk)
{
    CmSubsetsOfNChooseK e;
    e.mInitialize(3, 2);
    std::vector<int> v;
    e.mNextSubset(v);

    CmAssertCapture capture;
    try
    {
        e.mInitialize(3, 5);
        ADD_FAILURE() << "no exception";
    }
    catch (const CmInvalidArgument& ex)
    {
        EXPECT_EQ(ex.mGetMessage().mGetString(), "Gamma of a nonpositive argument.");
    }
    EXPECT_EQ(capture.mGetTexts(),
              (std::vector<std::string>{"iK >= 0 && iK <= iN", "iK <= iN"}));
    // The enumerator keeps its earlier walk.
    e.mNextSubset(v);
    EXPECT_EQ(v, (std::vector<int>{0, 2}));
}

TEST(SubsetsOfNChooseK, ZeroOfZeroIsTheOneEmptySubset)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseK e;
    EXPECT_EQ(e.mInitialize(0, 0), 1);
    std::vector<int> v = {7};
    e.mNextSubset(v);
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(capture.mGetCount(), 0);
}

// ---------------------------------------------------------------------------
// With replacement

TEST(SubsetsOfNChooseKWithReplacement, TwoOfThreeConstantSubsetsFirst)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseKWithReplacement e;
    ASSERT_EQ(e.mInitialize(3, 2), 6);
    const Subsets expected = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}};
    EXPECT_EQ(mDrain(e, 6), expected);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(SubsetsOfNChooseKWithReplacement, EveryMultisetUpToEightInOrderWithoutRepeats)
{
    CmAssertCapture capture;
    for (int n = 1; n <= 8; ++n)
    {
        for (int k = 1; k <= 8; ++k)
        {
            const Subsets expected = mMultisetsConstantsFirst(n, k);
            // C(n + k - 1, k) multisets.
            EXPECT_EQ(static_cast<int>(expected.size()), mNChooseK(n + k - 1, k));
            CmSubsetsOfNChooseKWithReplacement e;
            ASSERT_EQ(e.mInitialize(n, k), static_cast<int>(expected.size()))
                << "n=" << n << " k=" << k;
            const Subsets got = mDrain(e, static_cast<int>(expected.size()));
            EXPECT_EQ(got, expected) << "n=" << n << " k=" << k;
            EXPECT_EQ(std::set<std::vector<int>>(got.begin(), got.end()).size(), got.size());
            for (int v = 0; v < n; ++v)
                EXPECT_EQ(got[static_cast<std::size_t>(v)],
                          std::vector<int>(static_cast<std::size_t>(k), v));
        }
    }
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(SubsetsOfNChooseKWithReplacement, CallBeyondTheLastIsReportedAndChangesNothing)
{
    CmSubsetsOfNChooseKWithReplacement e;
    e.mInitialize(2, 3);
    const Subsets expected = {{0, 0, 0}, {1, 1, 1}, {0, 0, 1}, {0, 1, 1}};
    EXPECT_EQ(mDrain(e, 4), expected);
    CmAssertCapture capture;
    std::vector<int> v = {4};
    e.mNextSubset(v);
    EXPECT_EQ(v, std::vector<int>{4});
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
}

TEST(SubsetsOfNChooseKWithReplacement, OneElementHasOneSubset)
{
    CmSubsetsOfNChooseKWithReplacement e;
    EXPECT_EQ(e.mInitialize(1, 4), 1);
    const Subsets expected = {{0, 0, 0, 0}};
    EXPECT_EQ(mDrain(e, 1), expected);
}

TEST(SubsetsOfNChooseKWithReplacement, AssignmentIsRefusedCopyIsNot)
{
    CmSubsetsOfNChooseKWithReplacement source;
    source.mInitialize(4, 2);
    mDrain(source, 5);
    CmSubsetsOfNChooseKWithReplacement copy(source);
    EXPECT_EQ(mDrain(copy, 5), mDrain(source, 5));

    CmSubsetsOfNChooseKWithReplacement target;
    target.mInitialize(2, 2);
    CmAssertCapture capture;
    target = copy;
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
    const Subsets expected = {{0, 0}, {1, 1}, {0, 1}};
    EXPECT_EQ(mDrain(target, 3), expected);
    EXPECT_EQ(capture.mGetCount(), 1);
}

TEST(SubsetsOfNChooseKWithReplacement, ZeroSizeIsReportedAndGivesTheEmptySubset)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseKWithReplacement e;
    EXPECT_EQ(e.mInitialize(3, 0), 1);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"iN > 0 && iK > 0"});
    std::vector<int> v = {1};
    e.mNextSubset(v);
    EXPECT_TRUE(v.empty());
}

TEST(SubsetsOfNChooseKWithReplacement, NoElementsIsReportedThenTheLogGammaRefusesIt)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseKWithReplacement e;
    EXPECT_THROW(e.mInitialize(0, 2), CmInvalidArgument);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"iN > 0 && iK > 0"});
    // Still the default, empty enumerator.
    std::vector<int> v;
    e.mNextSubset(v);
    EXPECT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[1], "false");
}

// ---------------------------------------------------------------------------
// By-reference entries

TEST(NChooseKSubsetsByRef, ThreeChooseTwoStoresOneTwoFirstCountingFromOne)
{
    CmAssertCapture capture;
    int iN = 3;
    int iK = 2;
    EXPECT_EQ(INIT_N_CHOOSE_K_SUBSETS(&iN, &iK), 3);
    int iSize = 2;
    int aiSubset[2] = {0, 0};
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(aiSubset[0], 1);
    EXPECT_EQ(aiSubset[1], 2);
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(aiSubset[0], 1);
    EXPECT_EQ(aiSubset[1], 3);
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(aiSubset[0], 2);
    EXPECT_EQ(aiSubset[1], 3);
    EXPECT_EQ(capture.mGetCount(), 0);
    EXPECT_EQ(iSize, 2);

    // Past the end: the enumerator reports, hands out nothing, and the size no
    // longer matches.
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(capture.mGetTexts(),
              (std::vector<std::string>{"false", "*pfiSize == viSubscripts.size()"}));
    EXPECT_EQ(aiSubset[0], 2);
    EXPECT_EQ(aiSubset[1], 3);
}

TEST(NChooseKSubsetsByRef, EveryFourSubsetOfSevenThroughTheEntries)
{
    int iN = 7;
    int iK = 4;
    ASSERT_EQ(INIT_N_CHOOSE_K_SUBSETS(&iN, &iK), 35);
    const Subsets expected = mSubsetsByMasks(7, 4);
    for (const auto& s : expected)
    {
        int aiSubset[4] = {0, 0, 0, 0};
        int iSize = 4;
        NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
        for (std::size_t u = 0; u < 4; ++u)
            EXPECT_EQ(aiSubset[u], s[u] + 1);
    }
}

TEST(NChooseKSubsetsByRef, SizeMismatchIsReportedAndNoMoreIsStoredThanFits)
{
    int iN = 4;
    int iK = 2;
    INIT_N_CHOOSE_K_SUBSETS(&iN, &iK);
    CmAssertCapture capture;
    int aiSubset[3] = {-1, -1, -1};
    int iSize = 3;
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"*pfiSize == viSubscripts.size()"});
    EXPECT_EQ(aiSubset[0], 1);
    EXPECT_EQ(aiSubset[1], 2);
    EXPECT_EQ(aiSubset[2], -1);

    capture.mClear();
    iSize = 1;
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"*pfiSize == viSubscripts.size()"});
    EXPECT_EQ(aiSubset[0], 1);
    EXPECT_EQ(aiSubset[1], 2);

    capture.mClear();
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, nullptr);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
}

TEST(NChooseKSubsetsByRef, ReinitialisingRestartsTheOneEnumeration)
{
    int iN = 5;
    int iK = 3;
    INIT_N_CHOOSE_K_SUBSETS(&iN, &iK);
    int aiSubset[3] = {0, 0, 0};
    int iSize = 3;
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(aiSubset[2], 4);
    EXPECT_EQ(INIT_N_CHOOSE_K_SUBSETS(&iN, &iK), 10);
    NEXT_N_CHOOSE_K_SUBSET(aiSubset, &iSize);
    EXPECT_EQ(aiSubset[0], 1);
    EXPECT_EQ(aiSubset[1], 2);
    EXPECT_EQ(aiSubset[2], 3);
}

// ---------------------------------------------------------------------------
// Counts too large for the enumerators

TEST(SubsetsOfNChooseK, CountThatOverflowsIsZeroAndNothingIsHandedOut)
{
    // mNChooseK turns the overflow of C(2000, 1000) into 0.
    CmAssertCapture capture;
    CmSubsetsOfNChooseK e;
    EXPECT_EQ(e.mInitialize(2000, 1000), 0);
    std::vector<int> v;
    e.mNextSubset(v);
    EXPECT_TRUE(v.empty());
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
}

TEST(SubsetsOfNChooseKWithReplacement, CountBeyondIntWrapsAndOverflowPassesToTheCaller)
{
    CmAssertCapture capture;
    CmSubsetsOfNChooseKWithReplacement e;
    // C(59, 20), about 3.2e15, is converted without a range check.
    EXPECT_EQ(e.mInitialize(40, 20), std::numeric_limits<int>::min());
    std::vector<int> v;
    e.mNextSubset(v);
    EXPECT_EQ(capture.mGetTexts(), std::vector<std::string>{"false"});
    // C(1999, 1000) overflows the exponential; there is no handler.
    EXPECT_THROW(e.mInitialize(1000, 1000), CmFloatOverflow);
}
