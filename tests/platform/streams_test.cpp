// The binary streams: raw bytes and values, vectors of bool, texts, base
// layers and versioned sections with their skipping, persistent objects by
// class name with sharing, and the refusal of cut or corrupt data.
#include "qel/qelstreams.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace
{
using qeltest::Bytes;
using qeltest::mDoubleBytes;
using qeltest::mInt32Bytes;

Bytes mJoin(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes& r : parts)
        all.insert(all.end(), r.begin(), r.end());
    return all;
}

template <class F> long mReadCode(F f)
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

template <class F> long mWriteCode(F f)
{
    try
    {
        f();
    }
    catch (const CmIStreamWriteException& e)
    {
        return e.mGetCode();
    }
    return -1;
}

// A leaf: a versioned section whose second version added a text.
class CmTestLeaf : public CmPersistent
{
public:
    CmTestLeaf() { ++s_iLive; }
    CmTestLeaf(const CmTestLeaf&) = delete;
    CmTestLeaf& operator=(const CmTestLeaf&) = delete;
    ~CmTestLeaf() override { --s_iLive; }
    CmRuntimeClass* mGetRuntimeClass() const override { return &s_class; }
    static CmPersistent* mCreate() { return new CmTestLeaf; }

    void mRead(CmIStream& rStream) override
    {
        mReadBegin(rStream);
        rStream.mReadValue(m_iValue);
        rStream.mReadValue(m_dValue);
        rStream.mReadValue(m_bFlag);
        rStream.mReadVector(m_vbBits);
        m_sNote.clear();
        if (mGetVersion() > 1)
        {
            mReadBeginNewVersion(rStream);
            rStream.mReadString(m_sNote);
        }
        mReadEnd(rStream);
    }

    void mWrite(CmIStream& rStream) override
    {
        mWriteBegin(rStream);
        rStream.mWriteValue(m_iValue);
        rStream.mWriteValue(m_dValue);
        rStream.mWriteValue(m_bFlag);
        rStream.mWriteVector(m_vbBits);
        if (s_bWriteSecondVersion)
        {
            mWriteBeginNewVersion(rStream);
            rStream.mWriteString(m_sNote);
        }
        mWriteEnd(rStream);
    }

    int m_iValue = 0;
    double m_dValue = 0.0;
    bool m_bFlag = false;
    std::vector<bool> m_vbBits;
    std::string m_sNote;

    static int s_iLive;
    static bool s_bWriteSecondVersion;
    static CmRuntimeClass s_class;
};
int CmTestLeaf::s_iLive = 0;
bool CmTestLeaf::s_bWriteSecondVersion = true;
CmRuntimeClass CmTestLeaf::s_class("CmTestLeaf", &CmTestLeaf::mCreate, 501);

// A branch owns the child it holds; a base layer with version and skip mark.
class CmTestBranch : public CmPersistent
{
public:
    CmTestBranch() { ++s_iLive; }
    CmTestBranch(const CmTestBranch&) = delete;
    CmTestBranch& operator=(const CmTestBranch&) = delete;
    ~CmTestBranch() override
    {
        delete m_pChild;
        --s_iLive;
    }
    CmRuntimeClass* mGetRuntimeClass() const override { return &s_class; }
    static CmPersistent* mCreate() { return new CmTestBranch; }

    void mRead(CmIStream& rStream) override
    {
        m_iReadVersion = rStream.mReadBaseVersion();
        rStream.mRead(&m_dWeight, 8, nullptr, 0);
        delete m_pChild;
        m_pChild = nullptr;
        m_pChild = rStream.mReadObjectShared();
        rStream.mReadSkipBytes(true);
    }

    void mWrite(CmIStream& rStream) override
    {
        rStream.mWriteBaseVersion(1);
        rStream.mWrite(&m_dWeight, 8, nullptr, 0);
        rStream.mWriteObjectShared(m_pChild);
        rStream.mWriteSkipBytes(0);
    }

    double m_dWeight = 0.0;
    CmPersistent* m_pChild = nullptr;
    int m_iReadVersion = 0;

    static int s_iLive;
    static CmRuntimeClass s_class;
};
int CmTestBranch::s_iLive = 0;
CmRuntimeClass CmTestBranch::s_class("CmTestBranch", &CmTestBranch::mCreate, 502);

// A link that does not own what it points to, for cycles.
class CmTestLink : public CmPersistent
{
public:
    CmRuntimeClass* mGetRuntimeClass() const override { return &s_class; }
    static CmPersistent* mCreate() { return new CmTestLink; }
    void mRead(CmIStream& rStream) override
    {
        rStream.mReadValue(m_iId);
        m_pNext = rStream.mReadObjectShared();
    }
    void mWrite(CmIStream& rStream) override
    {
        rStream.mWriteValue(m_iId);
        rStream.mWriteObjectShared(m_pNext);
    }
    int m_iId = 0;
    CmPersistent* m_pNext = nullptr;
    static CmRuntimeClass s_class;
};
CmRuntimeClass CmTestLink::s_class("CmTestLink", &CmTestLink::mCreate, 503);

// A class without a registered runtime class.
class CmTestUnregistered : public CmPersistent
{
};

CmTestLeaf* mMakeLeaf(int iValue)
{
    CmTestLeaf* pLeaf = new CmTestLeaf;
    pLeaf->m_iValue = iValue;
    pLeaf->m_dValue = iValue + 0.25;
    pLeaf->m_bFlag = (iValue % 2) == 1;
    pLeaf->m_vbBits = {true, false, true, true, false, false, false, false, true};
    pLeaf->m_sNote = "note " + std::to_string(iValue);
    return pLeaf;
}

void mExpectSameLeaf(const CmTestLeaf& rA, const CmTestLeaf& rB)
{
    EXPECT_EQ(rA.m_iValue, rB.m_iValue);
    EXPECT_EQ(rA.m_dValue, rB.m_dValue);
    EXPECT_EQ(rA.m_bFlag, rB.m_bFlag);
    EXPECT_EQ(rA.m_vbBits, rB.m_vbBits);
    EXPECT_EQ(rA.m_sNote, rB.m_sNote);
}
} // namespace

// ---------------------------------------------------------------------------
// Raw bytes and values

TEST(CmIStream, RawWritesKeepTheByteOrderOfTheProcessor)
{
    CmIStream stream;
    const std::int32_t i = -123456;
    const double d = 2.5;
    unsigned long ulDone = 99;
    EXPECT_EQ(stream.mWrite(&i, 4, &ulDone, 0), 0);
    EXPECT_EQ(ulDone, 4u);
    EXPECT_EQ(stream.mWrite(&d, 8, nullptr, 0), 0);
    EXPECT_EQ(stream.mGetBytes(), mJoin({mInt32Bytes(-123456), mDoubleBytes(2.5)}));

    stream.mRewind();
    std::int32_t iBack = 0;
    double dBack = 0.0;
    EXPECT_EQ(stream.mRead(&iBack, 4, &ulDone, 0), 0);
    EXPECT_EQ(ulDone, 4u);
    stream.mRead(&dBack, 8, nullptr, 0);
    EXPECT_EQ(iBack, -123456);
    EXPECT_EQ(dBack, 2.5);
    EXPECT_EQ(stream.mGetRemaining(), 0u);
}

TEST(CmIStream, ReadPastTheEndThrowsEndOfDataAndMovesNothing)
{
    CmIStream stream(Bytes{1, 2, 3});
    std::int32_t i = 7;
    unsigned long ulDone = 99;
    try
    {
        stream.mRead(&i, 4, &ulDone, 0);
        FAIL() << "no exception";
    }
    catch (const CmIStreamReadException& e)
    {
        EXPECT_EQ(e.mGetCode(), eStreamEndOfData);
        EXPECT_STREQ(e.what(), "stream read error 1: end of data");
    }
    EXPECT_EQ(i, 7);
    EXPECT_EQ(ulDone, 0u);
    EXPECT_EQ(stream.mGetPosition(), 0u);
    unsigned char a[3] = {0, 0, 0};
    stream.mRead(a, 3, nullptr, 0);
    EXPECT_EQ(a[2], 3);
}

TEST(CmIStream, ExceptionsAreCopyableAndShareTheirBase)
{
    const CmIStreamReadException read(eStreamCorrupt);
    const CmIStreamReadException readCopy(read);
    EXPECT_EQ(readCopy.mGetCode(), eStreamCorrupt);
    EXPECT_STREQ(readCopy.what(), "stream read error 3: corrupt data");
    const CmIStreamWriteException write(42);
    const CmIStreamWriteException writeCopy(write);
    EXPECT_STREQ(writeCopy.what(), "stream write error 42: device error");
    const CmIStreamException* pBase = &writeCopy;
    EXPECT_EQ(pBase->mGetCode(), 42);
    EXPECT_STREQ(mStreamErrorText(eStreamUnknownClass), "unknown class");
}

TEST(CmIStream, BoolIsOneByteAndAnyOtherByteIsCorrupt)
{
    CmIStream stream;
    stream.mWriteValue(true);
    stream.mWriteValue(false);
    EXPECT_EQ(stream.mGetBytes(), (Bytes{1, 0}));
    stream.mRewind();
    bool b1 = false;
    bool b2 = true;
    EXPECT_EQ(stream.mReadValue(b1), 0);
    EXPECT_EQ(stream.mReadValue(b2), 0);
    EXPECT_TRUE(b1);
    EXPECT_FALSE(b2);

    CmIStream bad(Bytes{2});
    bool b = false;
    EXPECT_EQ(mReadCode([&] { bad.mReadValue(b); }), eStreamCorrupt);
}

TEST(CmIStream, IntAndDoubleValuesAreFourAndEightBytes)
{
    CmIStream stream;
    stream.mWriteValue(-5);
    stream.mWriteValue(0.125);
    EXPECT_EQ(stream.mGetBytes(), mJoin({mInt32Bytes(-5), mDoubleBytes(0.125)}));
    stream.mRewind();
    int i = 0;
    double d = 0.0;
    stream.mReadValue(i);
    stream.mReadValue(d);
    EXPECT_EQ(i, -5);
    EXPECT_EQ(d, 0.125);
}

TEST(CmIStream, VectorOfBoolPacksEightToAByteLowBitFirst)
{
    CmIStream stream;
    const std::vector<bool> vb = {true, false, true, true, false, false, false, false, true};
    stream.mWriteVector(vb);
    EXPECT_EQ(stream.mGetBytes(), mJoin({mInt32Bytes(9), Bytes{0x0D, 0x01}}));
    stream.mRewind();
    std::vector<bool> vbBack = {false};
    stream.mReadVector(vbBack);
    EXPECT_EQ(vbBack, vb);
}

TEST(CmIStream, EmptyVectorOfBoolIsFourBytesAndClearsTheTarget)
{
    CmIStream stream;
    stream.mWriteVector(std::vector<bool>());
    EXPECT_EQ(stream.mGetBytes(), mInt32Bytes(0));
    stream.mRewind();
    std::vector<bool> vb = {true, true};
    stream.mReadVector(vb);
    EXPECT_TRUE(vb.empty());
}

TEST(CmIStream, VectorOfBoolWithBadCountOrPaddingIsRefused)
{
    std::vector<bool> vb = {true};
    CmIStream huge(mJoin({mInt32Bytes(0x7fffffff), Bytes{0xff}}));
    EXPECT_EQ(mReadCode([&] { huge.mReadVector(vb); }), eStreamEndOfData);
    CmIStream negative(mJoin({mInt32Bytes(-8), Bytes{0xff}}));
    EXPECT_EQ(mReadCode([&] { negative.mReadVector(vb); }), eStreamCorrupt);
    CmIStream padding(mJoin({mInt32Bytes(3), Bytes{0x0F}}));
    EXPECT_EQ(mReadCode([&] { padding.mReadVector(vb); }), eStreamCorrupt);
    EXPECT_EQ(vb, std::vector<bool>{true});
}

TEST(CmIStream, StringIsLengthAndBytes)
{
    CmIStream stream;
    stream.mWriteString("abc");
    EXPECT_EQ(stream.mGetBytes(), mJoin({mInt32Bytes(3), Bytes{'a', 'b', 'c'}}));
    stream.mRewind();
    std::string s = "old";
    stream.mReadString(s);
    EXPECT_EQ(s, "abc");
    CmIStream huge(mJoin({mInt32Bytes(1000000), Bytes{'a'}}));
    EXPECT_EQ(mReadCode([&] { huge.mReadString(s); }), eStreamEndOfData);
    EXPECT_EQ(s, "abc");
}

// ---------------------------------------------------------------------------
// Layers and sections

TEST(CmIStream, BaseLayerRecordsVersionAndLength)
{
    CmIStream stream;
    stream.mWriteBaseVersion(3);
    stream.mWriteValue(77);
    stream.mWriteSkipBytes(0);
    stream.mWriteValue(88);
    EXPECT_EQ(stream.mGetBytes(),
              mJoin({mInt32Bytes(3), mInt32Bytes(4), mInt32Bytes(77), mInt32Bytes(88)}));

    stream.mRewind();
    EXPECT_EQ(stream.mReadBaseVersion(), 3);
    int i = 0;
    stream.mReadValue(i);
    EXPECT_EQ(i, 77);
    EXPECT_EQ(stream.mReadSkipBytes(true), 0);
    stream.mReadValue(i);
    EXPECT_EQ(i, 88);
}

TEST(CmIStream, OlderReaderSkipsWhatItDoesNotKnow)
{
    CmIStream stream;
    stream.mWriteBaseVersion(2);
    stream.mWriteValue(1);
    stream.mWriteValue(2.0);
    stream.mWriteSkipBytes(0);
    stream.mWriteValue(99);

    stream.mRewind();
    EXPECT_EQ(stream.mReadBaseVersion(), 2);
    int i = 0;
    stream.mReadValue(i);
    EXPECT_EQ(stream.mReadSkipBytes(true), 8);
    stream.mReadValue(i);
    EXPECT_EQ(i, 99);
}

TEST(CmIStream, SkipBytesWithoutSkipReportsButStays)
{
    CmIStream stream;
    stream.mWriteBaseVersion(1);
    stream.mWriteValue(5);
    stream.mWriteSkipBytes(2);
    EXPECT_EQ(stream.mGetBytes().size(), 8u + 4u + 2u);
    stream.mRewind();
    stream.mReadBaseVersion();
    EXPECT_EQ(stream.mReadSkipBytes(false), 6);
    EXPECT_EQ(stream.mGetPosition(), 8u);
}

TEST(CmIStream, NegativeExtraBytesCountAsNone)
{
    CmIStream stream;
    stream.mWriteBaseVersion(1);
    stream.mWriteSkipBytes(-5);
    EXPECT_EQ(stream.mGetBytes(), mJoin({mInt32Bytes(1), mInt32Bytes(0)}));
}

TEST(CmIStream, LayersClosedOutOfOrderAreRefused)
{
    CmIStream stream;
    EXPECT_EQ(mWriteCode([&] { stream.mWriteSkipBytes(0); }), eStreamLayerMismatch);
    CmTestLeaf leaf;
    leaf.mWriteBegin(stream);
    EXPECT_EQ(mWriteCode([&] { stream.mWriteSkipBytes(0); }), eStreamLayerMismatch);
    leaf.mWriteEnd(stream);
    EXPECT_EQ(mWriteCode([&] { leaf.mWriteEnd(stream); }), eStreamLayerMismatch);
    EXPECT_EQ(mWriteCode([&] { leaf.mWriteBeginNewVersion(stream); }), eStreamLayerMismatch);

    stream.mRewind();
    EXPECT_EQ(mReadCode([&] { stream.mReadSkipBytes(true); }), eStreamLayerMismatch);
}

TEST(CmIStream, ReadingPastTheEndOfALayerIsCorrupt)
{
    CmIStream stream;
    stream.mWriteBaseVersion(1);
    stream.mWriteValue(5);
    stream.mWriteSkipBytes(0);
    stream.mWriteValue(6);
    stream.mRewind();
    stream.mReadBaseVersion();
    double d = 0.0;
    stream.mReadValue(d);
    EXPECT_EQ(mReadCode([&] { stream.mReadSkipBytes(true); }), eStreamCorrupt);
}

TEST(CmIStream, LayerLengthBeyondTheDataIsRefused)
{
    CmIStream stream(mJoin({mInt32Bytes(1), mInt32Bytes(1000), mInt32Bytes(5)}));
    EXPECT_EQ(mReadCode([&] { stream.mReadBaseVersion(); }), eStreamEndOfData);
    CmIStream negative(mJoin({mInt32Bytes(1), mInt32Bytes(-4), mInt32Bytes(5)}));
    EXPECT_EQ(mReadCode([&] { negative.mReadBaseVersion(); }), eStreamCorrupt);
}

TEST(CmPersistent, SectionVersionCountsTheNewVersionMarks)
{
    CmIStream stream;
    CmTestLeaf::s_bWriteSecondVersion = true;
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(4));
    pLeaf->mWrite(stream);
    stream.mWriteValue(1234);
    stream.mRewind();

    CmTestLeaf back;
    EXPECT_EQ(back.mGetVersion(), 0);
    back.mRead(stream);
    EXPECT_EQ(back.mGetVersion(), 2);
    mExpectSameLeaf(back, *pLeaf);
    int i = 0;
    stream.mReadValue(i);
    EXPECT_EQ(i, 1234);
}

TEST(CmPersistent, FirstVersionStreamLeavesTheLaterFieldsUnread)
{
    CmIStream stream;
    CmTestLeaf::s_bWriteSecondVersion = false;
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(5));
    pLeaf->mWrite(stream);
    CmTestLeaf::s_bWriteSecondVersion = true;
    stream.mWriteValue(4321);
    // Section header (8), 4 + 8 + 1 bytes of values, 4 + 2 of bits.
    EXPECT_EQ(stream.mGetBytes().size(), 8u + 13u + 6u + 4u);
    stream.mRewind();

    CmTestLeaf back;
    back.m_sNote = "stale";
    back.mRead(stream);
    EXPECT_EQ(back.mGetVersion(), 1);
    EXPECT_EQ(back.m_iValue, 5);
    EXPECT_EQ(back.m_sNote, "");
    int i = 0;
    stream.mReadValue(i);
    EXPECT_EQ(i, 4321);
}

TEST(CmPersistent, OlderReaderOfANewerSectionSkipsToItsEnd)
{
    CmIStream stream;
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(6));
    pLeaf->mWrite(stream);
    stream.mWriteValue(777);
    stream.mRewind();

    CmTestLeaf reader;
    reader.mReadBegin(stream);
    int i = 0;
    stream.mReadValue(i);
    EXPECT_EQ(i, 6);
    reader.mReadEnd(stream);
    stream.mReadValue(i);
    EXPECT_EQ(i, 777);
}

TEST(CmPersistent, NewVersionMarkOnAFirstVersionSectionIsCorrupt)
{
    CmIStream stream;
    CmTestLeaf leaf;
    leaf.mWriteBegin(stream);
    leaf.mWriteEnd(stream);
    stream.mRewind();
    leaf.mReadBegin(stream);
    EXPECT_EQ(leaf.mGetVersion(), 1);
    EXPECT_EQ(mReadCode([&] { leaf.mReadBeginNewVersion(stream); }), eStreamCorrupt);
}

TEST(CmPersistent, OldFormsForwardToTheCurrentOnes)
{
    CmIStream stream;
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(8));
    pLeaf->mWrite14_1(stream);
    stream.mRewind();
    CmTestLeaf back;
    back.mRead14_1(stream);
    mExpectSameLeaf(back, *pLeaf);
}

// ---------------------------------------------------------------------------
// Runtime classes and shared objects

TEST(CmRuntimeClass, RegistersByNameWhileItLives)
{
    EXPECT_EQ(CmRuntimeClass::mFromName("CmTestLeaf"), &CmTestLeaf::s_class);
    EXPECT_EQ(CmTestLeaf::s_class.mGetSchema(), 501u);
    EXPECT_STREQ(CmTestLeaf::s_class.mGetClassName(), "CmTestLeaf");
    EXPECT_EQ(CmRuntimeClass::mFromName("CmNoSuchClass"), nullptr);
    EXPECT_EQ(CmRuntimeClass::mFromName(nullptr), nullptr);
    {
        CmRuntimeClass local("CmTestLocalClass", nullptr, 9);
        EXPECT_EQ(CmRuntimeClass::mFromName("CmTestLocalClass"), &local);
        EXPECT_EQ(local.mCreateObject(), nullptr);
    }
    EXPECT_EQ(CmRuntimeClass::mFromName("CmTestLocalClass"), nullptr);
    CmPersistent plain;
    EXPECT_EQ(plain.mGetRuntimeClass(), nullptr);
}

TEST(CmIStream, SharedObjectWrittenTwiceIsStoredOnceAndReadAsOne)
{
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(3));
    std::unique_ptr<CmTestLeaf> pOther(mMakeLeaf(10));
    CmIStream stream;
    stream.mWriteObjectShared(pLeaf.get());
    const std::size_t uFirst = stream.mGetBytes().size();
    stream.mWriteObjectShared(pLeaf.get());
    EXPECT_EQ(stream.mGetBytes().size() - uFirst, 8u);
    stream.mWriteObjectShared(nullptr);
    stream.mWriteObjectShared(pOther.get());
    // Tag, name, schema, then the section of the leaf.
    const std::size_t uLeafSection = 8u + 13u + 6u + 4u + 6u;
    EXPECT_EQ(uFirst, 4u + (4u + 10u) + 4u + uLeafSection);
    const Bytes bytes = stream.mGetBytes();
    EXPECT_EQ(Bytes(bytes.begin() + static_cast<long>(uFirst),
                    bytes.begin() + static_cast<long>(uFirst) + 12),
              mJoin({mInt32Bytes(2), mInt32Bytes(0), mInt32Bytes(0)}));

    stream.mRewind();
    const int iLiveBefore = CmTestLeaf::s_iLive;
    std::unique_ptr<CmPersistent> p1(stream.mReadObjectShared());
    CmPersistent* p2 = stream.mReadObjectShared();
    CmPersistent* p3 = stream.mReadObjectShared();
    std::unique_ptr<CmPersistent> p4(stream.mReadObjectShared());
    EXPECT_EQ(CmTestLeaf::s_iLive, iLiveBefore + 2);
    ASSERT_NE(p1, nullptr);
    EXPECT_EQ(p2, p1.get());
    EXPECT_EQ(p3, nullptr);
    ASSERT_NE(p4, nullptr);
    EXPECT_NE(p4.get(), p1.get());
    const CmTestLeaf* pBack = dynamic_cast<const CmTestLeaf*>(p1.get());
    ASSERT_NE(pBack, nullptr);
    mExpectSameLeaf(*pBack, *pLeaf);
    const CmTestLeaf* pBackOther = dynamic_cast<const CmTestLeaf*>(p4.get());
    ASSERT_NE(pBackOther, nullptr);
    mExpectSameLeaf(*pBackOther, *pOther);
}

TEST(CmIStream, CyclesOfSharedObjectsAreWrittenOnce)
{
    CmTestLink a;
    CmTestLink b;
    a.m_iId = 1;
    b.m_iId = 2;
    a.m_pNext = &b;
    b.m_pNext = &a;
    CmIStream stream;
    stream.mWriteObjectShared(&a);
    stream.mRewind();
    std::unique_ptr<CmPersistent> pA(stream.mReadObjectShared());
    CmTestLink* pLinkA = dynamic_cast<CmTestLink*>(pA.get());
    ASSERT_NE(pLinkA, nullptr);
    std::unique_ptr<CmPersistent> pB(pLinkA->m_pNext);
    CmTestLink* pLinkB = dynamic_cast<CmTestLink*>(pB.get());
    ASSERT_NE(pLinkB, nullptr);
    EXPECT_EQ(pLinkA->m_iId, 1);
    EXPECT_EQ(pLinkB->m_iId, 2);
    EXPECT_EQ(pLinkB->m_pNext, pA.get());
}

TEST(CmIStream, RewindForgetsTheSharedObjects)
{
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(1));
    CmIStream stream;
    stream.mWriteObjectShared(pLeaf.get());
    const std::size_t uOnce = stream.mGetBytes().size();
    stream.mRewind();
    stream.mWriteObjectShared(pLeaf.get());
    EXPECT_EQ(stream.mGetBytes().size(), uOnce);
}

TEST(CmIStream, UnregisteredClassCannotBeWritten)
{
    CmTestUnregistered object;
    CmIStream stream;
    EXPECT_EQ(mWriteCode([&] { stream.mWriteObjectShared(&object); }), eStreamUnregisteredClass);
}

TEST(CmIStream, UnknownClassAndOtherSchemaAreRefusedWithoutLeak)
{
    const int iLive = CmTestLeaf::s_iLive;
    CmIStream unknown;
    unknown.mWriteValue(1);
    unknown.mWriteString("CmNoSuchClass");
    unknown.mWriteValue(501);
    unknown.mRewind();
    EXPECT_EQ(mReadCode([&] { delete unknown.mReadObjectShared(); }), eStreamUnknownClass);

    CmIStream schema;
    schema.mWriteValue(1);
    schema.mWriteString("CmTestLeaf");
    schema.mWriteValue(500);
    schema.mRewind();
    EXPECT_EQ(mReadCode([&] { delete schema.mReadObjectShared(); }), eStreamSchemaMismatch);
    EXPECT_EQ(CmTestLeaf::s_iLive, iLive);
}

TEST(CmIStream, BadTagOrReferenceIsCorrupt)
{
    CmIStream tag(mInt32Bytes(9));
    EXPECT_EQ(mReadCode([&] { delete tag.mReadObjectShared(); }), eStreamCorrupt);
    CmIStream reference(mJoin({mInt32Bytes(2), mInt32Bytes(0)}));
    EXPECT_EQ(mReadCode([&] { delete reference.mReadObjectShared(); }), eStreamCorrupt);
    CmIStream negative(mJoin({mInt32Bytes(2), mInt32Bytes(-1)}));
    EXPECT_EQ(mReadCode([&] { delete negative.mReadObjectShared(); }), eStreamCorrupt);
}

TEST(CmIStream, ObjectWhoseFieldsFailIsDeletedAndCannotBeReferred)
{
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(2));
    CmIStream stream;
    stream.mWriteObjectShared(pLeaf.get());
    stream.mWriteObjectShared(pLeaf.get());
    Bytes bytes = stream.mGetBytes();
    // Tag 4, name 4 + 10, schema 4, section header 8, int 4, double 8: the
    // bool of the leaf.
    const std::size_t uBool = 42;
    ASSERT_EQ(bytes[uBool], 0);
    bytes[uBool] = 5;
    CmIStream corrupt(bytes);
    const int iLive = CmTestLeaf::s_iLive;
    EXPECT_EQ(mReadCode([&] { delete corrupt.mReadObjectShared(); }), eStreamCorrupt);
    EXPECT_EQ(CmTestLeaf::s_iLive, iLive);
    // The reference that follows the failed object reaches nothing.
    corrupt.mSetPosition(bytes.size() - 8);
    EXPECT_EQ(mReadCode([&] { delete corrupt.mReadObjectShared(); }), eStreamCorrupt);

    Bytes cutBytes = stream.mGetBytes();
    cutBytes.resize(cutBytes.size() - 11);
    CmIStream cut(cutBytes);
    EXPECT_EQ(mReadCode([&] { delete cut.mReadObjectShared(); }), eStreamEndOfData);
    EXPECT_EQ(CmTestLeaf::s_iLive, iLive);
}

TEST(CmIStream, ObjectsNestedTooDeeplyAreCorrupt)
{
    auto mChainBytes = [](int iLength)
    {
        std::vector<std::unique_ptr<CmTestLink>> vLinks;
        for (int k = 0; k < iLength; ++k)
        {
            vLinks.emplace_back(new CmTestLink);
            vLinks.back()->m_iId = k;
        }
        for (int k = 0; k + 1 < iLength; ++k)
            vLinks[static_cast<std::size_t>(k)]->m_pNext =
                vLinks[static_cast<std::size_t>(k) + 1].get();
        CmIStream stream;
        stream.mWriteObjectShared(vLinks.front().get());
        return stream.mGetBytes();
    };

    CmIStream deepest(mChainBytes(CmIStream::kMaxObjectDepth));
    CmPersistent* p = deepest.mReadObjectShared();
    int iCount = 0;
    while (p)
    {
        CmTestLink* pLink = dynamic_cast<CmTestLink*>(p);
        ASSERT_NE(pLink, nullptr);
        EXPECT_EQ(pLink->m_iId, iCount);
        ++iCount;
        p = pLink->m_pNext;
        delete pLink;
    }
    EXPECT_EQ(iCount, CmIStream::kMaxObjectDepth);

    CmIStream tooDeep(mChainBytes(CmIStream::kMaxObjectDepth + 1));
    EXPECT_EQ(mReadCode([&] { delete tooDeep.mReadObjectShared(); }), eStreamCorrupt);
}

// A stream with every kind of item, cut at every byte: each cut throws
// CmIStreamReadException, and nothing read stays alive once the reader has
// deleted what it was handed.
TEST(CmIStream, StreamCutAtEveryPositionThrowsWithoutLeak)
{
    std::unique_ptr<CmTestBranch> pBranch(new CmTestBranch);
    pBranch->m_dWeight = 0.5;
    pBranch->m_pChild = mMakeLeaf(11);
    std::unique_ptr<CmTestLeaf> pShared(mMakeLeaf(12));
    CmIStream writer;
    writer.mWriteBaseVersion(7);
    writer.mWriteObjectShared(pBranch.get());
    writer.mWriteObjectShared(pShared.get());
    writer.mWriteObjectShared(pShared.get());
    writer.mWriteObjectShared(nullptr);
    writer.mWriteVector(std::vector<bool>{true, false, true});
    writer.mWriteString("tail");
    writer.mWriteSkipBytes(0);
    const Bytes whole = writer.mGetBytes();

    const int iLeaves = CmTestLeaf::s_iLive;
    const int iBranches = CmTestBranch::s_iLive;
    auto mReadAll = [](CmIStream& rStream, std::vector<std::unique_ptr<CmPersistent>>& rvOwned)
    {
        EXPECT_EQ(rStream.mReadBaseVersion(), 7);
        std::set<CmPersistent*> seen;
        for (int k = 0; k < 4; ++k)
        {
            CmPersistent* p = rStream.mReadObjectShared();
            if (p && seen.insert(p).second)
                rvOwned.emplace_back(p);
        }
        std::vector<bool> vb;
        rStream.mReadVector(vb);
        std::string s;
        rStream.mReadString(s);
        rStream.mReadSkipBytes(true);
        return vb == std::vector<bool>{true, false, true} && s == "tail";
    };

    {
        CmIStream full(whole);
        std::vector<std::unique_ptr<CmPersistent>> vOwned;
        EXPECT_TRUE(mReadAll(full, vOwned));
        ASSERT_EQ(vOwned.size(), 2u);
        const CmTestBranch* pBack = dynamic_cast<const CmTestBranch*>(vOwned[0].get());
        ASSERT_NE(pBack, nullptr);
        EXPECT_EQ(pBack->m_dWeight, 0.5);
        EXPECT_EQ(pBack->m_iReadVersion, 1);
        const CmTestLeaf* pChild = dynamic_cast<const CmTestLeaf*>(pBack->m_pChild);
        ASSERT_NE(pChild, nullptr);
        mExpectSameLeaf(*pChild, *dynamic_cast<const CmTestLeaf*>(pBranch->m_pChild));
        EXPECT_EQ(full.mGetRemaining(), 0u);
    }
    EXPECT_EQ(CmTestLeaf::s_iLive, iLeaves);

    int iThrown = 0;
    for (std::size_t uCut = 0; uCut < whole.size(); ++uCut)
    {
        CmIStream cut(Bytes(whole.begin(), whole.begin() + static_cast<long>(uCut)));
        std::vector<std::unique_ptr<CmPersistent>> vOwned;
        try
        {
            mReadAll(cut, vOwned);
            ADD_FAILURE() << "no exception at cut " << uCut;
        }
        catch (const CmIStreamReadException& e)
        {
            ++iThrown;
            EXPECT_TRUE(e.mGetCode() == eStreamEndOfData || e.mGetCode() == eStreamCorrupt)
                << "cut " << uCut << " code " << e.mGetCode();
        }
        vOwned.clear();
        EXPECT_EQ(CmTestLeaf::s_iLive, iLeaves) << "cut " << uCut;
        EXPECT_EQ(CmTestBranch::s_iLive, iBranches) << "cut " << uCut;
    }
    EXPECT_EQ(iThrown, static_cast<int>(whole.size()));
}

// ---------------------------------------------------------------------------
// Devices

TEST(CmMemoryStreamDevice, WritingInsideOverwritesAndPositionsStayInside)
{
    CmMemoryStreamDevice device(Bytes{1, 2, 3, 4});
    EXPECT_EQ(device.mSetPosition(5), eStreamEndOfData);
    EXPECT_EQ(device.mSetPosition(1), eStreamOk);
    const unsigned char a[4] = {9, 9, 9, 9};
    unsigned long ulDone = 0;
    EXPECT_EQ(device.mWriteBytes(a, 4, &ulDone), eStreamOk);
    EXPECT_EQ(ulDone, 4u);
    EXPECT_EQ(device.mGetBytes(), (Bytes{1, 9, 9, 9, 9}));
    unsigned long ulSize = 0;
    device.mGetSize(&ulSize);
    EXPECT_EQ(ulSize, 5u);

    CmIStream stream(device);
    EXPECT_EQ(stream.mGetDevice(), &device);
    stream.mSetPosition(0);
    unsigned char b[5] = {};
    stream.mRead(b, 5, nullptr, 0);
    EXPECT_EQ(b[4], 9);
    EXPECT_EQ(mReadCode([&] { stream.mSetPosition(6); }), eStreamEndOfData);
}

TEST(CmFileStreamDevice, FileRoundTripMatchesTheMemoryBytes)
{
    const std::string sPath = ::testing::TempDir() + "qel_streams_test.bin";
    CmIStream memory;
    std::unique_ptr<CmTestLeaf> pLeaf(mMakeLeaf(21));
    {
        CmFileStreamDevice file(sPath, true);
        ASSERT_TRUE(file.mIsOpen());
        CmIStream stream(file);
        stream.mWriteBaseVersion(1);
        stream.mWriteObjectShared(pLeaf.get());
        stream.mWriteSkipBytes(0);
        memory.mWriteBaseVersion(1);
        memory.mWriteObjectShared(pLeaf.get());
        memory.mWriteSkipBytes(0);
        EXPECT_EQ(stream.mGetPosition(), memory.mGetBytes().size());
    }
    {
        CmFileStreamDevice file(sPath, false);
        ASSERT_TRUE(file.mIsOpen());
        CmIStream stream(file);
        EXPECT_TRUE(stream.mGetBytes().empty());
        EXPECT_EQ(stream.mGetRemaining(), memory.mGetBytes().size());
        EXPECT_EQ(stream.mReadBaseVersion(), 1);
        std::unique_ptr<CmPersistent> pBack(stream.mReadObjectShared());
        EXPECT_EQ(stream.mReadSkipBytes(true), 0);
        const CmTestLeaf* pBackLeaf = dynamic_cast<const CmTestLeaf*>(pBack.get());
        ASSERT_NE(pBackLeaf, nullptr);
        mExpectSameLeaf(*pBackLeaf, *pLeaf);
        int i = 0;
        EXPECT_EQ(mReadCode([&] { stream.mReadValue(i); }), eStreamEndOfData);
    }
    std::remove(sPath.c_str());
}

TEST(CmFileStreamDevice, MissingFileFailsEveryOperation)
{
    CmFileStreamDevice file(::testing::TempDir() + "no_such_dir_qel/none.bin", false);
    EXPECT_FALSE(file.mIsOpen());
    CmIStream stream(file);
    int i = 0;
    EXPECT_EQ(mReadCode([&] { stream.mReadValue(i); }), eStreamDeviceFailure);
    EXPECT_EQ(mWriteCode([&] { stream.mWriteValue(i); }), eStreamDeviceFailure);
}
