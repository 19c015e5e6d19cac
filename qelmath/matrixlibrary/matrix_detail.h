// Internal helpers of the matrix_library family, shared by its sources.
#pragma once

#include "qel/qelmathlinearalgebra.h"

namespace matrix_library
{
// The symmetric matrix whose upper triangle is that of a UTmatrix.
Smatrix<double> UTmatrixToSmatrix(const UTmatrix<double>& rU);
} // namespace matrix_library
