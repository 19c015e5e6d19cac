// Internal stream helpers shared by the persistent classes of the library:
// a vector of doubles or of 32-bit integers (count, then one block), and a
// persistent matrix as a field of a class (row count, column count, then the
// elements by rows through the accessors, 8 bytes each).  The field form of
// an Smatrix or UTmatrix is the full square; reading one from a stream whose
// counts differ throws CmIStreamReadException(eStreamCorrupt).
#pragma once

#include "qel/matrix.h"
#include "qel/qelstreams.h"

#include <vector>

void ReadVectorOfDATA(CmIStream& rStream, std::vector<double>& rvd);
void WriteVectorOfDATA(CmIStream& rStream, const std::vector<double>& rvd);
void ReadVectorOfINTG(CmIStream& rStream, std::vector<int>& rvi);
void WriteVectorOfINTG(CmIStream& rStream, const std::vector<int>& rvi);
void ReadMatrixDATA(CmIStream& rStream, matrix<double>& rmd);
void WriteMatrixDATA(CmIStream& rStream, matrix<double>& rmd);
