// The package's binary streams and the persistence of objects.
//
// A CmIStream is a binary stream over a device: an in-memory byte buffer
// (CmMemoryStreamDevice, the default) or a file (CmFileStreamDevice).  On it
// the package writes
//   - raw bytes (mWrite/mRead), in the byte order of the processor;
//   - single values (mWriteValue/mReadValue) and vectors of bool
//     (mWriteVector/mReadVector);
//   - layers: a base-class layer opened by mWriteBaseVersion and closed by
//     mWriteSkipBytes, and a versioned object section opened by
//     CmPersistent::mWriteBegin and closed by CmPersistent::mWriteEnd.  Each
//     carries its length, so that a reader which does not know the later
//     fields of a layer skips them;
//   - persistent objects by the name of their runtime class
//     (mWriteObjectShared/mReadObjectShared): an object reached through
//     several pointers is stored once and read back as one object.
// Every byte layout is described in docs/STREAMS.md.
//
// Failure: a device error, a read past the end of the data, a count or a
// mark that cannot be right, an unknown class name, a schema number other
// than the registered one: each throws CmIStreamReadException (reading) or
// CmIStreamWriteException (writing) with one of the codes of EStreamError.
// Before a count is used to allocate, the stream checks that the data it
// announces can still be on the device, so a corrupt count is refused
// without a large allocation.
#pragma once

#include "qel/qelexport.h"

#include <cstdio>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

// ---------------------------------------------------------------------------
// Exceptions

// The error codes carried by the stream exceptions.  A device may hand out
// codes of its own; these are the ones of the stand-in devices and streams.
enum EStreamError : long
{
    eStreamOk = 0,
    eStreamEndOfData = 1,        // fewer bytes left than a read asks for
    eStreamDeviceFailure = 2,    // the file system refused a read, write or seek
    eStreamCorrupt = 3,          // a count, tag, mark or bool that cannot be right
    eStreamUnknownClass = 4,     // a class name with no registered CmRuntimeClass
    eStreamSchemaMismatch = 5,   // a schema number other than the registered one
    eStreamLayerMismatch = 6,    // layers closed in another order than opened
    eStreamNoDevice = 7,         // the stream has no device
    eStreamTooLarge = 8,         // a count or a layer does not fit its 32-bit field
    eStreamUnregisteredClass = 9 // an object without a registered runtime class to write
};

class QEL_API CmIStreamException : public std::exception
{
public:
    explicit CmIStreamException(long lCode);
    CmIStreamException(const CmIStreamException& rOther);
    CmIStreamException& operator=(const CmIStreamException& rOther);
    ~CmIStreamException() override;

    long mGetCode() const { return m_lCode; }
    // "stream error <code>: <what the code means>"
    const char* what() const noexcept override;

protected:
    CmIStreamException(long lCode, const char* pszKind);

private:
    long m_lCode;
    std::string m_sWhat;
};

class QEL_API CmIStreamReadException : public CmIStreamException
{
public:
    explicit CmIStreamReadException(long lCode);
    CmIStreamReadException(const CmIStreamReadException& rOther);
    ~CmIStreamReadException() override;
};

class QEL_API CmIStreamWriteException : public CmIStreamException
{
public:
    explicit CmIStreamWriteException(long lCode);
    CmIStreamWriteException(const CmIStreamWriteException& rOther);
    ~CmIStreamWriteException() override;
};

// The text of a code, as used by what().
QEL_API const char* mStreamErrorText(long lCode);

// ---------------------------------------------------------------------------
// Devices

// What a stream reads from and writes to.  Every operation returns 0 or an
// error code; a read or write that cannot be done whole does nothing.  The
// count of bytes done goes to *pulDone when that is not null.
class QEL_API CmStreamDevice
{
public:
    virtual ~CmStreamDevice();
    virtual long mGetPosition(unsigned long* pulPosition) const = 0;
    virtual long mSetPosition(unsigned long ulPosition) = 0;
    virtual long mReadBytes(void* pBuffer, unsigned long ulBytes, unsigned long* pulDone) = 0;
    virtual long mWriteBytes(const void* pBuffer, unsigned long ulBytes,
                             unsigned long* pulDone) = 0;
    virtual long mGetSize(unsigned long* pulSize) const = 0;
};

// A growable byte buffer.  Writing at the end appends; writing inside
// overwrites; a position beyond the end is refused.
class QEL_API CmMemoryStreamDevice : public CmStreamDevice
{
public:
    CmMemoryStreamDevice();
    explicit CmMemoryStreamDevice(const std::vector<unsigned char>& rvBytes);
    ~CmMemoryStreamDevice() override;

    long mGetPosition(unsigned long* pulPosition) const override;
    long mSetPosition(unsigned long ulPosition) override;
    long mReadBytes(void* pBuffer, unsigned long ulBytes, unsigned long* pulDone) override;
    long mWriteBytes(const void* pBuffer, unsigned long ulBytes, unsigned long* pulDone) override;
    long mGetSize(unsigned long* pulSize) const override;

    const std::vector<unsigned char>& mGetBytes() const { return m_vBytes; }
    // Replaces the contents and moves to the start.
    void mSetBytes(const std::vector<unsigned char>& rvBytes);

private:
    std::vector<unsigned char> m_vBytes;
    unsigned long m_ulPosition = 0;
};

// A file opened for reading (bWrite false) or created anew for writing and
// reading back (bWrite true).  mIsOpen says whether the open succeeded; every
// operation on a file that is not open returns eStreamDeviceFailure.
class QEL_API CmFileStreamDevice : public CmStreamDevice
{
public:
    CmFileStreamDevice(const std::string& rsPath, bool bWrite);
    ~CmFileStreamDevice() override;
    CmFileStreamDevice(const CmFileStreamDevice&) = delete;
    CmFileStreamDevice& operator=(const CmFileStreamDevice&) = delete;

    bool mIsOpen() const { return m_pFile != nullptr; }

    long mGetPosition(unsigned long* pulPosition) const override;
    long mSetPosition(unsigned long ulPosition) override;
    long mReadBytes(void* pBuffer, unsigned long ulBytes, unsigned long* pulDone) override;
    long mWriteBytes(const void* pBuffer, unsigned long ulBytes, unsigned long* pulDone) override;
    long mGetSize(unsigned long* pulSize) const override;

private:
    std::FILE* m_pFile = nullptr;
};

// ---------------------------------------------------------------------------
// Persistent objects

class CmIStream;
class CmPersistent;

// One static object per persistent class: its name, how to make an empty
// object of it, and its schema number.  Construction registers the class by
// name, destruction removes it.  A second class of the same name replaces the
// first in the registry while it lives.
class QEL_API CmRuntimeClass
{
public:
    typedef CmPersistent* (*PFnCreate)();

    CmRuntimeClass(const char* pszName, PFnCreate pfnCreate, unsigned int uSchema);
    ~CmRuntimeClass();
    CmRuntimeClass(const CmRuntimeClass&) = delete;
    CmRuntimeClass& operator=(const CmRuntimeClass&) = delete;

    const char* mGetClassName() const { return m_sName.c_str(); }
    unsigned int mGetSchema() const { return m_uSchema; }
    // A new object made by the class's create function (null without one).
    CmPersistent* mCreateObject() const;

    // The registered class of that name, or null.
    static CmRuntimeClass* mFromName(const char* pszName);

private:
    std::string m_sName;
    PFnCreate m_pfnCreate;
    unsigned int m_uSchema;
};

// The base of every persistent class.
class QEL_API CmPersistent
{
public:
    CmPersistent();
    CmPersistent(const CmPersistent& rOther);
    CmPersistent& operator=(const CmPersistent& rOther);

    // The class by which the object is written; null in the base, each
    // concrete class returns its own.
    virtual CmRuntimeClass* mGetRuntimeClass() const;
    virtual ~CmPersistent();
    // The fields of the object.  The base has none.
    virtual void mRead(CmIStream& rStream);
    // The old form of a class's stream; by default the same as mRead.
    virtual void mRead14_1(CmIStream& rStream);
    virtual void mWrite(CmIStream& rStream);
    // The old form of a class's stream; by default the same as mWrite.
    virtual void mWrite14_1(CmIStream& rStream);

    // A versioned section: mWriteBegin opens it, each mWriteBeginNewVersion
    // raises its version by one (the fields after it were added in a later
    // version of the class), mWriteEnd closes it.  On reading, mReadBegin
    // makes the section's version available through mGetVersion, and
    // mReadEnd skips whatever the section holds beyond the fields read.
    // mReadBeginNewVersion belongs only where mGetVersion() > 1; on a
    // first-version section it throws CmIStreamReadException(eStreamCorrupt).
    void mWriteBegin(CmIStream& rStream);
    void mWriteBeginNewVersion(CmIStream& rStream);
    void mWriteEnd(CmIStream& rStream);
    void mReadBegin(CmIStream& rStream);
    void mReadBeginNewVersion(CmIStream& rStream);
    void mReadEnd(CmIStream& rStream);

    // The version of the section being read (1 for a section without a new
    // version mark, 0 before any mReadBegin).
    int mGetVersion() const { return m_iVersion; }

private:
    int m_iVersion = 0;
};

// ---------------------------------------------------------------------------
// The stream

class QEL_API CmIStream
{
public:
    // Over a new, empty, in-memory buffer owned by the stream.
    CmIStream();
    // Over an in-memory copy of these bytes, at their start.
    explicit CmIStream(const std::vector<unsigned char>& rvBytes);
    // Over a device that the caller owns and keeps alive.
    explicit CmIStream(CmStreamDevice& rDevice);
    ~CmIStream();
    CmIStream(const CmIStream&) = delete;
    CmIStream& operator=(const CmIStream&) = delete;

    CmStreamDevice* mGetDevice() const { return m_pDevice; }
    // The bytes of an in-memory stream (empty for other devices).
    std::vector<unsigned char> mGetBytes() const;
    unsigned long mGetPosition() const;
    void mSetPosition(unsigned long ulPosition);
    // Back to the start, for reading what was written; forgets open layers
    // and the shared objects seen so far.
    void mRewind();
    // The bytes between the position and the end of the data.
    unsigned long mGetRemaining() const;
    // Throws CmIStreamReadException(eStreamEndOfData) unless this many bytes
    // are left: called before a count from the stream is used to allocate.
    void mRequireAvailable(unsigned long long ullBytes) const;

    // Raw bytes.  Return 0; throw on failure.  The flags are reserved and
    // ignored.  *pulRead / *pulWritten receive the count when not null.
    long mRead(void* p, unsigned long ulBytes, unsigned long* pulRead, unsigned long ulFlags) const;
    long mWrite(const void* p, unsigned long ulBytes, unsigned long* pulWritten,
                unsigned long ulFlags) const;

    // Single values: a bool is one byte, 0 or 1 (any other byte read is
    // corrupt); an int 4 bytes; a double 8 bytes.  Return 0; throw on failure.
    long mReadValue(bool& rbValue);
    long mWriteValue(const bool& rbValue);
    long mReadValue(int& riValue);
    long mWriteValue(const int& riValue);
    long mReadValue(double& rdValue);
    long mWriteValue(const double& rdValue);

    // A vector of bool: its size (4 bytes), then the bits packed eight to a
    // byte, the first element in the lowest bit; unused high bits are 0.
    void mReadVector(std::vector<bool>& rvbValues);
    void mWriteVector(const std::vector<bool>& rvbValues);

    // A text: its length (4 bytes), then its bytes, without terminator.
    void mReadString(std::string& rsText);
    void mWriteString(const std::string& rsText);

    // A base-class layer: mWriteBaseVersion writes the version and opens the
    // layer; mWriteSkipBytes writes iExtraBytes zero bytes (a negative count
    // counts as 0) and closes it, recording its length.  mReadBaseVersion
    // returns the version; mReadSkipBytes closes the layer and returns the
    // count of unread bytes in it, moving past them when bSkip is true.
    int mReadBaseVersion();
    void mWriteBaseVersion(int iVersion);
    int mReadSkipBytes(bool bSkip);
    void mWriteSkipBytes(int iExtraBytes);

    // Versioned object sections; used through CmPersistent.
    void mWriteSectionBegin();
    void mWriteSectionNewVersion();
    void mWriteSectionEnd();
    int mReadSectionBegin();
    void mReadSectionNewVersion();
    void mReadSectionEnd();

    // An object reached through several pointers.  The first write of an
    // object stores its class name, its schema number and its fields; a
    // later write of the same pointer stores a reference to it; null is
    // stored as such.  Reading makes the object through the registered
    // class and gives the same pointer for every later reference to it.
    // The caller owns each object read once, however often it is referred
    // to.  When reading an object's fields throws, that object is deleted
    // before the exception goes on.  Objects nest at most
    // kMaxObjectDepth deep; a deeper one is corrupt.
    static constexpr int kMaxObjectDepth = 256;
    CmPersistent* mReadObjectShared();
    void mWriteObjectShared(CmPersistent* pObject);
    // Forgets the objects seen so far, on both sides.
    void mResetSharedObjects();

private:
    struct SLayer
    {
        unsigned long ulStart; // position of the layer's header
        unsigned long ulEnd;   // reading: the first byte after the layer
        int iVersion;
        bool bSection; // object section (true) or base layer (false)
    };

    void mOpenWriteLayer(int iVersion, bool bSection);
    void mCloseWriteLayer(bool bSection);
    int mOpenReadLayer(bool bSection);
    unsigned long mCloseReadLayer(bool bSection, bool bSkip);
    int mReadCount();
    void mWriteCount(unsigned long long ullCount);

    CmStreamDevice* m_pDevice; // first member: the device
    std::unique_ptr<CmStreamDevice> m_upOwnedDevice;
    std::vector<SLayer> m_vWriteLayers;
    std::vector<SLayer> m_vReadLayers;
    std::map<const CmPersistent*, int> m_mapWritten;
    std::vector<CmPersistent*> m_vpRead;
    int m_iObjectDepth = 0; // objects being read inside one another
};
