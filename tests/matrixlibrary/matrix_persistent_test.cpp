// The persistent matrices: packed storage and its index formulas, element
// access through the virtual accessors, row and column surgery with its
// messages, the order surgery of Smatrix, resize, conversions and the
// vector cast.
#include "qel/matrix.h"

#include "qel/qelmessaging.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace
{
// A matrix with element (i, j) = 10 i + j.
matrix<double> mNumbered(int m, int n)
{
    matrix<double> a(m, n, 0.0);
    for (int i = 0; i < m; ++i)
        for (int j = 0; j < n; ++j)
            a(i, j) = 10.0 * i + j;
    return a;
}

template <class F> std::string mDomainMessage(F f)
{
    try
    {
        f();
    }
    catch (const std::domain_error& e)
    {
        return e.what();
    }
    return "<no exception>";
}
} // namespace

TEST(PersistentMatrix, DefaultIsEmptyAndFilledHasRowMajorStorage)
{
    const matrix<double> empty;
    EXPECT_EQ(empty.rowCount(), 0);
    EXPECT_EQ(empty.colCount(), 0);
    EXPECT_EQ(empty.elementCount(), 0);
    EXPECT_TRUE(empty.storage().empty());

    const matrix<double> a = mNumbered(2, 3);
    EXPECT_EQ(a.elementCount(), 6);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 2, 10, 11, 12}));
    const matrix<int> b(2, 2, 7);
    EXPECT_EQ(b.storage(), (std::vector<int>{7, 7, 7, 7}));
}

TEST(PersistentMatrix, NegativeOrTooLargeOrderThrows)
{
    EXPECT_EQ(mDomainMessage([] { matrix<double> a(-1, 2, 0.0); }), "matrix order out of range");
    EXPECT_EQ(mDomainMessage([] { matrix<double> a(70000, 70000, 0.0); }),
              "matrix order out of range");
    EXPECT_EQ(mDomainMessage([] { Smatrix<double> s(-3, 0.0); }), "matrix order out of range");
    EXPECT_EQ(mDomainMessage([] { UTmatrix<double> u(50000, 0.0); }), "matrix order out of range");
}

TEST(PersistentSmatrix, PackedLowerTriangleByRows)
{
    Smatrix<double> s(3, 0.0);
    EXPECT_EQ(s.rowCount(), 3);
    EXPECT_EQ(s.colCount(), 3);
    EXPECT_EQ(s.elementCount(), 9);
    EXPECT_EQ(s.storage().size(), 6u);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j)
            s(i, j) = 10.0 * i + j;
    // (i, j) with i >= j at i(i+1)/2 + j.
    EXPECT_EQ(s.storage(), (std::vector<double>{0, 10, 11, 20, 21, 22}));
}

TEST(PersistentSmatrix, MirroredElementsShareStorage)
{
    Smatrix<double> s(3, 0.0);
    EXPECT_EQ(&s(1, 2), &s(2, 1));
    s(1, 2) = 4.5;
    EXPECT_EQ(s(2, 1), 4.5);
    s(2, 1) = -1.0;
    EXPECT_EQ(s(1, 2), -1.0);
    const Smatrix<double>& rc = s;
    EXPECT_EQ(&rc(1, 2), &rc(2, 1));
    EXPECT_EQ(s.storage()[4], -1.0);
}

TEST(PersistentUTmatrix, PackedUpperTriangleByRows)
{
    UTmatrix<double> u(3, 0.0);
    EXPECT_EQ(u.elementCount(), 9);
    EXPECT_EQ(u.storage().size(), 6u);
    for (int i = 0; i < 3; ++i)
        for (int j = i; j < 3; ++j)
            u(i, j) = 10.0 * i + j;
    // (i, j) with j >= i at n i - i(i+1)/2 + j.
    EXPECT_EQ(u.storage(), (std::vector<double>{0, 1, 2, 11, 12, 22}));
}

TEST(PersistentUTmatrix, BelowDiagonalReadsZeroThroughDummy)
{
    UTmatrix<double> u(3, 5.0);
    const UTmatrix<double>& rc = u;
    EXPECT_EQ(rc(2, 1), 0.0);
    EXPECT_EQ(u(2, 1), 0.0);
    // The writing accessor is the same code: a write below the diagonal
    // lands in dummy_, which every later read below the diagonal sees.
    u(2, 1) = 3.0;
    EXPECT_EQ(rc(1, 0), 3.0);
    EXPECT_EQ(u.storage(), std::vector<double>(6, 5.0));
}

TEST(PersistentMatrix, AccessorsNeverLeaveTheStorage)
{
    matrix<double> a = mNumbered(2, 3);
    // Inside the storage the pair is not checked: (0, 4) is element 4.
    EXPECT_EQ(a(0, 4), 11.0);
    EXPECT_EQ(a(5, 5), 0.0);
    EXPECT_EQ(a(-1, 0), 0.0);
    Smatrix<double> s(2, 1.0);
    EXPECT_EQ(s(7, 7), 0.0);
    UTmatrix<double> u(2, 1.0);
    EXPECT_EQ(u(1, 9), 0.0);
}

TEST(PersistentMatrix, VirtualAccessRunsTheSameRoutineOnEveryKind)
{
    Smatrix<double> s(2, 0.0);
    s(0, 0) = 1.0;
    s(1, 0) = 2.0;
    s(1, 1) = 3.0;
    const matrix<double>& rBase = s;
    EXPECT_EQ(rBase(0, 1), 2.0);
    const matrix<double> dense(rBase);
    EXPECT_EQ(dense.storage(), (std::vector<double>{1, 2, 2, 3}));

    UTmatrix<double> u(2, 0.0);
    u(0, 0) = 1.0;
    u(0, 1) = 2.0;
    u(1, 1) = 3.0;
    const matrix<double> denseU(u);
    EXPECT_EQ(denseU.storage(), (std::vector<double>{1, 2, 0, 3}));
}

TEST(PersistentMatrix, RemoveRowOfOneByThreeLeavesZeroByZero)
{
    matrix<double> a = mNumbered(1, 3);
    a.removeRow(0);
    EXPECT_EQ(a.rowCount(), 0);
    EXPECT_EQ(a.colCount(), 0);
    EXPECT_EQ(a.elementCount(), 0);
    EXPECT_TRUE(a.storage().empty());
}

TEST(PersistentMatrix, RemoveColumnOfThreeByOneLeavesZeroByZero)
{
    matrix<double> a = mNumbered(3, 1);
    a.removeColumn(0);
    EXPECT_EQ(a.rowCount(), 0);
    EXPECT_EQ(a.colCount(), 0);
    EXPECT_EQ(a.elementCount(), 0);
    EXPECT_TRUE(a.storage().empty());
}

TEST(PersistentMatrix, RemoveRowAndColumnKeepRowMajorOrder)
{
    matrix<double> a = mNumbered(3, 3);
    a.removeRow(1);
    EXPECT_EQ(a.rowCount(), 2);
    EXPECT_EQ(a.elementCount(), 6);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 2, 20, 21, 22}));
    a.removeColumn(0);
    EXPECT_EQ(a.colCount(), 2);
    EXPECT_EQ(a.elementCount(), 4);
    EXPECT_EQ(a.storage(), (std::vector<double>{1, 2, 21, 22}));
}

TEST(PersistentMatrix, RemoveOutsideTheMatrixThrows)
{
    matrix<double> a = mNumbered(2, 2);
    EXPECT_EQ(mDomainMessage([&] { a.removeRow(2); }), "matrix access row out of range");
    EXPECT_EQ(mDomainMessage([&] { a.removeColumn(-1); }), "matrix access column out of range");
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 10, 11}));
}

TEST(PersistentMatrix, AddRowInsertsAtRowStart)
{
    matrix<double> a = mNumbered(2, 2);
    a.addRow(1, std::vector<double>{7.0, 8.0});
    EXPECT_EQ(a.rowCount(), 3);
    EXPECT_EQ(a.elementCount(), 6);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 7, 8, 10, 11}));
    a.addRow(3, 5.0);
    EXPECT_EQ(a.rowCount(), 4);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 7, 8, 10, 11, 5, 5}));
}

TEST(PersistentMatrix, AddRowWithWrongSizeThrowsBeforeReserving)
{
    matrix<double> a = mNumbered(2, 2);
    const std::size_t uCapacity = a.storage().capacity();
    EXPECT_EQ(mDomainMessage(
                  [&] {
                      a.addRow(0, std::vector<double>{1.0, 2.0, 3.0});
                  }),
              "addRow\trow vector must be of same order");
    EXPECT_EQ(a.rowCount(), 2);
    EXPECT_EQ(a.colCount(), 2);
    EXPECT_EQ(a.elementCount(), 4);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 10, 11}));
    EXPECT_EQ(a.storage().capacity(), uCapacity);
}

TEST(PersistentMatrix, AddColInsertsOneElementPerRow)
{
    matrix<double> a = mNumbered(2, 2);
    a.addCol(1, std::vector<double>{7.0, 8.0});
    EXPECT_EQ(a.colCount(), 3);
    EXPECT_EQ(a.elementCount(), 6);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 7, 1, 10, 8, 11}));
    a.addCol(3, -1.0);
    EXPECT_EQ(a.colCount(), 4);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 7, 1, -1, 10, 8, 11, -1}));
    a.addCol(0, 9.0);
    EXPECT_EQ(a.storage(), (std::vector<double>{9, 0, 7, 1, -1, 9, 10, 8, 11, -1}));
}

TEST(PersistentMatrix, AddColWithWrongSizeThrows)
{
    matrix<double> a = mNumbered(2, 2);
    EXPECT_EQ(mDomainMessage([&] { a.addCol(0, std::vector<double>{1.0}); }),
              "addCol column vector must be of same order");
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 10, 11}));
    EXPECT_EQ(mDomainMessage([&] { a.addCol(3, 1.0); }), "matrix access column out of range");
    EXPECT_EQ(mDomainMessage([&] { a.addRow(-1, 1.0); }), "matrix access row out of range");
}

TEST(PersistentMatrix, WithoutRowAndWithoutColumnCopyTheRest)
{
    const matrix<double> a = mNumbered(3, 3);
    const matrix<double> r = a.withoutRow(1);
    EXPECT_EQ(r.rowCount(), 2);
    EXPECT_EQ(r.storage(), (std::vector<double>{0, 1, 2, 20, 21, 22}));
    const matrix<double> c = a.withoutColumn(2);
    EXPECT_EQ(c.colCount(), 2);
    EXPECT_EQ(c.storage(), (std::vector<double>{0, 1, 10, 11, 20, 21}));
    // An index outside skips nothing; the rows that fit are copied.
    const matrix<double> outside = a.withoutRow(5);
    EXPECT_EQ(outside.storage(), (std::vector<double>{0, 1, 2, 10, 11, 12}));
    const matrix<double> none = matrix<double>().withoutRow(0);
    EXPECT_EQ(none.rowCount(), 0);
}

TEST(PersistentMatrix, WithoutRowOfSmatrixIsDense)
{
    Smatrix<double> s(3, 0.0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j)
            s(i, j) = 10.0 * i + j;
    const matrix<double> r = s.withoutRow(0);
    EXPECT_EQ(r.rowCount(), 2);
    EXPECT_EQ(r.colCount(), 3);
    EXPECT_EQ(r.storage(), (std::vector<double>{10, 11, 21, 20, 21, 22}));
}

TEST(PersistentSmatrix, InPlaceSurgeryIsNotImplementedAndReports)
{
    Smatrix<double> s(2, 1.0);
    CmAssertCapture capture;
    matrix<double>& rBase = s;
    EXPECT_EQ(&rBase.removeRow(0), &rBase);
    EXPECT_EQ(&rBase.removeColumn(0), &rBase);
    rBase.addRow(0, std::vector<double>{1.0, 2.0});
    rBase.addRow(0, 1.0);
    rBase.addCol(0, std::vector<double>{1.0, 2.0});
    rBase.addCol(0, 1.0);
    ASSERT_EQ(capture.mGetCount(), 6);
    EXPECT_EQ(capture.mGetTexts()[0], "! _NT(\"Not implemented.\")");
    EXPECT_EQ(capture.mGetTexts()[1], "! _NT(\"Not implemented.\")");
    for (int k = 2; k < 6; ++k)
        EXPECT_EQ(capture.mGetTexts()[static_cast<std::size_t>(k)],
                  "! _NT( \"Not implemented.\" )");
    EXPECT_EQ(s.rowCount(), 2);
    EXPECT_EQ(s.storage(), std::vector<double>(3, 1.0));
}

TEST(PersistentSmatrix, WithoutRowAndColumnLeavesTheSourceAlone)
{
    Smatrix<double> s(4, 0.0);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j <= i; ++j)
            s(i, j) = 10.0 * i + j;
    const Smatrix<double> r = s.withoutRowAndColumn(1);
    EXPECT_EQ(r.rowCount(), 3);
    EXPECT_EQ(r.elementCount(), 9);
    EXPECT_EQ(r.storage(), (std::vector<double>{0, 20, 22, 30, 32, 33}));
    EXPECT_EQ(s.rowCount(), 4);
    EXPECT_EQ(s.storage().size(), 10u);
    EXPECT_EQ(s.withoutRowAndColumn(3).storage(), (std::vector<double>{0, 10, 11, 20, 21, 22}));
    EXPECT_EQ(s.withoutRowAndColumn(0).storage(), (std::vector<double>{11, 21, 22, 31, 32, 33}));
    EXPECT_EQ(mDomainMessage([&] { s.withoutRowAndColumn(4); }), "matrix access row out of range");
}

TEST(PersistentSmatrix, InsertRowAndColumnFillsWithOneValue)
{
    Smatrix<double> s(3, 0.0);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j <= i; ++j)
            s(i, j) = 10.0 * i + j;
    s.insertRowAndColumn(1, -1.0);
    EXPECT_EQ(s.rowCount(), 4);
    EXPECT_EQ(s.colCount(), 4);
    EXPECT_EQ(s.elementCount(), 16);
    EXPECT_EQ(s.storage(), (std::vector<double>{0, -1, -1, 10, -1, 11, 20, -1, 21, 22}));
    // Removing it again gives the original.
    EXPECT_EQ(s.withoutRowAndColumn(1).storage(), (std::vector<double>{0, 10, 11, 20, 21, 22}));

    Smatrix<double> t(2, 1.0);
    t.insertRowAndColumn(2, 0.0);
    EXPECT_EQ(t.storage(), (std::vector<double>{1, 1, 1, 0, 0, 0}));
    Smatrix<double> e;
    e.insertRowAndColumn(0, 5.0);
    EXPECT_EQ(e.storage(), (std::vector<double>{5}));
    EXPECT_EQ(mDomainMessage([&] { t.insertRowAndColumn(4, 0.0); }),
              "matrix access row out of range");
    EXPECT_EQ(mDomainMessage([&] { t.insertRowAndColumn(-1, 0.0); }),
              "matrix access row out of range");
    EXPECT_EQ(t.rowCount(), 3);
}

TEST(PersistentMatrix, ResizeToTheSameOrderKeepsTheContents)
{
    matrix<double> a = mNumbered(2, 2);
    a.resize(2, 2, 9.0);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 1, 10, 11}));
    a.resize(1, 3, 9.0);
    EXPECT_EQ(a.rowCount(), 1);
    EXPECT_EQ(a.colCount(), 3);
    EXPECT_EQ(a.elementCount(), 3);
    EXPECT_EQ(a.storage(), (std::vector<double>{9, 9, 9}));

    Smatrix<double> s(2, 1.0);
    s.resize(2, 4.0);
    EXPECT_EQ(s.storage(), std::vector<double>(3, 1.0));
    s.resize(3, 4.0);
    EXPECT_EQ(s.elementCount(), 9);
    EXPECT_EQ(s.storage(), std::vector<double>(6, 4.0));
    UTmatrix<double> u(2, 1.0);
    u.resize(2, 4.0);
    EXPECT_EQ(u.storage(), std::vector<double>(3, 1.0));
    u.resize(1, 4.0);
    EXPECT_EQ(u.storage(), std::vector<double>(1, 4.0));
}

TEST(PersistentSmatrix, AssignmentCopiesOrderAndStorage)
{
    Smatrix<double> s(2, 3.0);
    Smatrix<double> t(4, 0.0);
    t = s;
    EXPECT_EQ(t.rowCount(), 2);
    EXPECT_EQ(t.elementCount(), 4);
    EXPECT_EQ(t.storage(), std::vector<double>(3, 3.0));
    Smatrix<double>& rSelf = t;
    t = rSelf;
    EXPECT_EQ(t.storage(), std::vector<double>(3, 3.0));
    const Smatrix<double> copy(s);
    EXPECT_EQ(copy.storage(), s.storage());
    EXPECT_EQ(copy.elementCount(), 4);

    UTmatrix<double> u(2, 2.0);
    UTmatrix<double> v;
    v = u;
    EXPECT_EQ(v.rowCount(), 2);
    EXPECT_EQ(v.storage(), std::vector<double>(3, 2.0));
}

TEST(PersistentSmatrix, ConversionsWithUTmatrixUseTheUpperTriangle)
{
    UTmatrix<double> u(3, 0.0);
    for (int i = 0; i < 3; ++i)
        for (int j = i; j < 3; ++j)
            u(i, j) = 10.0 * i + j;
    const Smatrix<double> s(u);
    EXPECT_EQ(s(0, 2), 2.0);
    EXPECT_EQ(s(2, 0), 2.0);
    EXPECT_EQ(s(1, 2), 12.0);
    EXPECT_EQ(s.storage(), (std::vector<double>{0, 1, 11, 2, 12, 22}));
    const UTmatrix<double> back(s);
    EXPECT_EQ(back.storage(), u.storage());
}

TEST(PersistentMatrix, TransposeIsDenseThroughTheAccessors)
{
    const matrix<double> a = mNumbered(2, 3);
    const matrix<double> t = a.transpose();
    EXPECT_EQ(t.rowCount(), 3);
    EXPECT_EQ(t.colCount(), 2);
    EXPECT_EQ(t.storage(), (std::vector<double>{0, 10, 1, 11, 2, 12}));
    UTmatrix<double> u(2, 1.0);
    const matrix<double> tu = u.transpose();
    EXPECT_EQ(tu.storage(), (std::vector<double>{1, 0, 1, 1}));
}

TEST(PersistentMatrix, VectorCastNeedsOneColumn)
{
    const matrix<double> column = mNumbered(3, 1);
    EXPECT_EQ(static_cast<std::vector<double>>(column), (std::vector<double>{0, 10, 20}));
    const matrix<double> row = mNumbered(1, 3);
    EXPECT_EQ(mDomainMessage([&] { const std::vector<double> v(row); }),
              "vector cast: result not a vector");
    const matrix<int> ints(2, 1, 4);
    EXPECT_EQ(static_cast<std::vector<int>>(ints), (std::vector<int>{4, 4}));
}

TEST(PersistentMatrix, AssignmentIsADenseCopy)
{
    Smatrix<double> s(2, 0.0);
    s(1, 0) = 5.0;
    matrix<double> a = mNumbered(3, 3);
    a = s;
    EXPECT_EQ(a.rowCount(), 2);
    EXPECT_EQ(a.elementCount(), 4);
    EXPECT_EQ(a.storage(), (std::vector<double>{0, 5, 5, 0}));
}

TEST(PersistentUTmatrix, InheritedSurgeryStaysInsideThePackedStorage)
{
    // The inherited surgery treats the packed storage as dense.
    UTmatrix<double> u(3, 1.0);
    u.removeRow(2);
    EXPECT_EQ(u.rowCount(), 2);
    EXPECT_EQ(u.colCount(), 3);
    EXPECT_EQ(u.elementCount(), 6);
    EXPECT_EQ(u.storage().size(), 6u);

    UTmatrix<double> v(3, 1.0);
    v.removeRow(0);
    EXPECT_EQ(v.rowCount(), 2);
    EXPECT_EQ(v.storage().size(), 3u);
    // Row 1 now computes positions 3 and 4, past the three stored elements:
    // the accessor hands out dummy_ instead.
    for (int j = 0; j < 3; ++j)
    {
        EXPECT_EQ(v(0, j), 1.0) << j;
        EXPECT_EQ(v(1, j), 0.0) << j;
    }
    v.addCol(0, 2.0);
    EXPECT_EQ(v.colCount(), 4);
    EXPECT_EQ(v.storage().size(), 5u);
}
