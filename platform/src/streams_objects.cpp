// Persistent objects on the binary streams: the registry of runtime classes
// by name, the versioned sections of CmPersistent, and objects reached
// through several pointers, stored once.  Byte layouts: docs/STREAMS.md.
#include "qel/qelstreams.h"

#include <cstdint>
#include <string>

namespace
{
// Built at first use, so that classes registered by static initialisers of
// any library find it ready whatever the order of initialisation.
std::map<std::string, CmRuntimeClass*>& mRegistry()
{
    static std::map<std::string, CmRuntimeClass*> s_mapClasses;
    return s_mapClasses;
}

// The tags in front of an object written by mWriteObjectShared.
enum : std::int32_t
{
    eTagNull = 0,
    eTagNewObject = 1,
    eTagReference = 2
};
} // namespace

// ---------------------------------------------------------------------------
// CmRuntimeClass

CmRuntimeClass::CmRuntimeClass(const char* pszName, PFnCreate pfnCreate, unsigned int uSchema)
    : m_sName(pszName ? pszName : ""), m_pfnCreate(pfnCreate), m_uSchema(uSchema)
{
    mRegistry()[m_sName] = this;
}

CmRuntimeClass::~CmRuntimeClass()
{
    std::map<std::string, CmRuntimeClass*>& rRegistry = mRegistry();
    const auto it = rRegistry.find(m_sName);
    if (it != rRegistry.end() && it->second == this)
        rRegistry.erase(it);
}

CmPersistent* CmRuntimeClass::mCreateObject() const
{
    return m_pfnCreate ? m_pfnCreate() : nullptr;
}

CmRuntimeClass* CmRuntimeClass::mFromName(const char* pszName)
{
    if (!pszName)
        return nullptr;
    std::map<std::string, CmRuntimeClass*>& rRegistry = mRegistry();
    const auto it = rRegistry.find(pszName);
    return it == rRegistry.end() ? nullptr : it->second;
}

// ---------------------------------------------------------------------------
// CmPersistent

CmPersistent::CmPersistent() = default;
CmPersistent::CmPersistent(const CmPersistent& rOther) = default;
CmPersistent& CmPersistent::operator=(const CmPersistent& rOther) = default;
CmPersistent::~CmPersistent() = default;

CmRuntimeClass* CmPersistent::mGetRuntimeClass() const
{
    return nullptr;
}

void CmPersistent::mRead(CmIStream& /*rStream*/) {}

void CmPersistent::mRead14_1(CmIStream& rStream)
{
    mRead(rStream);
}

void CmPersistent::mWrite(CmIStream& /*rStream*/) {}

void CmPersistent::mWrite14_1(CmIStream& rStream)
{
    mWrite(rStream);
}

void CmPersistent::mWriteBegin(CmIStream& rStream)
{
    rStream.mWriteSectionBegin();
}

void CmPersistent::mWriteBeginNewVersion(CmIStream& rStream)
{
    rStream.mWriteSectionNewVersion();
}

void CmPersistent::mWriteEnd(CmIStream& rStream)
{
    rStream.mWriteSectionEnd();
}

void CmPersistent::mReadBegin(CmIStream& rStream)
{
    m_iVersion = rStream.mReadSectionBegin();
}

void CmPersistent::mReadBeginNewVersion(CmIStream& rStream)
{
    rStream.mReadSectionNewVersion();
}

void CmPersistent::mReadEnd(CmIStream& rStream)
{
    rStream.mReadSectionEnd();
}

// ---------------------------------------------------------------------------
// Shared objects

void CmIStream::mResetSharedObjects()
{
    m_mapWritten.clear();
    m_vpRead.clear();
}

void CmIStream::mWriteObjectShared(CmPersistent* pObject)
{
    if (!pObject)
    {
        const std::int32_t iTag = eTagNull;
        mWrite(&iTag, 4, nullptr, 0);
        return;
    }
    const auto it = m_mapWritten.find(pObject);
    if (it != m_mapWritten.end())
    {
        const std::int32_t aiReference[2] = {eTagReference, it->second};
        mWrite(aiReference, 8, nullptr, 0);
        return;
    }
    const CmRuntimeClass* pClass = pObject->mGetRuntimeClass();
    if (!pClass || CmRuntimeClass::mFromName(pClass->mGetClassName()) != pClass)
        throw CmIStreamWriteException(eStreamUnregisteredClass);
    const std::int32_t iTag = eTagNewObject;
    mWrite(&iTag, 4, nullptr, 0);
    mWriteString(pClass->mGetClassName());
    const std::uint32_t uSchema = pClass->mGetSchema();
    mWrite(&uSchema, 4, nullptr, 0);
    // The index is taken before the fields, so that an object that refers
    // back to itself, directly or through others, is written once.
    const int iIndex = static_cast<int>(m_mapWritten.size());
    m_mapWritten[pObject] = iIndex;
    pObject->mWrite(*this);
}

CmPersistent* CmIStream::mReadObjectShared()
{
    std::int32_t iTag = 0;
    mRead(&iTag, 4, nullptr, 0);
    if (iTag == eTagNull)
        return nullptr;
    if (iTag == eTagReference)
    {
        std::int32_t iIndex = 0;
        mRead(&iIndex, 4, nullptr, 0);
        if (iIndex < 0 || static_cast<std::size_t>(iIndex) >= m_vpRead.size() ||
            !m_vpRead[static_cast<std::size_t>(iIndex)])
            throw CmIStreamReadException(eStreamCorrupt);
        return m_vpRead[static_cast<std::size_t>(iIndex)];
    }
    if (iTag != eTagNewObject || m_iObjectDepth >= kMaxObjectDepth)
        throw CmIStreamReadException(eStreamCorrupt);

    std::string sName;
    mReadString(sName);
    std::uint32_t uSchema = 0;
    mRead(&uSchema, 4, nullptr, 0);
    const CmRuntimeClass* pClass = CmRuntimeClass::mFromName(sName.c_str());
    if (!pClass)
        throw CmIStreamReadException(eStreamUnknownClass);
    if (pClass->mGetSchema() != uSchema)
        throw CmIStreamReadException(eStreamSchemaMismatch);
    std::unique_ptr<CmPersistent> upObject(pClass->mCreateObject());
    if (!upObject)
        throw CmIStreamReadException(eStreamUnknownClass);

    // Should the fields throw, the half-read object is deleted by upObject,
    // and its slot and those of the objects read inside it are cleared, so
    // that no later reference reaches them.  The nesting depth is restored
    // either way.
    struct SForgetOnThrow
    {
        std::vector<CmPersistent*>& rvpRead;
        std::size_t uIndex;
        int& riDepth;
        bool bDone;
        ~SForgetOnThrow()
        {
            --riDepth;
            if (!bDone)
                for (std::size_t u = uIndex; u < rvpRead.size(); ++u)
                    rvpRead[u] = nullptr;
        }
    } guard{m_vpRead, m_vpRead.size(), m_iObjectDepth, false};
    ++m_iObjectDepth;
    m_vpRead.push_back(upObject.get());
    upObject->mRead(*this);
    guard.bDone = true;
    return upObject.release();
}
