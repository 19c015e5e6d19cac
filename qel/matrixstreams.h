// Vectors, vectors of vectors and matrices on the package's binary streams.
//
// Layouts (every count a 32-bit integer of 4 bytes, every element in the
// byte order of the processor):
//   vector<double>, vector<int>      count, then the elements in one block
//   vector<bool>                     by CmIStream::mWriteVector
//   vector<vector<...>>              outer count, then each inner vector
//   vector<matrix<double>>           count, then for each matrix its column
//                                    count and each column as a vector<double>
//   vector<matrix<int>>              the same with vector<int> columns
//   vector<vector<matrix<double>>>   outer count, then each vector of matrices
// A matrix in a vector goes by columns and has no row count of its own: it
// is the size of its first column; a matrix without columns is a single 0.
//
// The readers append to what the target holds.  A column whose size differs
// from the first column's throws std::domain_error with
// "addCol column vector must be of same order".  A device error, a read
// past the end of the data or a count that cannot be right throws
// CmIStreamReadException; the part already read stays in the target.
#pragma once

#include "qel/qelexport.h"
#include "qel/matrix.h"
#include "qel/qelstreams.h"

#include <vector>

QEL_API void ReadVectorOfVectorOfDATA(CmIStream& rStream, std::vector<std::vector<double>>& rvvd);
QEL_API void WriteVectorOfVectorOfDATA(CmIStream& rStream, std::vector<std::vector<double>>& rvvd);
QEL_API void ReadVectorOfVectorOfINTG(CmIStream& rStream, std::vector<std::vector<int>>& rvvi);
QEL_API void WriteVectorOfVectorOfINTG(CmIStream& rStream, std::vector<std::vector<int>>& rvvi);
QEL_API void ReadVectorOfVectorOfBool(CmIStream& rStream, std::vector<std::vector<bool>>& rvvb);
QEL_API void WriteVectorOfVectorOfBool(CmIStream& rStream, std::vector<std::vector<bool>>& rvvb);
QEL_API void ReadVectorOfMatrixDATA(CmIStream& rStream, std::vector<matrix<double>>& rvmd);
QEL_API void WriteVectorOfMatrixDATA(CmIStream& rStream, std::vector<matrix<double>>& rvmd);
QEL_API void ReadVectorOfMatrixINTG(CmIStream& rStream, std::vector<matrix<int>>& rvmi);
QEL_API void WriteVectorOfMatrixINTG(CmIStream& rStream, std::vector<matrix<int>>& rvmi);
QEL_API void ReadVectorOfVectorOfMatrixDATA(CmIStream& rStream,
                                            std::vector<std::vector<matrix<double>>>& rvvmd);
QEL_API void WriteVectorOfVectorOfMatrixDATA(CmIStream& rStream,
                                             std::vector<std::vector<matrix<double>>>& rvvmd);
