#include "support/reftable.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>

namespace qeltest
{

RefTable mLoadRefTable(const std::string& rsName)
{
    RefTable table;
    table.path = std::string(QEL_TEST_DATA_DIR) + "/" + rsName;
    std::ifstream in(table.path);
    if (!in)
    {
        ADD_FAILURE() << "reference table missing: " << table.path;
        return table;
    }
    std::string line;
    while (std::getline(in, line))
    {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line);
        std::vector<double> row;
        std::string field;
        while (fields >> field)
            row.push_back(std::strtod(field.c_str(), nullptr));
        if (!row.empty())
            table.rows.push_back(std::move(row));
    }
    return table;
}

double mRelativeError(double dComputed, double dReference)
{
    if (dComputed == dReference)
        return 0.0;
    if (dReference == 0.0)
        return std::fabs(dComputed);
    return std::fabs((dComputed - dReference) / dReference);
}

double mUlpDistance(double dA, double dB)
{
    if (dA == dB)
        return 0.0;
    if (!std::isfinite(dA) || !std::isfinite(dB))
        return INFINITY;
    auto key = [](double d) {
        std::int64_t i;
        std::memcpy(&i, &d, sizeof i);
        return i < 0 ? std::numeric_limits<std::int64_t>::min() - i : i;
    };
    // The keys are ordered like the doubles; their distance is taken in
    // unsigned 64-bit arithmetic, exact for any two finite doubles.
    const std::int64_t a = key(dA);
    const std::int64_t b = key(dB);
    const std::uint64_t diff = a >= b ? static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b)
                                      : static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a);
    return static_cast<double>(diff);
}

void WorstError::mUpdate(double dError, double dUlps, const std::string& rsRow)
{
    ++m_lCount;
    if (dError > m_dError || (m_sRow.empty() && dError >= m_dError))
    {
        m_dError = dError;
        m_dUlps = dUlps;
        m_sRow = rsRow;
    }
}

std::string WorstError::mReport() const
{
    std::ostringstream os;
    os << m_sWhat << ": worst " << m_sMeasure << " error " << m_dError << " (" << m_dUlps << " ulp) over "
       << m_lCount << " rows, at " << m_sRow;
    return os.str();
}

} // namespace qeltest
