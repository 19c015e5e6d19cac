// CmDist::mCreateDist: the class each type makes, the threshold twins, and
// the refusals.
#include "qel/dist.h"

#include "qel/distclosedform.h"
#include "qel/distdiscrete.h"
#include "qel/distkernelbacked.h"
#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>
#include <vector>

namespace
{
std::unique_ptr<CmDist> Make(int iType, const std::vector<double>& rvd)
{
    return std::unique_ptr<CmDist>(CmDist::mCreateDist(static_cast<EDistributionType>(iType), rvd));
}

std::vector<double> Params(const CmDist& d)
{
    std::vector<double> v;
    d.mGetParameters(v);
    return v;
}

struct Case
{
    int iType;
    std::vector<double> vdParams;
    const std::type_info& rType;
};
} // namespace

TEST(DistFactory, EachTypeMakesItsClassFromTheVector)
{
    const Case cases[] = {
        {1, {1.0, 2.0}, typeid(CmDistNormal)},
        {2, {1.0, 2.0}, typeid(CmDistLogNormal)},
        {3, {1.0, 2.0, 5.0}, typeid(CmDistLogNormal)},
        {4, {1.0, 2.0}, typeid(CmDistSmallestExtremeValue)},
        {5, {1.0, 2.0}, typeid(CmDistLargestExtremeValue)},
        {6, {1.5, 2.0}, typeid(CmDistWeibull)},
        {7, {1.5, 2.0, 3.0}, typeid(CmDistWeibull)},
        {8, {2.0}, typeid(CmDistExponential)},
        {9, {2.0, 3.0}, typeid(CmDistExponential)},
        {10, {1.0, 2.0}, typeid(CmDistLogistic)},
        {11, {1.0, 2.0}, typeid(CmDistLogLogistic)},
        {12, {1.0, 2.0, 3.0}, typeid(CmDistLogLogistic)},
        {13, {2.5, 2.0}, typeid(CmDistGamma)},
        {14, {2.5, 2.0, 3.0}, typeid(CmDistGamma)},
        {15, {2.0, 3.0}, typeid(CmDistBeta)},
        {16, {0.25}, typeid(CmDistBernoulli)},
        {17, {10.0, 0.25}, typeid(CmDistBinomial)},
        {18, {1.0, 2.0}, typeid(CmDistCauchy)},
        {19, {4.0, 0.0}, typeid(CmDistChiSq)},
        {21, {3.0, 7.0, 0.0}, typeid(CmDistF)},
        {23, {20.0, 7.0, 5.0}, typeid(CmDistHypergeometric)},
        {24, {-2.0, 6.0}, typeid(CmDistIntegerUniform)},
        {25, {0.14, 1.0, 2.0}, typeid(CmDistLambda)},
        {26, {1.0, 2.0}, typeid(CmDistLaplace)},
        {29, {3.5}, typeid(CmDistPoisson)},
        {30, {5.0, 0.0}, typeid(CmDistT)},
        {31, {1.0, 4.0}, typeid(CmDistUniform)},
        {32, {1.0, 2.0, 4.0}, typeid(CmDistTriangular)},
    };
    CmAssertCapture cap;
    for (const Case& c : cases)
    {
        auto p = Make(c.iType, c.vdParams);
        ASSERT_NE(p, nullptr) << c.iType;
        EXPECT_EQ(typeid(*p), c.rType) << c.iType;
        EXPECT_TRUE(p->mAreParamsValid()) << c.iType;
        // The parameters come back in the vector's order, defaults filled in.
        const std::vector<double> got = Params(*p);
        ASSERT_GE(got.size(), c.vdParams.size()) << c.iType;
        for (std::size_t i = 0; i < c.vdParams.size(); ++i)
            EXPECT_EQ(got[i], c.vdParams[i]) << c.iType << " entry " << i;
    }
    EXPECT_EQ(cap.mGetCount(), 0);
}

TEST(DistFactory, ThresholdTwinsMakeTheSameObject)
{
    auto p3 = Make(3, {1.0, 2.0, 5.0});
    auto p2 = Make(2, {1.0, 2.0, 5.0});
    ASSERT_TRUE(p3 && p2);
    EXPECT_EQ(typeid(*p3), typeid(*p2));
    EXPECT_EQ(Params(*p3), (std::vector<double>{1.0, 2.0, 5.0}));
    EXPECT_EQ(Params(*p2), (std::vector<double>{1.0, 2.0, 5.0}));
    EXPECT_EQ(p2->mGetLowerBound(), 5.0);
    EXPECT_EQ(p2->mCdf(7.0, false), p3->mCdf(7.0, false));

    auto p = Make(2, {1.0, 2.0});
    ASSERT_TRUE(p);
    EXPECT_EQ(Params(*p), (std::vector<double>{1.0, 2.0, 0.0}));
    EXPECT_EQ(p->mGetLowerBound(), 0.0);
}

TEST(DistFactory, DefaultsFillAShortVector)
{
    auto p = Make(1, {});
    ASSERT_TRUE(p);
    EXPECT_EQ(Params(*p), (std::vector<double>{0.0, 1.0}));
    EXPECT_TRUE(p->mAreParamsValid());
}

TEST(DistFactory, ValidatesNothing)
{
    CmAssertCapture cap;
    auto pNormal = Make(1, {0.0, -1.0});
    ASSERT_TRUE(pNormal);
    EXPECT_FALSE(pNormal->mAreParamsValid());
    auto pWeibull = Make(6, {});
    ASSERT_TRUE(pWeibull);
    EXPECT_FALSE(pWeibull->mAreParamsValid()); // the shape's default 0 is not a shape
    auto pPoisson = Make(29, {0.0});
    ASSERT_TRUE(pPoisson);
    EXPECT_FALSE(pPoisson->mAreParamsValid());
    EXPECT_EQ(cap.mGetCount(), 0);
}

TEST(DistFactory, RefusedTypesAssertFalseAndGiveNull)
{
    for (int iType : {22, 28, 33, 34, 0, 38, 20, 27, 35, 36, 37, -1, 1000})
    {
        CmAssertCapture cap;
        EXPECT_EQ(Make(iType, {1.0, 2.0, 3.0}), nullptr) << iType;
        EXPECT_EQ(cap.mGetCount(), 1) << iType;
        EXPECT_TRUE(cap.mHas("false")) << iType;
    }
}
