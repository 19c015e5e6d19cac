// Vectors, vectors of vectors and persistent matrices on the binary streams.
// Vectors of numbers go as a count and one raw block through the stream's
// device; a matrix that is a field of a class goes by rows with both counts;
// a matrix inside a vector goes by columns, each column a vector.  Every
// count read is checked against the data still on the stream before it is
// used to allocate, so a corrupt count is refused with
// CmIStreamReadException and not met by an allocation failure.
#include "qel/matrixstreams.h"

#include "qelmath/matrixlibrary/streamhelpers.h"

#include <cstdint>
#include <limits>

namespace
{
// A count of 4 bytes; a negative one is corrupt.
int mReadCount(CmIStream& rStream)
{
    std::int32_t iCount = 0;
    rStream.mRead(&iCount, 4, nullptr, 0);
    if (iCount < 0)
        throw CmIStreamReadException(eStreamCorrupt);
    return iCount;
}

void mWriteCount(CmIStream& rStream, std::size_t uCount)
{
    if (uCount > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        throw CmIStreamWriteException(eStreamTooLarge);
    const std::int32_t iCount = static_cast<std::int32_t>(uCount);
    rStream.mWrite(&iCount, 4, nullptr, 0);
}

// A count of items that take at least iMinBytes each on the stream.
int mReadItemCount(CmIStream& rStream, unsigned int uMinBytes)
{
    const int iCount = mReadCount(rStream);
    rStream.mRequireAvailable(static_cast<unsigned long long>(iCount) * uMinBytes);
    return iCount;
}

template <class T> void mReadNumberVector(CmIStream& rStream, std::vector<T>& rv)
{
    const int iCount = mReadCount(rStream);
    if (iCount == 0)
    {
        rv.clear();
        return;
    }
    const unsigned long ulBytes = static_cast<unsigned long>(iCount) * sizeof(T);
    rStream.mRequireAvailable(ulBytes);
    rv.resize(static_cast<std::size_t>(iCount));
    const long lRc = rStream.mGetDevice()->mReadBytes(rv.data(), ulBytes, nullptr);
    if (lRc != 0)
        throw CmIStreamReadException(lRc);
}

template <class T> void mWriteNumberVector(CmIStream& rStream, const std::vector<T>& rv)
{
    mWriteCount(rStream, rv.size());
    if (rv.empty())
        return;
    const unsigned long ulBytes = static_cast<unsigned long>(rv.size() * sizeof(T));
    const long lRc = rStream.mGetDevice()->mWriteBytes(rv.data(), ulBytes, nullptr);
    if (lRc != 0)
        throw CmIStreamWriteException(lRc);
}

template <class T> void mWriteMatrixByColumns(CmIStream& rStream, const matrix<T>& rM)
{
    const int iCols = rM.colCount();
    mWriteCount(rStream, static_cast<std::size_t>(iCols));
    std::vector<T> vColumn(static_cast<std::size_t>(rM.rowCount()));
    for (int j = 0; j < iCols; ++j)
    {
        for (int i = 0; i < rM.rowCount(); ++i)
            vColumn[static_cast<std::size_t>(i)] = rM(i, j);
        mWriteNumberVector(rStream, vColumn);
    }
}

// Columns appended one by one: the first sets the row count, later ones
// must agree with it (addCol throws otherwise).
template <class T> matrix<T> mReadMatrixByColumns(CmIStream& rStream)
{
    const int iCols = mReadItemCount(rStream, 4);
    matrix<T> result;
    std::vector<T> vColumn;
    for (int j = 0; j < iCols; ++j)
    {
        mReadNumberVector(rStream, vColumn);
        if (j == 0)
            result = matrix<T>(static_cast<int>(vColumn.size()), 0);
        result.addCol(result.colCount(), vColumn);
    }
    return result;
}

template <class T> void mReadVectorOfMatrix(CmIStream& rStream, std::vector<matrix<T>>& rvm)
{
    const int iCount = mReadItemCount(rStream, 4);
    if (rvm.capacity() < static_cast<std::size_t>(iCount))
        rvm.reserve(static_cast<std::size_t>(iCount));
    for (int k = 0; k < iCount; ++k)
        rvm.push_back(mReadMatrixByColumns<T>(rStream));
}

template <class T> void mWriteVectorOfMatrix(CmIStream& rStream, std::vector<matrix<T>>& rvm)
{
    mWriteCount(rStream, rvm.size());
    for (const matrix<T>& rM : rvm)
        mWriteMatrixByColumns(rStream, rM);
}

template <class T>
void mReadVectorOfNumberVectors(CmIStream& rStream, std::vector<std::vector<T>>& rvv)
{
    const int iCount = mReadItemCount(rStream, 4);
    rvv.reserve(static_cast<std::size_t>(iCount));
    for (int k = 0; k < iCount; ++k)
    {
        std::vector<T> v;
        mReadNumberVector(rStream, v);
        rvv.push_back(std::move(v));
    }
}

template <class T>
void mWriteVectorOfNumberVectors(CmIStream& rStream, std::vector<std::vector<T>>& rvv)
{
    mWriteCount(rStream, rvv.size());
    for (const std::vector<T>& rv : rvv)
        mWriteNumberVector(rStream, rv);
}
} // namespace

// ---------------------------------------------------------------------------
// Internal helpers

void ReadVectorOfDATA(CmIStream& rStream, std::vector<double>& rvd)
{
    mReadNumberVector(rStream, rvd);
}

void WriteVectorOfDATA(CmIStream& rStream, const std::vector<double>& rvd)
{
    mWriteNumberVector(rStream, rvd);
}

void ReadVectorOfINTG(CmIStream& rStream, std::vector<int>& rvi)
{
    mReadNumberVector(rStream, rvi);
}

void WriteVectorOfINTG(CmIStream& rStream, const std::vector<int>& rvi)
{
    mWriteNumberVector(rStream, rvi);
}

void ReadMatrixDATA(CmIStream& rStream, matrix<double>& rmd)
{
    const int m = mReadCount(rStream);
    const int n = mReadCount(rStream);
    const unsigned long long ullElements =
        static_cast<unsigned long long>(m) * static_cast<unsigned long long>(n);
    if (ullElements > rStream.mGetRemaining() / 8u)
        throw CmIStreamReadException(eStreamEndOfData);
    // The packed kinds address their storage as a square; other counts
    // would lead the accessors astray.
    const bool bPacked = dynamic_cast<Smatrix<double>*>(&rmd) != nullptr ||
                         dynamic_cast<UTmatrix<double>*>(&rmd) != nullptr;
    if (bPacked && m != n)
        throw CmIStreamReadException(eStreamCorrupt);
    // The resize of the dense base, also for a packed kind: when the order
    // changes the storage gets m*n elements, more than the packed form uses;
    // when it does not, the old contents stay until overwritten.
    rmd.matrix<double>::resize(m, n, 0.0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
        {
            double d = 0.0;
            rStream.mRead(&d, 8, nullptr, 0);
            rmd(i, j) = d;
        }
}

void WriteMatrixDATA(CmIStream& rStream, matrix<double>& rmd)
{
    const std::int32_t aiCounts[2] = {rmd.rowCount(), rmd.colCount()};
    rStream.mWrite(&aiCounts[0], 4, nullptr, 0);
    rStream.mWrite(&aiCounts[1], 4, nullptr, 0);
    for (int i = 0; i < rmd.rowCount(); ++i)
        for (int j = 0; j < rmd.colCount(); ++j)
            rStream.mWrite(&rmd(i, j), 8, nullptr, 0);
}

// ---------------------------------------------------------------------------
// Exported forms

void ReadVectorOfVectorOfDATA(CmIStream& rStream, std::vector<std::vector<double>>& rvvd)
{
    mReadVectorOfNumberVectors(rStream, rvvd);
}

void WriteVectorOfVectorOfDATA(CmIStream& rStream, std::vector<std::vector<double>>& rvvd)
{
    mWriteVectorOfNumberVectors(rStream, rvvd);
}

void ReadVectorOfVectorOfINTG(CmIStream& rStream, std::vector<std::vector<int>>& rvvi)
{
    mReadVectorOfNumberVectors(rStream, rvvi);
}

void WriteVectorOfVectorOfINTG(CmIStream& rStream, std::vector<std::vector<int>>& rvvi)
{
    mWriteVectorOfNumberVectors(rStream, rvvi);
}

void ReadVectorOfVectorOfBool(CmIStream& rStream, std::vector<std::vector<bool>>& rvvb)
{
    const int iCount = mReadItemCount(rStream, 4);
    rvvb.reserve(static_cast<std::size_t>(iCount));
    for (int k = 0; k < iCount; ++k)
    {
        std::vector<bool> vb;
        rStream.mReadVector(vb);
        rvvb.push_back(std::move(vb));
    }
}

void WriteVectorOfVectorOfBool(CmIStream& rStream, std::vector<std::vector<bool>>& rvvb)
{
    mWriteCount(rStream, rvvb.size());
    for (const std::vector<bool>& rvb : rvvb)
        rStream.mWriteVector(rvb);
}

void ReadVectorOfMatrixDATA(CmIStream& rStream, std::vector<matrix<double>>& rvmd)
{
    mReadVectorOfMatrix(rStream, rvmd);
}

void WriteVectorOfMatrixDATA(CmIStream& rStream, std::vector<matrix<double>>& rvmd)
{
    mWriteVectorOfMatrix(rStream, rvmd);
}

void ReadVectorOfMatrixINTG(CmIStream& rStream, std::vector<matrix<int>>& rvmi)
{
    mReadVectorOfMatrix(rStream, rvmi);
}

void WriteVectorOfMatrixINTG(CmIStream& rStream, std::vector<matrix<int>>& rvmi)
{
    mWriteVectorOfMatrix(rStream, rvmi);
}

void ReadVectorOfVectorOfMatrixDATA(CmIStream& rStream,
                                    std::vector<std::vector<matrix<double>>>& rvvmd)
{
    const int iCount = mReadItemCount(rStream, 4);
    rvvmd.reserve(static_cast<std::size_t>(iCount));
    for (int k = 0; k < iCount; ++k)
    {
        std::vector<matrix<double>> vmd;
        mReadVectorOfMatrix(rStream, vmd);
        rvvmd.push_back(std::move(vmd));
    }
}

void WriteVectorOfVectorOfMatrixDATA(CmIStream& rStream,
                                     std::vector<std::vector<matrix<double>>>& rvvmd)
{
    mWriteCount(rStream, rvvmd.size());
    for (std::vector<matrix<double>>& rvmd : rvvmd)
        mWriteVectorOfMatrix(rStream, rvmd);
}
