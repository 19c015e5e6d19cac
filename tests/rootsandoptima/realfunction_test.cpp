// CmRealFunction: defaults, copying, the two convergence tests, and the
// stream form of the base layer.
#include "qel/realfunction.h"

#include "qel/qelbt.h"
#include "qel/qelstreams.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <vector>

namespace
{
// A linear function with every member reachable, for the tests.
class CmSettableFunction : public CmRealFunction
{
public:
    double operator()(double dX) override { return dX - m_dTarget; }

    void mSetIntegerX(bool b) { m_bIntegerX = b; }
    void mSetTarget(double d) { m_dTarget = d; }
    void mSetTolerances(double dAbsX, double dRelX, double dAbsF, double dRelF)
    {
        m_dAbsoluteToleranceForX = dAbsX;
        m_dRelativeToleranceForX = dRelX;
        m_dAbsoluteToleranceForF = dAbsF;
        m_dRelativeToleranceForF = dRelF;
    }
    double mGetTarget() const { return m_dTarget; }
};

// Getters overridden with loose values, to tell which test reads what.
class CmLooseGetters : public CmSettableFunction
{
public:
    double mGetAbsoluteToleranceForX() const override { return 100.0; }
    double mGetRelativeToleranceForX() const override { return 0.5; }
    double mGetAbsoluteToleranceForF() const override { return 1.0; }
    double mGetRelativeToleranceForF() const override { return 1.0; }
};
} // namespace

TEST(RealFunction, DefaultsAreRealArgumentZeroTargetAndConstantTolerances)
{
    CmSettableFunction f;
    EXPECT_FALSE(f.mGetIntegerX());
    EXPECT_EQ(f.mGetTarget(), 0.0);
    EXPECT_EQ(f.mGetAbsoluteToleranceForX(), CmQELConst::mInstance()->mGetNearlyZero());
    EXPECT_EQ(f.mGetRelativeToleranceForX(), CmQELConst::mInstance()->mGetEps());
    EXPECT_EQ(f.mGetAbsoluteToleranceForF(), CmQELConst::mInstance()->mGetNearlyZero());
    EXPECT_EQ(f.mGetRelativeToleranceForF(), CmQELConst::mInstance()->mGetEps());
    EXPECT_EQ(f.mGetRelativeToleranceForX(), DBL_EPSILON);
    EXPECT_EQ(f.mGetAbsoluteToleranceForX(), 1.0e-30);
}

TEST(RealFunction, CopyConstructorAndAssignmentCopyAllSixMembers)
{
    CmSettableFunction a;
    a.mSetIntegerX(true);
    a.mSetTarget(0.25);
    a.mSetTolerances(1.0, 2.0, 3.0, 4.0);

    CmSettableFunction b(a);
    EXPECT_TRUE(b.mGetIntegerX());
    EXPECT_EQ(b.mGetTarget(), 0.25);
    EXPECT_EQ(b.mGetAbsoluteToleranceForX(), 1.0);
    EXPECT_EQ(b.mGetRelativeToleranceForX(), 2.0);
    EXPECT_EQ(b.mGetAbsoluteToleranceForF(), 3.0);
    EXPECT_EQ(b.mGetRelativeToleranceForF(), 4.0);

    // Through the virtual assignment of the base.
    CmSettableFunction c;
    CmRealFunction& rc = c;
    rc = static_cast<const CmRealFunction&>(a);
    EXPECT_TRUE(c.mGetIntegerX());
    EXPECT_EQ(c.mGetTarget(), 0.25);
    EXPECT_EQ(c.mGetAbsoluteToleranceForX(), 1.0);
    EXPECT_EQ(c.mGetRelativeToleranceForX(), 2.0);
    EXPECT_EQ(c.mGetAbsoluteToleranceForF(), 3.0);
    EXPECT_EQ(c.mGetRelativeToleranceForF(), 4.0);
    EXPECT_EQ(c(1.0), 0.75);

    CmRealFunction& ra = a;
    ra = ra;
    EXPECT_TRUE(a.mGetIntegerX());
    EXPECT_EQ(a.mGetTarget(), 0.25);
    EXPECT_EQ(a.mGetRelativeToleranceForF(), 4.0);
}

TEST(RealFunction, RealArgumentConvergesByAbsoluteThenRelativeWidth)
{
    CmSettableFunction f;
    EXPECT_TRUE(f.mIsConvergedForX(0.0, 1e-31));
    EXPECT_FALSE(f.mIsConvergedForX(0.0, 1e-29));
    // One unit in the last place of 1 is below eps * 1; two are not.
    EXPECT_TRUE(f.mIsConvergedForX(1.0, 1.0 + DBL_EPSILON));
    EXPECT_FALSE(f.mIsConvergedForX(1.0, 1.0 + 2.0 * DBL_EPSILON));
    // The larger magnitude scales the relative test, in either order.
    EXPECT_TRUE(f.mIsConvergedForX(-1e6, -1e6 - 1e-10));
    EXPECT_TRUE(f.mIsConvergedForX(-1e6 - 1e-10, -1e6));
    EXPECT_FALSE(f.mIsConvergedForX(1e6, 1e6 + 1e-9));
    EXPECT_FALSE(f.mIsConvergedForX(2.0, 3.0));
}

TEST(RealFunction, WholeNumberArgumentConvergesBelowTwoApartAndIgnoresAbsoluteTolerance)
{
    CmSettableFunction f;
    f.mSetIntegerX(true);
    EXPECT_TRUE(f.mIsConvergedForX(3.0, 4.9));
    EXPECT_TRUE(f.mIsConvergedForX(4.9, 3.0));
    EXPECT_FALSE(f.mIsConvergedForX(3.0, 5.0));
    // An absolute tolerance of 100 is not consulted in whole-number mode ...
    f.mSetTolerances(100.0, DBL_EPSILON, 1e-30, DBL_EPSILON);
    EXPECT_FALSE(f.mIsConvergedForX(3.0, 5.0));
    // ... but is in real mode.
    f.mSetIntegerX(false);
    EXPECT_TRUE(f.mIsConvergedForX(3.0, 5.0));
    // The relative test applies in both modes.
    f.mSetIntegerX(true);
    EXPECT_TRUE(f.mIsConvergedForX(1e17, 1e17 + 16.0));
    EXPECT_FALSE(f.mIsConvergedForX(1e15, 1e15 + 16.0));
}

TEST(RealFunction, WidthTestReadsTheVirtualGetters)
{
    CmLooseGetters f;
    EXPECT_TRUE(f.mIsConvergedForX(0.0, 99.0));      // absolute 100
    EXPECT_TRUE(f.mIsConvergedForX(1000.0, 1400.0)); // relative 0.5 of 1400
    EXPECT_FALSE(f.mIsConvergedForX(1000.0, 2500.0));
}

TEST(RealFunction, ValueTestReadsTheMembersAndScalesByTheTarget)
{
    CmLooseGetters f; // getters say 1.0, the members keep their defaults
    EXPECT_FALSE(f.mIsConvergedForF(0.5));
    EXPECT_TRUE(f.mIsConvergedForF(1e-30));
    EXPECT_TRUE(f.mIsConvergedForF(-1e-30));
    EXPECT_FALSE(f.mIsConvergedForF(2e-30));

    CmSettableFunction g;
    g.mSetTolerances(1e-30, DBL_EPSILON, 0.25, 1e-3);
    EXPECT_TRUE(g.mIsConvergedForF(0.25));
    EXPECT_TRUE(g.mIsConvergedForF(-0.25));
    EXPECT_FALSE(g.mIsConvergedForF(0.2500001));
    // Relative to the target, not to the value: 0.09 is within a relative 1e-3 of a
    // target of 100, and nothing is relative to a target of 0.
    g.mSetTolerances(1e-30, DBL_EPSILON, 1e-30, 1e-3);
    EXPECT_FALSE(g.mIsConvergedForF(0.1));
    g.mSetTarget(-100.0);
    EXPECT_TRUE(g.mIsConvergedForF(0.09));
    EXPECT_TRUE(g.mIsConvergedForF(-0.09));
    EXPECT_FALSE(g.mIsConvergedForF(0.11));
}

TEST(RealFunction, ValueTestRejectsNaN)
{
    CmSettableFunction f;
    EXPECT_FALSE(f.mIsConvergedForF(std::nan("")));
    EXPECT_FALSE(f.mIsConvergedForX(std::nan(""), 1.0));
}

// ---------------------------------------------------------------------------
// Persistence

namespace
{
// A stored function: a line through the origin with its slope, the slope in
// a section of its own after the base layer.
class CmStoredLine : public CmRealFunction
{
public:
    static CmPersistent* mCreate() { return new CmStoredLine(); }
    static CmRuntimeClass s_rcClass;

    CmRuntimeClass* mGetRuntimeClass() const override { return &s_rcClass; }
    double operator()(double dX) override { return m_dSlope * dX - m_dTarget; }

    void mSetAll(bool bIntegerX, double dTarget, double dAbsX, double dRelX, double dAbsF,
                 double dRelF, double dSlope)
    {
        m_bIntegerX = bIntegerX;
        m_dTarget = dTarget;
        m_dAbsoluteToleranceForX = dAbsX;
        m_dRelativeToleranceForX = dRelX;
        m_dAbsoluteToleranceForF = dAbsF;
        m_dRelativeToleranceForF = dRelF;
        m_dSlope = dSlope;
    }
    double mGetTarget() const { return m_dTarget; }
    double mGetSlope() const { return m_dSlope; }

    // The base layer alone, as a derived class's own mWrite and mRead call it.
    void mWriteBaseLayer(CmIStream& rStream) { CmRealFunction::mWrite(rStream); }
    void mReadBaseLayer(CmIStream& rStream) { CmRealFunction::mRead(rStream); }

protected:
    void mWrite(CmIStream& rStream) override
    {
        mWriteBegin(rStream);
        CmRealFunction::mWrite(rStream);
        rStream.mWrite(&m_dSlope, 8, nullptr, 0);
        mWriteEnd(rStream);
    }
    void mRead(CmIStream& rStream) override
    {
        mReadBegin(rStream);
        CmRealFunction::mRead(rStream);
        rStream.mRead(&m_dSlope, 8, nullptr, 0);
        mReadEnd(rStream);
    }

private:
    double m_dSlope = 1.0;
};

CmRuntimeClass CmStoredLine::s_rcClass("CmStoredLine", &CmStoredLine::mCreate, 1);

std::vector<unsigned char> Bytes(const void* p, std::size_t n)
{
    const unsigned char* pc = static_cast<const unsigned char*>(p);
    return std::vector<unsigned char>(pc, pc + n);
}

void ExpectSameMembers(const CmStoredLine& a, const CmStoredLine& b)
{
    EXPECT_EQ(a.mGetIntegerX(), b.mGetIntegerX());
    EXPECT_EQ(a.mGetTarget(), b.mGetTarget());
    EXPECT_EQ(a.mGetAbsoluteToleranceForX(), b.mGetAbsoluteToleranceForX());
    EXPECT_EQ(a.mGetRelativeToleranceForX(), b.mGetRelativeToleranceForX());
    EXPECT_EQ(a.mGetAbsoluteToleranceForF(), b.mGetAbsoluteToleranceForF());
    EXPECT_EQ(a.mGetRelativeToleranceForF(), b.mGetRelativeToleranceForF());
    EXPECT_EQ(a.mGetSlope(), b.mGetSlope());
}
} // namespace

TEST(RealFunctionStream, AbstractClassIsRegisteredByNameWithSchemaOne)
{
    const CmRuntimeClass* pClass = CmRuntimeClass::mFromName("CmRealFunction");
    ASSERT_NE(pClass, nullptr);
    EXPECT_EQ(pClass->mGetSchema(), 1u);
    EXPECT_STREQ(pClass->mGetClassName(), "CmRealFunction");
    EXPECT_EQ(pClass->mCreateObject(), nullptr);
}

TEST(RealFunctionStream, BaseLayerIsVersionOneFlagAndFiveDoublesInMemberOrder)
{
    CmStoredLine f;
    f.mSetAll(true, 0.5, 1e-9, 2e-9, 3e-9, 4e-9, 7.0);
    CmIStream stream;
    f.mWriteBaseLayer(stream);
    const std::vector<unsigned char> vBytes = stream.mGetBytes();
    // Layer header (version 1, then the length of the body, 41), the flag as
    // one byte, the five doubles.
    ASSERT_EQ(vBytes.size(), 8u + 1u + 40u);
    const std::int32_t aiHeader[2] = {1, 41};
    EXPECT_EQ(std::vector<unsigned char>(vBytes.begin(), vBytes.begin() + 8), Bytes(aiHeader, 8));
    EXPECT_EQ(vBytes[8], 1);
    const double adFields[5] = {0.5, 1e-9, 2e-9, 3e-9, 4e-9};
    EXPECT_EQ(std::vector<unsigned char>(vBytes.begin() + 9, vBytes.end()), Bytes(adFields, 40));

    CmStoredLine g;
    CmIStream in(vBytes);
    g.mReadBaseLayer(in);
    EXPECT_TRUE(g.mGetIntegerX());
    EXPECT_EQ(g.mGetTarget(), 0.5);
    EXPECT_EQ(g.mGetAbsoluteToleranceForX(), 1e-9);
    EXPECT_EQ(g.mGetRelativeToleranceForX(), 2e-9);
    EXPECT_EQ(g.mGetAbsoluteToleranceForF(), 3e-9);
    EXPECT_EQ(g.mGetRelativeToleranceForF(), 4e-9);
    EXPECT_EQ(g.mGetSlope(), 1.0); // not part of the base layer
    EXPECT_EQ(in.mGetRemaining(), 0u);
}

TEST(RealFunctionStream, DerivedClassRoundTripsAsASharedObject)
{
    CmStoredLine f;
    f.mSetAll(true, -2.25, 0.125, 1e-12, 1e-20, 3e-14, 4.5);
    CmIStream stream;
    stream.mWriteObjectShared(&f);
    stream.mWriteObjectShared(&f);
    stream.mRewind();
    CmPersistent* pFirst = stream.mReadObjectShared();
    CmPersistent* pSecond = stream.mReadObjectShared();
    ASSERT_NE(pFirst, nullptr);
    EXPECT_EQ(pFirst, pSecond);
    CmStoredLine* pLine = dynamic_cast<CmStoredLine*>(pFirst);
    ASSERT_NE(pLine, nullptr);
    ExpectSameMembers(*pLine, f);
    EXPECT_EQ((*pLine)(1.0), 4.5 + 2.25);
    delete pFirst;
}

TEST(RealFunctionStream, DefaultsRoundTripExactly)
{
    CmStoredLine f;
    CmIStream stream;
    stream.mWriteObjectShared(&f);
    stream.mRewind();
    CmPersistent* p = stream.mReadObjectShared();
    CmStoredLine* pLine = dynamic_cast<CmStoredLine*>(p);
    ASSERT_NE(pLine, nullptr);
    ExpectSameMembers(*pLine, f);
    EXPECT_FALSE(pLine->mGetIntegerX());
    EXPECT_EQ(pLine->mGetRelativeToleranceForX(), DBL_EPSILON);
    delete p;
}

TEST(RealFunctionStream, LaterVersionOfTheLayerIsSkippedPastItsKnownFields)
{
    // A layer of version 2 with 12 bytes beyond the known fields, then a
    // marker that must be read next.
    CmIStream stream;
    stream.mWriteBaseVersion(2);
    const bool bFlag = false;
    stream.mWriteValue(bFlag);
    const double adFields[5] = {3.0, 1e-5, 1e-6, 1e-7, 1e-8};
    for (double d : adFields)
        stream.mWrite(&d, 8, nullptr, 0);
    const std::int32_t aiExtra[3] = {11, 22, 33};
    stream.mWrite(aiExtra, 12, nullptr, 0);
    stream.mWriteSkipBytes(0);
    const double dMarker = 123.5;
    stream.mWrite(&dMarker, 8, nullptr, 0);

    stream.mRewind();
    CmStoredLine g;
    g.mReadBaseLayer(stream);
    EXPECT_FALSE(g.mGetIntegerX());
    EXPECT_EQ(g.mGetTarget(), 3.0);
    EXPECT_EQ(g.mGetRelativeToleranceForF(), 1e-8);
    double dRead = 0.0;
    stream.mRead(&dRead, 8, nullptr, 0);
    EXPECT_EQ(dRead, dMarker);
}

TEST(RealFunctionStream, TruncatedStreamThrowsTheReadException)
{
    CmStoredLine f;
    CmIStream stream;
    f.mWriteBaseLayer(stream);
    std::vector<unsigned char> vBytes = stream.mGetBytes();
    vBytes.resize(vBytes.size() - 3);
    CmIStream in(vBytes);
    CmStoredLine g;
    try
    {
        g.mReadBaseLayer(in);
        ADD_FAILURE() << "no exception";
    }
    catch (const CmIStreamReadException& e)
    {
        EXPECT_EQ(e.mGetCode(), eStreamEndOfData);
    }
}
