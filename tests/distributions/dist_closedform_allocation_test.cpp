// The distribution objects whose helper normal cannot be allocated: the
// lognormal draws the missing value, the multivariate normal cannot
// generate.  The failure is asked of the test program's nothrow operator new
// (support/failingnew.h): while the switch is set on the calling thread the
// nothrow form returns null.
#include "qel/distclosedform.h"
#include "qel/distmvnormal.h"
#include "qel/qelbt.h"
#include "qel/qelmessaging.h"
#include "qel/uniformgenerator.h"

#include "support/failingnew.h"
#include "support/uniformstream.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <vector>

namespace
{
// Sets the switch for the life of the object.
class CmFailNothrowNew
{
public:
    CmFailNothrowNew() { qeltest::g_bFailEveryNothrowNew = true; }
    ~CmFailNothrowNew() { qeltest::g_bFailEveryNothrowNew = false; }
    CmFailNothrowNew(const CmFailNothrowNew&) = delete;
    CmFailNothrowNew& operator=(const CmFailNothrowNew&) = delete;
};

int mUsedSince(double dBase)
{
    return qeltest::mCountDraws(dBase, CmUniformGenerator::mInstance()->mGetBase());
}
} // namespace


TEST(DistLogNormal, WithoutItsHelperDrawsTheMissingValueAndNoUniform)
{
    const CmDistLogNormal* pDist = nullptr;
    {
        CmFailNothrowNew fail;
        pDist = new CmDistLogNormal(0.0, 1.0, 0.0);
    }
    CmAssertCapture capture;
    CmUniformGenerator::mInstance()->mSetBase(12345.0);
    EXPECT_EQ(pDist->mGetRandom(), mGetMissingValueCode());
    EXPECT_EQ(mUsedSince(12345.0), 0);
    // The rest of the object works without the helper: log 1 = 0 is the
    // median of the standard normal.
    EXPECT_TRUE(pDist->mAreParamsValid());
    EXPECT_EQ(pDist->mCdf(1.0, false), 0.5);
    const CmDistLogNormal copy(*pDist);
    delete pDist;
    EXPECT_EQ(copy.mGetRandom(), mGetMissingValueCode());
    EXPECT_EQ(capture.mGetCount(), 0);
}

TEST(DistMVNormal, WithoutItsHelperCannotGenerate)
{
    Smatrix<double> sm(2);
    sm(0, 0) = 1.0;
    sm(1, 0) = 0.5;
    sm(1, 1) = 1.0;
    CmAssertCapture capture;
    CmDistMVNormal* pDist = nullptr;
    {
        CmFailNothrowNew fail;
        pDist = new CmDistMVNormal({0.0, 0.0}, sm, true);
    }
    EXPECT_FALSE(pDist->mCanGenerate());
    CmUniformGenerator::mInstance()->mSetBase(12345.0);
    std::vector<double> vd{3.0, 4.0};
    pDist->mGetRandom(vd);
    EXPECT_EQ(vd, (std::vector<double>{3.0, 4.0}));
    EXPECT_EQ(mUsedSince(12345.0), 0);
    delete pDist;
    EXPECT_EQ(capture.mGetCount(), 0);
    // With the allocation back the same input generates.
    CmDistMVNormal dist({0.0, 0.0}, sm, true);
    EXPECT_TRUE(dist.mCanGenerate());
}
