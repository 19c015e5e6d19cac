// The exception classes of the matrix_library family and the internal
// assertion that throws allege::AllegeException.
#include "qel/qelmathlinearalgebra.h"

#include <cstring>
#include <sstream>

namespace allege
{
AllegeException::AllegeException(const std::string& rsMessage) : std::runtime_error(rsMessage) {}
AllegeException::AllegeException(const AllegeException& rOther) = default;
AllegeException& AllegeException::operator=(const AllegeException& rOther) = default;
AllegeException::~AllegeException() = default;

void fail(const char* pszExpression, const char* pszFile, int iLine)
{
    const char* pszName = pszFile ? pszFile : "";
    for (const char* p = pszName; *p; ++p)
        if (*p == '/' || *p == '\\')
            pszName = p + 1;
    std::ostringstream os;
    os << "assertion failed: (" << (pszExpression ? pszExpression : "") << ") " << pszName << ": "
       << iLine;
    throw AllegeException(os.str());
}
} // namespace allege

namespace matrix_library
{
MatrixException::MatrixException(const std::string& rsMessage) : std::runtime_error(rsMessage) {}
MatrixException::MatrixException(const MatrixException& rOther) = default;
MatrixException& MatrixException::operator=(const MatrixException& rOther) = default;
MatrixException::~MatrixException() = default;

MatrixSingular::MatrixSingular() : std::runtime_error("Matrix is singular") {}
MatrixSingular::MatrixSingular(const MatrixSingular& rOther) = default;
MatrixSingular& MatrixSingular::operator=(const MatrixSingular& rOther) = default;
MatrixSingular::~MatrixSingular() = default;
} // namespace matrix_library
