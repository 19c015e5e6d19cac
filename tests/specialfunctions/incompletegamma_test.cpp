// The public incomplete gamma ratio and the derivatives of the incomplete
// gamma integral: edge cases, assertions, and accuracy against the mpmath
// tables incompletegamma.txt and gammaderivatives.txt.
#include "qel/qelmath.h"
#include "support/reftable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace
{

std::string mRowText(double dA, double dX)
{
    std::ostringstream os;
    os.precision(17);
    os << "a=" << dA << " x=" << dX;
    return os.str();
}

} // namespace

TEST(IncompleteGammaRatio, AtZeroTheLowerTailIsZeroAndTheUpperOne)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteGammaRatio(0.0, 1.0, false), 0.0);
    EXPECT_EQ(mIncompleteGammaRatio(0.0, 1.0, true), 1.0);
    EXPECT_EQ(mIncompleteGammaRatio(0.0, 1e-3, false), 0.0);
    EXPECT_EQ(mIncompleteGammaRatio(0.0, 1e5, true), 1.0);
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteGammaRatio, ShapeOneAtOneIsOneMinusExpMinusOneByTheFiniteSums)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteGammaRatio(1.0, 1.0, false), 1.0 - std::exp(-1.0));
    EXPECT_EQ(mIncompleteGammaRatio(1.0, 1.0, true), std::exp(-1.0));
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(IncompleteGammaRatio, NegativePointIsAssertedAndGivesTheFailureMarker)
{
    CmAssertCapture capture;
    EXPECT_EQ(mIncompleteGammaRatio(-1.0, 2.0, false), 2.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dX >= 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dInteg != 2.0");
}

TEST(IncompleteGammaRatio, ZeroShapeIsAssertedAndTheRoutineTakesItsLimit)
{
    CmAssertCapture capture;
    // a = 0 with x > 0: the routine's limit P = 1, Q = 0.
    EXPECT_EQ(mIncompleteGammaRatio(1.0, 0.0, false), 1.0);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dP > 0.0");
    capture.mClear();
    EXPECT_EQ(mIncompleteGammaRatio(0.0, 0.0, true), 2.0);
    ASSERT_EQ(capture.mGetCount(), 2);
    EXPECT_EQ(capture.mGetTexts()[0], "dP > 0.0");
    EXPECT_EQ(capture.mGetTexts()[1], "dInteg != 2.0");
}

TEST(IncompleteGammaRatio, BothTailsMatchTheReferenceTableToTwelveDigits)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("incompletegamma.txt");
    ASSERT_GT(table.rows.size(), 1500u);
    qeltest::WorstError worstP("mIncompleteGammaRatio lower tail");
    qeltest::WorstError worstQ("mIncompleteGammaRatio upper tail");
    int iChecked = 0;
    for (const std::vector<double>& row : table.rows)
    {
        const double dA = row[0];
        const double dX = row[1];
        const double dP = mIncompleteGammaRatio(dX, dA, false);
        const double dQ = mIncompleteGammaRatio(dX, dA, true);
        const std::string sRow = mRowText(dA, dX);
        // Below 1e-280 the value is out of the tested range; it must still
        // be tiny (the routine's cut-off gives exactly 0 there).
        if (row[2] > 1e-280)
        {
            const double dErr = qeltest::mRelativeError(dP, row[2]);
            worstP.mUpdate(dErr, qeltest::mUlpDistance(dP, row[2]), sRow);
            EXPECT_LE(dErr, 1e-12) << sRow << " P=" << dP << " ref=" << row[2];
            ++iChecked;
        }
        else
        {
            EXPECT_LE(dP, 1e-270) << sRow;
        }
        if (row[3] > 1e-280)
        {
            const double dErr = qeltest::mRelativeError(dQ, row[3]);
            worstQ.mUpdate(dErr, qeltest::mUlpDistance(dQ, row[3]), sRow);
            EXPECT_LE(dErr, 1e-12) << sRow << " Q=" << dQ << " ref=" << row[3];
            ++iChecked;
        }
        else
        {
            EXPECT_LE(dQ, 1e-270) << sRow;
        }
    }
    EXPECT_GT(iChecked, 3000);
    std::cout << worstP.mReport() << "\n" << worstQ.mReport() << "\n";
    RecordProperty("worst_lower", worstP.mReport());
    RecordProperty("worst_upper", worstQ.mReport());
}

TEST(IncompleteGammaDerivatives, AtShapeOneTheClosedFormsHold)
{
    // p = 1: I = 1 - e^-x, dI/dx = e^-x, d2I/dx2 = -e^-x.
    CmAssertCapture capture;
    std::vector<double> vdD;
    mIncompleteGammaDerivatives(2.0, 1.0, vdD);
    EXPECT_EQ(capture.mGetCount(), 0);
    ASSERT_EQ(vdD.size(), 6u);
    EXPECT_NEAR(vdD[0], std::exp(-2.0), 1e-15);
    EXPECT_NEAR(vdD[1], -std::exp(-2.0), 1e-15);
    EXPECT_NEAR(vdD[5], 1.0 - std::exp(-2.0), 1e-6);
}

TEST(IncompleteGammaDerivatives, NegativePointIsAsserted)
{
    CmAssertCapture capture;
    std::vector<double> vdD;
    mIncompleteGammaDerivatives(-1.0, 2.0, vdD);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dX >= 0.0");
    EXPECT_EQ(vdD.size(), 6u);
}

TEST(IncompleteGammaDerivatives, NonPositiveShapeIsAssertedAndLogGammaThrows)
{
    CmAssertCapture capture;
    std::vector<double> vdD;
    EXPECT_THROW(mIncompleteGammaDerivatives(1.0, 0.0, vdD), CmInvalidArgument);
    ASSERT_EQ(capture.mGetCount(), 1);
    EXPECT_EQ(capture.mGetTexts()[0], "dP > 0.0");
}

TEST(IncompleteGammaDerivatives, AtZeroTheIntegralAndItsShapeDerivativesVanish)
{
    std::vector<double> vdD;
    mIncompleteGammaDerivatives(0.0, 2.5, vdD);
    ASSERT_EQ(vdD.size(), 6u);
    EXPECT_EQ(vdD[0], 0.0);
    EXPECT_EQ(vdD[2], 0.0);
    EXPECT_EQ(vdD[3], 0.0);
    EXPECT_EQ(vdD[5], 0.0);
    mIncompleteGammaDerivatives(0.0, 1.0, vdD);
    EXPECT_EQ(vdD[0], 1.0);
    EXPECT_EQ(vdD[1], -1.0);
}

namespace
{

// AS 187 judges convergence of the continued fraction on its value only.  At
// a whole shape p the fraction terminates after p - 1 steps: its value is then
// exact, the test is met, and the derivatives in p keep the error of the
// convergent reached so far.  Rows in that case are bounded separately below.
bool mIsTerminatingFraction(double dX, double dP)
{
    return dX > 1.0 && dX >= dP && dP == std::floor(dP);
}

// The error of d2I/dp2, which changes sign near x = p, is measured against
// the larger of its own size and that of dI/dp.
double mShapeScale(const std::vector<double>& rRow, int k)
{
    if (k == 3)
        return std::max(std::fabs(rRow[2 + 3]), std::fabs(rRow[2 + 2]));
    return std::fabs(rRow[2 + k]);
}

} // namespace

TEST(IncompleteGammaDerivatives, AllSixValuesMatchTheReferenceTableToFiveDigits)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("gammaderivatives.txt");
    ASSERT_EQ(table.rows.size(), 56u);
    const char* apszNames[6] = {"dI/dx", "d2I/dx2", "dI/dp", "d2I/dp2", "d2I/dxdp", "I"};
    std::vector<qeltest::WorstError> vWorst;
    for (const char* pszName : apszNames)
        vWorst.emplace_back(std::string("mIncompleteGammaDerivatives ") + pszName);
    std::vector<double> vdD;
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        if (mIsTerminatingFraction(row[0], row[1]))
            continue;
        ++iRows;
        const std::string sRow = mRowText(row[1], row[0]);
        mIncompleteGammaDerivatives(row[0], row[1], vdD);
        ASSERT_EQ(vdD.size(), 6u);
        for (int k = 0; k < 6; ++k)
        {
            const double dErr = std::fabs(vdD[k] - row[2 + k]) / mShapeScale(row, k);
            vWorst[k].mUpdate(dErr, qeltest::mUlpDistance(vdD[k], row[2 + k]), sRow);
            EXPECT_LE(dErr, 1e-5) << sRow << " " << apszNames[k] << " got " << vdD[k]
                                  << " ref " << row[2 + k];
        }
    }
    EXPECT_EQ(iRows, 37);
    for (const qeltest::WorstError& w : vWorst)
    {
        std::cout << w.mReport() << "\n";
        RecordProperty("worst", w.mReport());
    }
}

TEST(IncompleteGammaDerivatives, AtWholeShapesInTheFractionTheShapeDerivativesKeepTheLimitOfAs187)
{
    const qeltest::RefTable table = qeltest::mLoadRefTable("gammaderivatives.txt");
    qeltest::WorstError worstOther("mIncompleteGammaDerivatives x-derivatives and I, whole p");
    qeltest::WorstError worstShape("mIncompleteGammaDerivatives p-derivatives, whole p");
    std::vector<double> vdD;
    int iRows = 0;
    for (const std::vector<double>& row : table.rows)
    {
        if (!mIsTerminatingFraction(row[0], row[1]))
            continue;
        ++iRows;
        const std::string sRow = mRowText(row[1], row[0]);
        mIncompleteGammaDerivatives(row[0], row[1], vdD);
        for (int k = 0; k < 6; ++k)
        {
            const double dErr = std::fabs(vdD[k] - row[2 + k]) / mShapeScale(row, k);
            const bool bShape = (k == 2 || k == 3);
            (bShape ? worstShape : worstOther)
                .mUpdate(dErr, qeltest::mUlpDistance(vdD[k], row[2 + k]), sRow);
            EXPECT_LE(dErr, bShape ? 2e-2 : 1e-5) << sRow << " " << k;
        }
    }
    EXPECT_EQ(iRows, 19);
    std::cout << worstOther.mReport() << "\n" << worstShape.mReport() << "\n";
    RecordProperty("worst_other", worstOther.mReport());
    RecordProperty("worst_shape", worstShape.mReport());
}
