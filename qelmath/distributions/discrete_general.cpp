// A general discrete distribution kept by the caller in sorted maps: value to
// probability for the mass, value to cumulative probability for the
// distribution function, and cumulative probability to value for the
// quantile.  Lookups are exact, in the map's own order, without fuzz.
#include <iterator>

#include "qel/discrete.h"

double mDiscretePdf(double dX, const std::map<double, double>& rMap)
{
    const auto it = rMap.find(dX);
    return it == rMap.end() ? 0.0 : it->second;
}

double mDiscreteCdf(double dX, const std::map<double, double>& rMap, bool bUpper)
{
    const auto it = rMap.lower_bound(dX);
    if (it == rMap.end())
        return bUpper ? 0.0 : 1.0;
    if (it->first == dX)
    {
        if (!bUpper)
            return it->second;
        return it == rMap.begin() ? 1.0 : 1.0 - std::prev(it)->second;
    }
    // dX lies before the first key, or between two keys.
    if (it == rMap.begin())
        return bUpper ? 1.0 : 0.0;
    const double dLower = std::prev(it)->second;
    return bUpper ? 1.0 - dLower : dLower;
}

double mDiscreteInvCdf(double dProb, const std::map<double, double>& rMap)
{
    if (!rMap.empty() && dProb < rMap.begin()->first)
        return rMap.begin()->second;
    const auto it = rMap.lower_bound(dProb);
    // Beyond the last cumulative probability the answer is deliberately the
    // constant 1.0, not the largest value of the distribution.
    return it == rMap.end() ? 1.0 : it->second;
}
