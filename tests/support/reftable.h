// Reading the reference tables of tests/data/ and measuring errors against
// them.  A table is text: lines starting with # are its header (where it came
// from, the columns), every other line holds whitespace-separated numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace qeltest
{

struct RefTable
{
    std::string path;
    std::vector<std::vector<double>> rows;
};

// Loads tests/data/<name>; fails the calling test (ADD_FAILURE) when missing.
RefTable mLoadRefTable(const std::string& rsName);

// Relative error of a computed value against a reference; 0 when both are 0.
double mRelativeError(double dComputed, double dReference);

// Distance in units in the last place between two finite doubles.
double mUlpDistance(double dA, double dB);

// Keeps the worst error seen and the row that produced it, for the report a
// test prints at its end.
class WorstError
{
public:
    // sMeasure names the error kept ("relative", "absolute").
    explicit WorstError(std::string sWhat, std::string sMeasure = "relative")
        : m_sWhat(std::move(sWhat)), m_sMeasure(std::move(sMeasure))
    {
    }
    void mUpdate(double dError, double dUlps, const std::string& rsRow);
    double mGetError() const { return m_dError; }
    std::string mReport() const;

private:
    std::string m_sWhat;
    std::string m_sMeasure;
    double m_dError = 0.0;
    double m_dUlps = 0.0;
    std::string m_sRow;
    long m_lCount = 0;
};

} // namespace qeltest
