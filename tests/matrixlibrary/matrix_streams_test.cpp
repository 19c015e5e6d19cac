// Vectors and matrices on the binary streams: exact byte layouts and sizes,
// round trips of every form, appending readers, the column-size check, the
// field form of the packed kinds, device errors passed on with their code,
// and cut or corrupt streams refused with CmIStreamReadException.
#include "qel/matrixstreams.h"

#include "qelmath/matrixlibrary/streamhelpers.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
using qeltest::Bytes;
using qeltest::mDoubleBytes;
using qeltest::mInt32Bytes;

void mAppend(Bytes& rAll, const Bytes& rPart)
{
    rAll.insert(rAll.end(), rPart.begin(), rPart.end());
}

matrix<double> mNumbered(int m, int n)
{
    matrix<double> a(m, n, 0.0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a(i, j) = 10.0 * i + j + 0.5;
    return a;
}

matrix<int> mNumberedInt(int m, int n)
{
    matrix<int> a(m, n, 0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a(i, j) = 10 * i + j - 7;
    return a;
}

long mReadCode(const std::function<void()>& f)
{
    try
    {
        f();
    }
    catch (const CmIStreamReadException& e)
    {
        return e.mGetCode();
    }
    return -1;
}

// Every proper prefix of the bytes makes the reader throw
// CmIStreamReadException; returns how many did.
int mCutEverywhere(const Bytes& rWhole, const std::function<void(CmIStream&)>& fRead)
{
    int iThrown = 0;
    for (std::size_t uCut = 0; uCut < rWhole.size(); ++uCut)
    {
        CmIStream cut(Bytes(rWhole.begin(), rWhole.begin() + static_cast<long>(uCut)));
        try
        {
            fRead(cut);
            ADD_FAILURE() << "no exception at cut " << uCut;
        }
        catch (const CmIStreamReadException& e)
        {
            EXPECT_EQ(e.mGetCode(), eStreamEndOfData) << "cut " << uCut;
            ++iThrown;
        }
    }
    return iThrown;
}

// A memory device whose block transfers (more than 4 bytes at once) fail
// with a code of its own.
class CmFailingDevice : public CmMemoryStreamDevice
{
public:
    explicit CmFailingDevice(const Bytes& rBytes) : CmMemoryStreamDevice(rBytes) {}
    long mReadBytes(void* p, unsigned long ulBytes, unsigned long* pulDone) override
    {
        if (ulBytes > 4)
            return 66;
        return CmMemoryStreamDevice::mReadBytes(p, ulBytes, pulDone);
    }
    long mWriteBytes(const void* p, unsigned long ulBytes, unsigned long* pulDone) override
    {
        if (ulBytes > 4)
            return 77;
        return CmMemoryStreamDevice::mWriteBytes(p, ulBytes, pulDone);
    }
};
} // namespace

// ---------------------------------------------------------------------------
// Vectors of numbers

TEST(VectorStreams, EmptyVectorIsFourBytesAndReadingClearsTheTarget)
{
    CmIStream stream;
    WriteVectorOfDATA(stream, std::vector<double>());
    EXPECT_EQ(stream.mGetBytes(), mInt32Bytes(0));
    stream.mRewind();
    std::vector<double> vd = {1.0, 2.0};
    ReadVectorOfDATA(stream, vd);
    EXPECT_TRUE(vd.empty());

    CmIStream ints;
    WriteVectorOfINTG(ints, std::vector<int>());
    EXPECT_EQ(ints.mGetBytes(), mInt32Bytes(0));
    ints.mRewind();
    std::vector<int> vi = {3};
    ReadVectorOfINTG(ints, vi);
    EXPECT_TRUE(vi.empty());
}

TEST(VectorStreams, VectorIsCountThenOneRawBlock)
{
    CmIStream stream;
    WriteVectorOfDATA(stream, std::vector<double>{1.5, -2.0});
    Bytes expected = mInt32Bytes(2);
    mAppend(expected, mDoubleBytes(1.5));
    mAppend(expected, mDoubleBytes(-2.0));
    EXPECT_EQ(stream.mGetBytes(), expected);
    stream.mRewind();
    std::vector<double> vd = {9.0, 9.0, 9.0};
    ReadVectorOfDATA(stream, vd);
    EXPECT_EQ(vd, (std::vector<double>{1.5, -2.0}));

    CmIStream ints;
    WriteVectorOfINTG(ints, std::vector<int>{7, -1, 3});
    Bytes expectedInts = mInt32Bytes(3);
    mAppend(expectedInts, mInt32Bytes(7));
    mAppend(expectedInts, mInt32Bytes(-1));
    mAppend(expectedInts, mInt32Bytes(3));
    EXPECT_EQ(ints.mGetBytes(), expectedInts);
    ints.mRewind();
    std::vector<int> vi;
    ReadVectorOfINTG(ints, vi);
    EXPECT_EQ(vi, (std::vector<int>{7, -1, 3}));
}

TEST(VectorStreams, CorruptCountIsRefusedBeforeAllocating)
{
    Bytes huge = mInt32Bytes(0x7fffffff);
    mAppend(huge, mDoubleBytes(1.0));
    std::vector<double> vd = {4.0};
    CmIStream s1(huge);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfDATA(s1, vd); }), eStreamEndOfData);
    EXPECT_EQ(vd, std::vector<double>{4.0});
    Bytes negative = mInt32Bytes(-2);
    mAppend(negative, mDoubleBytes(1.0));
    CmIStream s2(negative);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfDATA(s2, vd); }), eStreamCorrupt);
    std::vector<int> vi;
    CmIStream s3(huge);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfINTG(s3, vi); }), eStreamEndOfData);

    std::vector<std::vector<double>> vvd;
    CmIStream s4(huge);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfVectorOfDATA(s4, vvd); }), eStreamEndOfData);
    std::vector<std::vector<int>> vvi;
    CmIStream s5(negative);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfVectorOfINTG(s5, vvi); }), eStreamCorrupt);
    std::vector<std::vector<bool>> vvb;
    CmIStream s6(huge);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfVectorOfBool(s6, vvb); }), eStreamEndOfData);
    std::vector<matrix<double>> vmd;
    CmIStream s7(huge);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfMatrixDATA(s7, vmd); }), eStreamEndOfData);
    std::vector<matrix<int>> vmi;
    Bytes hugeColumns = mInt32Bytes(1);
    mAppend(hugeColumns, mInt32Bytes(0x40000000));
    CmIStream s8(hugeColumns);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfMatrixINTG(s8, vmi); }), eStreamEndOfData);
    std::vector<std::vector<matrix<double>>> vvmd;
    CmIStream s9(huge);
    EXPECT_EQ(mReadCode([&] { ReadVectorOfVectorOfMatrixDATA(s9, vvmd); }), eStreamEndOfData);
    EXPECT_TRUE(vvd.empty() && vvi.empty() && vvb.empty() && vmd.empty() && vmi.empty() &&
                vvmd.empty());
}

TEST(VectorStreams, DeviceErrorsPassOnTheDeviceCode)
{
    CmFailingDevice writeDevice(Bytes{});
    CmIStream writer(writeDevice);
    try
    {
        WriteVectorOfDATA(writer, std::vector<double>{1.0});
        FAIL() << "no exception";
    }
    catch (const CmIStreamWriteException& e)
    {
        EXPECT_EQ(e.mGetCode(), 77);
    }
    // The count went through before the block failed.
    EXPECT_EQ(writeDevice.mGetBytes(), mInt32Bytes(1));

    Bytes bytes = mInt32Bytes(1);
    mAppend(bytes, mDoubleBytes(2.0));
    CmFailingDevice readDevice(bytes);
    CmIStream reader(readDevice);
    std::vector<double> vd;
    EXPECT_EQ(mReadCode([&] { ReadVectorOfDATA(reader, vd); }), 66);
}

// ---------------------------------------------------------------------------
// Vectors of vectors

TEST(VectorStreams, VectorOfVectorOfDATARoundTripAndSize)
{
    std::vector<std::vector<double>> vvd = {{1.0, 2.0, 3.0}, {}, {-4.5}};
    CmIStream stream;
    WriteVectorOfVectorOfDATA(stream, vvd);
    EXPECT_EQ(stream.mGetBytes().size(), 4u + (4u + 24u) + 4u + (4u + 8u));
    stream.mRewind();
    std::vector<std::vector<double>> back;
    ReadVectorOfVectorOfDATA(stream, back);
    EXPECT_EQ(back, vvd);
}

TEST(VectorStreams, ReadVectorOfVectorOfDATAAppends)
{
    std::vector<std::vector<double>> vvd = {{1.0}, {2.0, 3.0}};
    CmIStream stream;
    WriteVectorOfVectorOfDATA(stream, vvd);
    stream.mRewind();
    std::vector<std::vector<double>> target = {{9.0, 9.0}};
    ReadVectorOfVectorOfDATA(stream, target);
    EXPECT_EQ(target, (std::vector<std::vector<double>>{{9.0, 9.0}, {1.0}, {2.0, 3.0}}));
}

TEST(VectorStreams, VectorOfVectorOfINTGRoundTripAppends)
{
    std::vector<std::vector<int>> vvi = {{1, 2}, {3}, {}};
    CmIStream stream;
    WriteVectorOfVectorOfINTG(stream, vvi);
    EXPECT_EQ(stream.mGetBytes().size(), 4u + (4u + 8u) + (4u + 4u) + 4u);
    stream.mRewind();
    std::vector<std::vector<int>> back = {{5}};
    ReadVectorOfVectorOfINTG(stream, back);
    EXPECT_EQ(back, (std::vector<std::vector<int>>{{5}, {1, 2}, {3}, {}}));
}

TEST(VectorStreams, VectorOfVectorOfBoolGoesThroughTheStreamVectors)
{
    std::vector<std::vector<bool>> vvb = {{true, false, true}, {}, {false}};
    CmIStream stream;
    WriteVectorOfVectorOfBool(stream, vvb);
    CmIStream expected;
    expected.mWriteValue(3);
    for (const std::vector<bool>& rvb : vvb)
        expected.mWriteVector(rvb);
    EXPECT_EQ(stream.mGetBytes(), expected.mGetBytes());
    stream.mRewind();
    std::vector<std::vector<bool>> back = {{true}};
    ReadVectorOfVectorOfBool(stream, back);
    EXPECT_EQ(back, (std::vector<std::vector<bool>>{{true}, {true, false, true}, {}, {false}}));
}

// ---------------------------------------------------------------------------
// Vectors of matrices

TEST(MatrixStreams, VectorOfOneThreeByTwoMatrixGoesByColumns)
{
    std::vector<matrix<double>> vmd = {mNumbered(3, 2)};
    CmIStream stream;
    WriteVectorOfMatrixDATA(stream, vmd);
    EXPECT_EQ(stream.mGetBytes().size(), 4u + 4u + 2u * (4u + 3u * 8u));
    Bytes expected = mInt32Bytes(1);
    mAppend(expected, mInt32Bytes(2));
    for (int j = 0; j < 2; ++j)
    {
        mAppend(expected, mInt32Bytes(3));
        for (int i = 0; i < 3; ++i)
            mAppend(expected, mDoubleBytes(10.0 * i + j + 0.5));
    }
    EXPECT_EQ(stream.mGetBytes(), expected);

    stream.mRewind();
    std::vector<matrix<double>> back;
    ReadVectorOfMatrixDATA(stream, back);
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].rowCount(), 3);
    EXPECT_EQ(back[0].colCount(), 2);
    EXPECT_EQ(back[0].elementCount(), 6);
    EXPECT_EQ(back[0].storage(), mNumbered(3, 2).storage());
}

TEST(MatrixStreams, EmptyVectorOfMatricesIsFourBytes)
{
    std::vector<matrix<double>> vmd;
    CmIStream stream;
    WriteVectorOfMatrixDATA(stream, vmd);
    EXPECT_EQ(stream.mGetBytes(), mInt32Bytes(0));
}

TEST(MatrixStreams, MatrixWithoutColumnsIsASingleZero)
{
    std::vector<matrix<double>> vmd = {matrix<double>(3, 0, 0.0)};
    CmIStream stream;
    WriteVectorOfMatrixDATA(stream, vmd);
    Bytes expected = mInt32Bytes(1);
    mAppend(expected, mInt32Bytes(0));
    EXPECT_EQ(stream.mGetBytes(), expected);
    stream.mRewind();
    std::vector<matrix<double>> back;
    ReadVectorOfMatrixDATA(stream, back);
    ASSERT_EQ(back.size(), 1u);
    // The row count lives in the columns, so it is gone.
    EXPECT_EQ(back[0].rowCount(), 0);
    EXPECT_EQ(back[0].colCount(), 0);
}

TEST(MatrixStreams, ColumnsOfSizesThreeAndTwoThrow)
{
    Bytes bytes = mInt32Bytes(2);
    // A good 1 x 1 matrix first.
    mAppend(bytes, mInt32Bytes(1));
    mAppend(bytes, mInt32Bytes(1));
    mAppend(bytes, mDoubleBytes(4.0));
    // Then columns of sizes 3 and 2.
    mAppend(bytes, mInt32Bytes(2));
    mAppend(bytes, mInt32Bytes(3));
    for (int i = 0; i < 3; ++i)
        mAppend(bytes, mDoubleBytes(1.0));
    mAppend(bytes, mInt32Bytes(2));
    for (int i = 0; i < 2; ++i)
        mAppend(bytes, mDoubleBytes(1.0));
    CmIStream stream(bytes);
    std::vector<matrix<double>> back;
    try
    {
        ReadVectorOfMatrixDATA(stream, back);
        FAIL() << "no exception";
    }
    catch (const std::domain_error& e)
    {
        EXPECT_STREQ(e.what(), "addCol column vector must be of same order");
    }
    // What was read before stays.
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].storage(), std::vector<double>{4.0});
}

TEST(MatrixStreams, ReadVectorOfMatrixDATAAppends)
{
    std::vector<matrix<double>> vmd = {mNumbered(2, 2), mNumbered(1, 3)};
    CmIStream stream;
    WriteVectorOfMatrixDATA(stream, vmd);
    stream.mRewind();
    std::vector<matrix<double>> back = {mNumbered(4, 1)};
    ReadVectorOfMatrixDATA(stream, back);
    ASSERT_EQ(back.size(), 3u);
    EXPECT_EQ(back[0].rowCount(), 4);
    EXPECT_EQ(back[1].storage(), mNumbered(2, 2).storage());
    EXPECT_EQ(back[2].rowCount(), 1);
    EXPECT_EQ(back[2].colCount(), 3);
    EXPECT_EQ(back[2].storage(), mNumbered(1, 3).storage());
}

TEST(MatrixStreams, VectorOfMatrixINTGUsesFourByteColumns)
{
    std::vector<matrix<int>> vmi = {mNumberedInt(3, 2), mNumberedInt(2, 1)};
    CmIStream stream;
    WriteVectorOfMatrixINTG(stream, vmi);
    EXPECT_EQ(stream.mGetBytes().size(), 4u + (4u + 2u * (4u + 3u * 4u)) + (4u + (4u + 2u * 4u)));
    stream.mRewind();
    std::vector<matrix<int>> back;
    ReadVectorOfMatrixINTG(stream, back);
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[0].storage(), mNumberedInt(3, 2).storage());
    EXPECT_EQ(back[1].rowCount(), 2);
    EXPECT_EQ(back[1].colCount(), 1);
    EXPECT_EQ(back[1].storage(), mNumberedInt(2, 1).storage());
}

TEST(MatrixStreams, VectorOfVectorOfMatrixDATARoundTrip)
{
    std::vector<std::vector<matrix<double>>> vvmd = {
        {mNumbered(2, 3)}, {}, {mNumbered(1, 1), mNumbered(3, 2)}};
    CmIStream stream;
    WriteVectorOfVectorOfMatrixDATA(stream, vvmd);
    const std::size_t uExpected = 4u + (4u + 4u + 3u * (4u + 2u * 8u)) + 4u +
                                  (4u + (4u + 4u + 8u) + (4u + 2u * (4u + 3u * 8u)));
    EXPECT_EQ(stream.mGetBytes().size(), uExpected);
    stream.mRewind();
    std::vector<std::vector<matrix<double>>> back;
    ReadVectorOfVectorOfMatrixDATA(stream, back);
    ASSERT_EQ(back.size(), 3u);
    ASSERT_EQ(back[0].size(), 1u);
    EXPECT_EQ(back[0][0].storage(), mNumbered(2, 3).storage());
    EXPECT_TRUE(back[1].empty());
    ASSERT_EQ(back[2].size(), 2u);
    EXPECT_EQ(back[2][0].storage(), mNumbered(1, 1).storage());
    EXPECT_EQ(back[2][1].rowCount(), 3);
    EXPECT_EQ(back[2][1].storage(), mNumbered(3, 2).storage());
}

TEST(MatrixStreams, VectorOfSmatrixGoesAsTheFullSquare)
{
    Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 3.0;
    std::vector<matrix<double>> vmd = {matrix<double>(s)};
    CmIStream stream;
    WriteVectorOfMatrixDATA(stream, vmd);
    stream.mRewind();
    std::vector<matrix<double>> back;
    ReadVectorOfMatrixDATA(stream, back);
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].storage(), (std::vector<double>{1, 2, 2, 3}));
}

// ---------------------------------------------------------------------------
// Matrix fields

TEST(MatrixStreams, MatrixFieldGoesByRowsWithBothCounts)
{
    matrix<double> a = mNumbered(2, 3);
    CmIStream stream;
    WriteMatrixDATA(stream, a);
    Bytes expected = mInt32Bytes(2);
    mAppend(expected, mInt32Bytes(3));
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 3; ++j)
            mAppend(expected, mDoubleBytes(10.0 * i + j + 0.5));
    EXPECT_EQ(stream.mGetBytes(), expected);
    EXPECT_EQ(expected.size(), 4u + 4u + 6u * 8u);
    stream.mRewind();
    matrix<double> back(5, 5, 1.0);
    ReadMatrixDATA(stream, back);
    EXPECT_EQ(back.rowCount(), 2);
    EXPECT_EQ(back.colCount(), 3);
    EXPECT_EQ(back.storage(), a.storage());
}

TEST(MatrixStreams, SmatrixOfOrderTwoAsAFieldIsFortyBytes)
{
    Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 3.0;
    CmIStream stream;
    WriteMatrixDATA(stream, s);
    EXPECT_EQ(stream.mGetBytes().size(), 4u + 4u + 4u * 8u);
    Bytes expected = mInt32Bytes(2);
    mAppend(expected, mInt32Bytes(2));
    for (double d : {1.0, 2.0, 2.0, 3.0})
        mAppend(expected, mDoubleBytes(d));
    EXPECT_EQ(stream.mGetBytes(), expected);

    // Same order: the packed storage stays packed.
    stream.mRewind();
    Smatrix<double> same(2, 9.0);
    ReadMatrixDATA(stream, same);
    EXPECT_EQ(same.storage(), (std::vector<double>{1, 2, 3}));
    // Another order: the dense resize of the base leaves surplus storage.
    stream.mRewind();
    Smatrix<double> other(3, 9.0);
    ReadMatrixDATA(stream, other);
    EXPECT_EQ(other.rowCount(), 2);
    EXPECT_EQ(other.elementCount(), 4);
    EXPECT_EQ(other.storage(), (std::vector<double>{1, 2, 3, 0}));
    EXPECT_EQ(other(0, 1), 2.0);
    EXPECT_EQ(other(1, 1), 3.0);
}

TEST(MatrixStreams, SmatrixFieldTakesTheLaterOfTwoMirroredElements)
{
    Bytes bytes = mInt32Bytes(2);
    mAppend(bytes, mInt32Bytes(2));
    for (double d : {1.0, 5.0, 7.0, 3.0})
        mAppend(bytes, mDoubleBytes(d));
    CmIStream stream(bytes);
    Smatrix<double> s;
    ReadMatrixDATA(stream, s);
    EXPECT_EQ(s(0, 1), 7.0);
    EXPECT_EQ(s(1, 0), 7.0);
    EXPECT_EQ(s(0, 0), 1.0);
    EXPECT_EQ(s(1, 1), 3.0);
}

TEST(MatrixStreams, UTmatrixFieldRoundTrip)
{
    UTmatrix<double> u(3, 0.0);
    for (int i = 0; i < 3; ++i)
        for (int j = i; j < 3; ++j)
            u(i, j) = 1.0 + 10.0 * i + j;
    CmIStream stream;
    WriteMatrixDATA(stream, u);
    EXPECT_EQ(stream.mGetBytes().size(), 4u + 4u + 9u * 8u);
    stream.mRewind();
    UTmatrix<double> back(3, 0.0);
    ReadMatrixDATA(stream, back);
    EXPECT_EQ(back.storage(), u.storage());
    EXPECT_EQ(back(2, 0), 0.0);
}

TEST(MatrixStreams, PackedFieldWithUnequalCountsIsCorrupt)
{
    Bytes bytes = mInt32Bytes(1);
    mAppend(bytes, mInt32Bytes(3));
    for (int k = 0; k < 3; ++k)
        mAppend(bytes, mDoubleBytes(1.0));
    CmIStream s1(bytes);
    Smatrix<double> s(2, 4.0);
    EXPECT_EQ(mReadCode([&] { ReadMatrixDATA(s1, s); }), eStreamCorrupt);
    EXPECT_EQ(s.storage(), std::vector<double>(3, 4.0));
    CmIStream s2(bytes);
    UTmatrix<double> u;
    EXPECT_EQ(mReadCode([&] { ReadMatrixDATA(s2, u); }), eStreamCorrupt);
    // A dense matrix takes them.
    CmIStream s3(bytes);
    matrix<double> a;
    ReadMatrixDATA(s3, a);
    EXPECT_EQ(a.rowCount(), 1);
    EXPECT_EQ(a.colCount(), 3);
}

TEST(MatrixStreams, MatrixFieldWithCorruptCountsIsRefused)
{
    Bytes huge = mInt32Bytes(0x7fffffff);
    mAppend(huge, mInt32Bytes(0x7fffffff));
    mAppend(huge, mDoubleBytes(1.0));
    CmIStream s1(huge);
    matrix<double> a(1, 1, 2.0);
    EXPECT_EQ(mReadCode([&] { ReadMatrixDATA(s1, a); }), eStreamEndOfData);
    EXPECT_EQ(a.storage(), std::vector<double>{2.0});
    Bytes negative = mInt32Bytes(-1);
    mAppend(negative, mInt32Bytes(2));
    CmIStream s2(negative);
    EXPECT_EQ(mReadCode([&] { ReadMatrixDATA(s2, a); }), eStreamCorrupt);
}

// ---------------------------------------------------------------------------
// Cut streams

TEST(MatrixStreams, EveryFormCutAtEveryByteThrowsEndOfData)
{
    {
        std::vector<double> vd = {1.0, 2.0};
        CmIStream s;
        WriteVectorOfDATA(s, vd);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<double> v;
                                     ReadVectorOfDATA(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        std::vector<std::vector<double>> vvd = {{1.0}, {}, {2.0, 3.0}};
        CmIStream s;
        WriteVectorOfVectorOfDATA(s, vvd);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<std::vector<double>> v;
                                     ReadVectorOfVectorOfDATA(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        std::vector<std::vector<int>> vvi = {{1, 2}, {3}};
        CmIStream s;
        WriteVectorOfVectorOfINTG(s, vvi);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<std::vector<int>> v;
                                     ReadVectorOfVectorOfINTG(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        std::vector<std::vector<bool>> vvb = {{true, false}, {}, {true}};
        CmIStream s;
        WriteVectorOfVectorOfBool(s, vvb);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<std::vector<bool>> v;
                                     ReadVectorOfVectorOfBool(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        std::vector<matrix<double>> vmd = {mNumbered(3, 2), mNumbered(1, 1)};
        CmIStream s;
        WriteVectorOfMatrixDATA(s, vmd);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<matrix<double>> v;
                                     ReadVectorOfMatrixDATA(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        std::vector<matrix<int>> vmi = {mNumberedInt(2, 2)};
        CmIStream s;
        WriteVectorOfMatrixINTG(s, vmi);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<matrix<int>> v;
                                     ReadVectorOfMatrixINTG(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        std::vector<std::vector<matrix<double>>> vvmd = {{mNumbered(2, 2)}, {}};
        CmIStream s;
        WriteVectorOfVectorOfMatrixDATA(s, vvmd);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     std::vector<std::vector<matrix<double>>> v;
                                     ReadVectorOfVectorOfMatrixDATA(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
    {
        Smatrix<double> sm(3, 1.0);
        CmIStream s;
        WriteMatrixDATA(s, sm);
        const Bytes b = s.mGetBytes();
        EXPECT_EQ(mCutEverywhere(b,
                                 [](CmIStream& r)
                                 {
                                     Smatrix<double> v;
                                     ReadMatrixDATA(r, v);
                                 }),
                  static_cast<int>(b.size()));
    }
}
