// Internal to the discrete distribution objects: listing a support.
#pragma once

#include <cstddef>
#include <vector>

namespace qel_dist
{

// Empties rvdSupport and lists the integers from llFirst to llLast as
// doubles (none when llFirst > llLast), counted in a wide integer so that the
// step past an end of INT_MAX cannot overflow.
inline void mListIntegers(long long llFirst, long long llLast, std::vector<double>& rvdSupport)
{
    rvdSupport.clear();
    if (llFirst > llLast)
        return;
    rvdSupport.reserve(static_cast<std::size_t>(llLast - llFirst + 1));
    for (long long ll = llFirst; ll <= llLast; ++ll)
        rvdSupport.push_back(static_cast<double>(ll));
}

} // namespace qel_dist
