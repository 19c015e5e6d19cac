// Goodness-of-fit tests for samples of variates: Kolmogorov-Smirnov against
// a continuous distribution function, Pearson's chi-square against a
// discrete mass function.  Each returns the p-value; the tests draw their
// samples at a fixed base, so a p-value is a fixed number and cannot flake.
#pragma once

#include <functional>
#include <vector>

namespace qeltest
{

// The Kolmogorov-Smirnov statistic D of the sample against the distribution
// function rCdf (the lower tail), and its p-value by the limiting Kolmogorov
// distribution with Stephens' (1970) small-sample correction,
// P(K > D (sqrt(n) + 0.12 + 0.11 / sqrt(n))).
struct KsResult
{
    double dStatistic;
    double dPValue;
};
KsResult mKolmogorovSmirnov(std::vector<double> vdSample, const std::function<double(double)>& rCdf);

// Pearson's chi-square of integer-valued samples against the mass function
// rPmf on the support [iLower, iUpper] (whole numbers).  Cells are pooled
// from each end until every cell expects at least 5; the statistic has
// cells - 1 degrees of freedom.  A sample value outside the support counts
// in its end cell and is reported through the count of outliers.
struct ChiSquareResult
{
    double dStatistic;
    int iDegreesOfFreedom;
    double dPValue;
    int iOutliers;
};
ChiSquareResult mChiSquare(const std::vector<double>& rvdSample, int iLower, int iUpper,
                           const std::function<double(int)>& rPmf);

} // namespace qeltest
