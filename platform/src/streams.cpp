// The stream exceptions, the in-memory and file devices, and the byte-level
// operations of CmIStream: raw bytes, single values, vectors of bool, texts
// and the length-marked layers.  Byte layouts: docs/STREAMS.md.
#include "qel/qelstreams.h"

#include <cstdint>
#include <cstring>
#include <limits>

// ---------------------------------------------------------------------------
// Exceptions

const char* mStreamErrorText(long lCode)
{
    switch (lCode)
    {
    case eStreamOk:
        return "no error";
    case eStreamEndOfData:
        return "end of data";
    case eStreamDeviceFailure:
        return "device failure";
    case eStreamCorrupt:
        return "corrupt data";
    case eStreamUnknownClass:
        return "unknown class";
    case eStreamSchemaMismatch:
        return "schema mismatch";
    case eStreamLayerMismatch:
        return "layer mismatch";
    case eStreamNoDevice:
        return "no device";
    case eStreamTooLarge:
        return "too large";
    case eStreamUnregisteredClass:
        return "unregistered class";
    default:
        return "device error";
    }
}

CmIStreamException::CmIStreamException(long lCode) : CmIStreamException(lCode, "stream error") {}

CmIStreamException::CmIStreamException(long lCode, const char* pszKind)
    : m_lCode(lCode),
      m_sWhat(std::string(pszKind) + " " + std::to_string(lCode) + ": " + mStreamErrorText(lCode))
{
}

CmIStreamException::CmIStreamException(const CmIStreamException& rOther) = default;
CmIStreamException& CmIStreamException::operator=(const CmIStreamException& rOther) = default;
CmIStreamException::~CmIStreamException() = default;

const char* CmIStreamException::what() const noexcept
{
    return m_sWhat.c_str();
}

CmIStreamReadException::CmIStreamReadException(long lCode)
    : CmIStreamException(lCode, "stream read error")
{
}
CmIStreamReadException::CmIStreamReadException(const CmIStreamReadException& rOther) = default;
CmIStreamReadException::~CmIStreamReadException() = default;

CmIStreamWriteException::CmIStreamWriteException(long lCode)
    : CmIStreamException(lCode, "stream write error")
{
}
CmIStreamWriteException::CmIStreamWriteException(const CmIStreamWriteException& rOther) = default;
CmIStreamWriteException::~CmIStreamWriteException() = default;

// ---------------------------------------------------------------------------
// Devices

CmStreamDevice::~CmStreamDevice() = default;

CmMemoryStreamDevice::CmMemoryStreamDevice() = default;

CmMemoryStreamDevice::CmMemoryStreamDevice(const std::vector<unsigned char>& rvBytes)
    : m_vBytes(rvBytes)
{
}

CmMemoryStreamDevice::~CmMemoryStreamDevice() = default;

void CmMemoryStreamDevice::mSetBytes(const std::vector<unsigned char>& rvBytes)
{
    m_vBytes = rvBytes;
    m_ulPosition = 0;
}

long CmMemoryStreamDevice::mGetPosition(unsigned long* pulPosition) const
{
    if (pulPosition)
        *pulPosition = m_ulPosition;
    return eStreamOk;
}

long CmMemoryStreamDevice::mSetPosition(unsigned long ulPosition)
{
    if (ulPosition > m_vBytes.size())
        return eStreamEndOfData;
    m_ulPosition = ulPosition;
    return eStreamOk;
}

long CmMemoryStreamDevice::mReadBytes(void* pBuffer, unsigned long ulBytes, unsigned long* pulDone)
{
    if (pulDone)
        *pulDone = 0;
    if (ulBytes > m_vBytes.size() - m_ulPosition)
        return eStreamEndOfData;
    if (ulBytes > 0)
        std::memcpy(pBuffer, m_vBytes.data() + m_ulPosition, ulBytes);
    m_ulPosition += ulBytes;
    if (pulDone)
        *pulDone = ulBytes;
    return eStreamOk;
}

long CmMemoryStreamDevice::mWriteBytes(const void* pBuffer, unsigned long ulBytes,
                                       unsigned long* pulDone)
{
    if (pulDone)
        *pulDone = 0;
    if (ulBytes == 0)
        return eStreamOk;
    if (ulBytes > m_vBytes.max_size() - m_ulPosition)
        return eStreamTooLarge;
    const unsigned char* pSource = static_cast<const unsigned char*>(pBuffer);
    const unsigned long ulEnd = m_ulPosition + ulBytes;
    if (ulEnd > m_vBytes.size())
        m_vBytes.resize(ulEnd);
    std::memcpy(m_vBytes.data() + m_ulPosition, pSource, ulBytes);
    m_ulPosition = ulEnd;
    if (pulDone)
        *pulDone = ulBytes;
    return eStreamOk;
}

long CmMemoryStreamDevice::mGetSize(unsigned long* pulSize) const
{
    if (pulSize)
        *pulSize = m_vBytes.size();
    return eStreamOk;
}

CmFileStreamDevice::CmFileStreamDevice(const std::string& rsPath, bool bWrite)
    : m_pFile(std::fopen(rsPath.c_str(), bWrite ? "w+b" : "rb"))
{
}

CmFileStreamDevice::~CmFileStreamDevice()
{
    if (m_pFile)
        std::fclose(m_pFile);
}

long CmFileStreamDevice::mGetPosition(unsigned long* pulPosition) const
{
    if (!m_pFile)
        return eStreamDeviceFailure;
    const long lPos = std::ftell(m_pFile);
    if (lPos < 0)
        return eStreamDeviceFailure;
    if (pulPosition)
        *pulPosition = static_cast<unsigned long>(lPos);
    return eStreamOk;
}

long CmFileStreamDevice::mSetPosition(unsigned long ulPosition)
{
    unsigned long ulSize = 0;
    const long lRc = mGetSize(&ulSize);
    if (lRc != eStreamOk)
        return lRc;
    if (ulPosition > ulSize)
        return eStreamEndOfData;
    if (std::fseek(m_pFile, static_cast<long>(ulPosition), SEEK_SET) != 0)
        return eStreamDeviceFailure;
    return eStreamOk;
}

long CmFileStreamDevice::mReadBytes(void* pBuffer, unsigned long ulBytes, unsigned long* pulDone)
{
    if (pulDone)
        *pulDone = 0;
    unsigned long ulPos = 0;
    unsigned long ulSize = 0;
    long lRc = mGetPosition(&ulPos);
    if (lRc == eStreamOk)
        lRc = mGetSize(&ulSize);
    if (lRc != eStreamOk)
        return lRc;
    if (ulBytes > ulSize - ulPos)
        return eStreamEndOfData;
    if (ulBytes == 0)
        return eStreamOk;
    // A stream that alternates writing and reading must seek in between.
    if (std::fseek(m_pFile, static_cast<long>(ulPos), SEEK_SET) != 0)
        return eStreamDeviceFailure;
    if (std::fread(pBuffer, 1, ulBytes, m_pFile) != ulBytes)
    {
        std::fseek(m_pFile, static_cast<long>(ulPos), SEEK_SET);
        return eStreamDeviceFailure;
    }
    if (pulDone)
        *pulDone = ulBytes;
    return eStreamOk;
}

long CmFileStreamDevice::mWriteBytes(const void* pBuffer, unsigned long ulBytes,
                                     unsigned long* pulDone)
{
    if (pulDone)
        *pulDone = 0;
    unsigned long ulPos = 0;
    const long lRc = mGetPosition(&ulPos);
    if (lRc != eStreamOk)
        return lRc;
    if (ulBytes == 0)
        return eStreamOk;
    if (std::fseek(m_pFile, static_cast<long>(ulPos), SEEK_SET) != 0)
        return eStreamDeviceFailure;
    if (std::fwrite(pBuffer, 1, ulBytes, m_pFile) != ulBytes)
        return eStreamDeviceFailure;
    if (pulDone)
        *pulDone = ulBytes;
    return eStreamOk;
}

long CmFileStreamDevice::mGetSize(unsigned long* pulSize) const
{
    if (!m_pFile)
        return eStreamDeviceFailure;
    const long lPos = std::ftell(m_pFile);
    if (lPos < 0 || std::fseek(m_pFile, 0, SEEK_END) != 0)
        return eStreamDeviceFailure;
    const long lEnd = std::ftell(m_pFile);
    if (std::fseek(m_pFile, lPos, SEEK_SET) != 0 || lEnd < 0)
        return eStreamDeviceFailure;
    if (pulSize)
        *pulSize = static_cast<unsigned long>(lEnd);
    return eStreamOk;
}

// ---------------------------------------------------------------------------
// The stream: construction and positions

CmIStream::CmIStream() : m_pDevice(nullptr), m_upOwnedDevice(new CmMemoryStreamDevice())
{
    m_pDevice = m_upOwnedDevice.get();
}

CmIStream::CmIStream(const std::vector<unsigned char>& rvBytes)
    : m_pDevice(nullptr), m_upOwnedDevice(new CmMemoryStreamDevice(rvBytes))
{
    m_pDevice = m_upOwnedDevice.get();
}

CmIStream::CmIStream(CmStreamDevice& rDevice) : m_pDevice(&rDevice) {}

CmIStream::~CmIStream() = default;

std::vector<unsigned char> CmIStream::mGetBytes() const
{
    const CmMemoryStreamDevice* pMemory = dynamic_cast<const CmMemoryStreamDevice*>(m_pDevice);
    if (!pMemory)
        return std::vector<unsigned char>();
    return pMemory->mGetBytes();
}

unsigned long CmIStream::mGetPosition() const
{
    unsigned long ulPos = 0;
    const long lRc = m_pDevice->mGetPosition(&ulPos);
    if (lRc != eStreamOk)
        throw CmIStreamReadException(lRc);
    return ulPos;
}

void CmIStream::mSetPosition(unsigned long ulPosition)
{
    const long lRc = m_pDevice->mSetPosition(ulPosition);
    if (lRc != eStreamOk)
        throw CmIStreamReadException(lRc);
}

void CmIStream::mRewind()
{
    mSetPosition(0);
    m_vWriteLayers.clear();
    m_vReadLayers.clear();
    mResetSharedObjects();
}

unsigned long CmIStream::mGetRemaining() const
{
    unsigned long ulSize = 0;
    long lRc = m_pDevice->mGetSize(&ulSize);
    unsigned long ulPos = 0;
    if (lRc == eStreamOk)
        lRc = m_pDevice->mGetPosition(&ulPos);
    if (lRc != eStreamOk)
        throw CmIStreamReadException(lRc);
    return ulPos <= ulSize ? ulSize - ulPos : 0;
}

void CmIStream::mRequireAvailable(unsigned long long ullBytes) const
{
    if (ullBytes > mGetRemaining())
        throw CmIStreamReadException(eStreamEndOfData);
}

// ---------------------------------------------------------------------------
// Raw bytes and values

long CmIStream::mRead(void* p, unsigned long ulBytes, unsigned long* pulRead,
                      unsigned long /*ulFlags*/) const
{
    if (pulRead)
        *pulRead = 0;
    if (!m_pDevice)
        throw CmIStreamReadException(eStreamNoDevice);
    const long lRc = m_pDevice->mReadBytes(p, ulBytes, pulRead);
    if (lRc != eStreamOk)
        throw CmIStreamReadException(lRc);
    return eStreamOk;
}

long CmIStream::mWrite(const void* p, unsigned long ulBytes, unsigned long* pulWritten,
                       unsigned long /*ulFlags*/) const
{
    if (pulWritten)
        *pulWritten = 0;
    if (!m_pDevice)
        throw CmIStreamWriteException(eStreamNoDevice);
    const long lRc = m_pDevice->mWriteBytes(p, ulBytes, pulWritten);
    if (lRc != eStreamOk)
        throw CmIStreamWriteException(lRc);
    return eStreamOk;
}

long CmIStream::mReadValue(bool& rbValue)
{
    unsigned char ucByte = 0;
    mRead(&ucByte, 1, nullptr, 0);
    if (ucByte > 1)
        throw CmIStreamReadException(eStreamCorrupt);
    rbValue = ucByte == 1;
    return eStreamOk;
}

long CmIStream::mWriteValue(const bool& rbValue)
{
    const unsigned char ucByte = rbValue ? 1 : 0;
    return mWrite(&ucByte, 1, nullptr, 0);
}

long CmIStream::mReadValue(int& riValue)
{
    std::int32_t iValue = 0;
    mRead(&iValue, 4, nullptr, 0);
    riValue = iValue;
    return eStreamOk;
}

long CmIStream::mWriteValue(const int& riValue)
{
    const std::int32_t iValue = riValue;
    return mWrite(&iValue, 4, nullptr, 0);
}

long CmIStream::mReadValue(double& rdValue)
{
    double dValue = 0.0;
    mRead(&dValue, 8, nullptr, 0);
    rdValue = dValue;
    return eStreamOk;
}

long CmIStream::mWriteValue(const double& rdValue)
{
    return mWrite(&rdValue, 8, nullptr, 0);
}

int CmIStream::mReadCount()
{
    std::int32_t iCount = 0;
    mRead(&iCount, 4, nullptr, 0);
    if (iCount < 0)
        throw CmIStreamReadException(eStreamCorrupt);
    return iCount;
}

void CmIStream::mWriteCount(unsigned long long ullCount)
{
    if (ullCount > static_cast<unsigned long long>(std::numeric_limits<std::int32_t>::max()))
        throw CmIStreamWriteException(eStreamTooLarge);
    const std::int32_t iCount = static_cast<std::int32_t>(ullCount);
    mWrite(&iCount, 4, nullptr, 0);
}

void CmIStream::mReadVector(std::vector<bool>& rvbValues)
{
    const int iCount = mReadCount();
    const unsigned long ulBytes = (static_cast<unsigned long>(iCount) + 7) / 8;
    mRequireAvailable(ulBytes);
    std::vector<unsigned char> vPacked(ulBytes);
    if (ulBytes > 0)
        mRead(vPacked.data(), ulBytes, nullptr, 0);
    const int iTailBits = iCount % 8;
    if (iTailBits != 0 && (vPacked.back() >> iTailBits) != 0)
        throw CmIStreamReadException(eStreamCorrupt);
    std::vector<bool> vbValues(static_cast<std::size_t>(iCount));
    for (int i = 0; i < iCount; ++i)
        vbValues[i] = ((vPacked[i / 8] >> (i % 8)) & 1) != 0;
    rvbValues.swap(vbValues);
}

void CmIStream::mWriteVector(const std::vector<bool>& rvbValues)
{
    mWriteCount(rvbValues.size());
    std::vector<unsigned char> vPacked((rvbValues.size() + 7) / 8, 0);
    for (std::size_t i = 0; i < rvbValues.size(); ++i)
        if (rvbValues[i])
            vPacked[i / 8] = static_cast<unsigned char>(vPacked[i / 8] | (1u << (i % 8)));
    if (!vPacked.empty())
        mWrite(vPacked.data(), static_cast<unsigned long>(vPacked.size()), nullptr, 0);
}

void CmIStream::mReadString(std::string& rsText)
{
    const int iLength = mReadCount();
    mRequireAvailable(static_cast<unsigned long long>(iLength));
    std::string sText(static_cast<std::size_t>(iLength), '\0');
    if (iLength > 0)
        mRead(&sText[0], static_cast<unsigned long>(iLength), nullptr, 0);
    rsText.swap(sText);
}

void CmIStream::mWriteString(const std::string& rsText)
{
    mWriteCount(rsText.size());
    if (!rsText.empty())
        mWrite(rsText.data(), static_cast<unsigned long>(rsText.size()), nullptr, 0);
}

// ---------------------------------------------------------------------------
// Layers.  A layer's header is its version (4 bytes) and the count of bytes
// that follow the header up to the layer's end (4 bytes).  The writer leaves
// both open and fills them in when the layer is closed.

void CmIStream::mOpenWriteLayer(int iVersion, bool bSection)
{
    const unsigned long ulStart = mGetPosition();
    const std::int32_t aiHeader[2] = {iVersion, 0};
    mWrite(aiHeader, 8, nullptr, 0);
    m_vWriteLayers.push_back(SLayer{ulStart, 0, iVersion, bSection});
}

void CmIStream::mCloseWriteLayer(bool bSection)
{
    if (m_vWriteLayers.empty() || m_vWriteLayers.back().bSection != bSection)
        throw CmIStreamWriteException(eStreamLayerMismatch);
    const SLayer layer = m_vWriteLayers.back();
    m_vWriteLayers.pop_back();
    const unsigned long ulEnd = mGetPosition();
    const unsigned long ulLength = ulEnd - layer.ulStart - 8;
    if (ulLength > static_cast<unsigned long>(std::numeric_limits<std::int32_t>::max()))
        throw CmIStreamWriteException(eStreamTooLarge);
    const std::int32_t aiHeader[2] = {layer.iVersion, static_cast<std::int32_t>(ulLength)};
    long lRc = m_pDevice->mSetPosition(layer.ulStart);
    if (lRc == eStreamOk)
        lRc = m_pDevice->mWriteBytes(aiHeader, 8, nullptr);
    if (lRc == eStreamOk)
        lRc = m_pDevice->mSetPosition(ulEnd);
    if (lRc != eStreamOk)
        throw CmIStreamWriteException(lRc);
}

int CmIStream::mOpenReadLayer(bool bSection)
{
    std::int32_t aiHeader[2] = {0, 0};
    mRead(aiHeader, 8, nullptr, 0);
    if (aiHeader[1] < 0 || (bSection && aiHeader[0] < 1))
        throw CmIStreamReadException(eStreamCorrupt);
    const unsigned long ulLength = static_cast<unsigned long>(aiHeader[1]);
    mRequireAvailable(ulLength);
    const unsigned long ulBody = mGetPosition();
    const unsigned long ulEnd = ulBody + ulLength;
    if (!m_vReadLayers.empty() && ulEnd > m_vReadLayers.back().ulEnd)
        throw CmIStreamReadException(eStreamCorrupt);
    m_vReadLayers.push_back(SLayer{ulBody - 8, ulEnd, aiHeader[0], bSection});
    return aiHeader[0];
}

unsigned long CmIStream::mCloseReadLayer(bool bSection, bool bSkip)
{
    if (m_vReadLayers.empty() || m_vReadLayers.back().bSection != bSection)
        throw CmIStreamReadException(eStreamLayerMismatch);
    const SLayer layer = m_vReadLayers.back();
    m_vReadLayers.pop_back();
    const unsigned long ulPos = mGetPosition();
    if (ulPos > layer.ulEnd)
        throw CmIStreamReadException(eStreamCorrupt);
    if (bSkip)
        mSetPosition(layer.ulEnd);
    return layer.ulEnd - ulPos;
}

int CmIStream::mReadBaseVersion()
{
    return mOpenReadLayer(false);
}

void CmIStream::mWriteBaseVersion(int iVersion)
{
    mOpenWriteLayer(iVersion, false);
}

int CmIStream::mReadSkipBytes(bool bSkip)
{
    return static_cast<int>(mCloseReadLayer(false, bSkip));
}

void CmIStream::mWriteSkipBytes(int iExtraBytes)
{
    if (m_vWriteLayers.empty() || m_vWriteLayers.back().bSection)
        throw CmIStreamWriteException(eStreamLayerMismatch);
    if (iExtraBytes > 0)
    {
        const std::vector<unsigned char> vZeros(static_cast<std::size_t>(iExtraBytes), 0);
        mWrite(vZeros.data(), static_cast<unsigned long>(vZeros.size()), nullptr, 0);
    }
    mCloseWriteLayer(false);
}

void CmIStream::mWriteSectionBegin()
{
    mOpenWriteLayer(1, true);
}

void CmIStream::mWriteSectionNewVersion()
{
    if (m_vWriteLayers.empty() || !m_vWriteLayers.back().bSection)
        throw CmIStreamWriteException(eStreamLayerMismatch);
    ++m_vWriteLayers.back().iVersion;
}

void CmIStream::mWriteSectionEnd()
{
    mCloseWriteLayer(true);
}

int CmIStream::mReadSectionBegin()
{
    return mOpenReadLayer(true);
}

void CmIStream::mReadSectionNewVersion()
{
    if (m_vReadLayers.empty() || !m_vReadLayers.back().bSection)
        throw CmIStreamReadException(eStreamLayerMismatch);
    if (m_vReadLayers.back().iVersion < 2 || mGetPosition() > m_vReadLayers.back().ulEnd)
        throw CmIStreamReadException(eStreamCorrupt);
}

void CmIStream::mReadSectionEnd()
{
    mCloseReadLayer(true, true);
}
