#include "quiver/foundation/platform/Platform.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/platform/PlatformHooks.h"

#include <aio.h>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <new>
#include <pthread.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// The build asks for these where a machine of 32 bits has others.
static_assert(sizeof(off_t) == 8 && sizeof(std::time_t) == 8);

namespace QvXmlLib9::Platform
{

namespace
{

// Reports must not depend on the locale or throw, so they go out as plain ASCII with escapes for the rest. Standard error
// passes on every piece at once, and a trace may be long: it gets blocks.
void WriteToStandardError(const wchar_t* lpctText)
{
    constexpr std::size_t nLongestEscape = 20;
    char szBlock[1024];
    std::size_t nUsed = 0;
    for (; *lpctText != 0; ++lpctText)
    {
        if (nUsed + nLongestEscape > sizeof(szBlock))
        {
            std::fwrite(szBlock, 1, nUsed, stderr);
            nUsed = 0;
        }
        const auto nUnit = static_cast<unsigned long>(*lpctText);
        if (nUnit < 128)
            szBlock[nUsed++] = static_cast<char>(nUnit);
        else
            nUsed += static_cast<std::size_t>(std::snprintf(szBlock + nUsed, nLongestEscape, "\\u%04lX", nUnit));
    }
    std::fwrite(szBlock, 1, nUsed, stderr);
}

} // namespace

void ShowErrorBoxToUser(const wchar_t* lpctText, const wchar_t* lpctCaption)
{
    WriteToStandardError(lpctCaption);
    WriteToStandardError(L"\n");
    WriteToStandardError(lpctText);
    WriteToStandardError(L"\n");
}

void OutputDebugToPlatform(const wchar_t* lpctText)
{
    WriteToStandardError(lpctText);
}

namespace
{

struct SStackBounds
{
    std::uintptr_t nLow = 0;
    std::size_t nSize = SIZE_MAX;
};

SStackBounds ReadStackBounds()
{
    SStackBounds bounds;
#if defined(__linux__)
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0)
    {
        void* pLow = nullptr;
        std::size_t nSize = 0;
        if (pthread_attr_getstack(&attributes, &pLow, &nSize) == 0)
        {
            bounds.nLow = reinterpret_cast<std::uintptr_t>(pLow);
            bounds.nSize = nSize;
        }
        pthread_attr_destroy(&attributes);
    }
#endif
    return bounds;
}

// Asking the system reads a file on the main thread, so each thread asks once.
const SStackBounds& GetStackBounds()
{
    thread_local const SStackBounds t_bounds = ReadStackBounds();
    return t_bounds;
}

} // namespace

std::size_t GetStackBytesLeft()
{
    const auto nHere = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const SStackBounds& bounds = GetStackBounds();
    if (bounds.nSize == SIZE_MAX)
        return SIZE_MAX;
    return nHere > bounds.nLow ? nHere - bounds.nLow : 0;
}

std::size_t GetStackSize()
{
    return GetStackBounds().nSize;
}

// --- Memory ---------------------------------------------------------------------------------------------------------

void* AllocateLarge(std::size_t nBytes)
{
    constexpr std::size_t nLargePage = 2 * 1024 * 1024;
    const std::size_t nMapped = nBytes + nLargePage;
    void* const pMapped = ::mmap(nullptr, nMapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pMapped == MAP_FAILED)
        return nullptr;
    // A large page begins at a multiple of its size, so what lies around goes back.
    auto* const pFirst = static_cast<unsigned char*>(pMapped);
    const std::size_t nAhead = (nLargePage - reinterpret_cast<std::uintptr_t>(pFirst) % nLargePage) % nLargePage;
    if (nAhead > 0)
        ::munmap(pFirst, nAhead);
    ::munmap(pFirst + nAhead + nBytes, nLargePage - nAhead);
#if defined(MADV_HUGEPAGE)
    ::madvise(pFirst + nAhead, nBytes, MADV_HUGEPAGE);
#endif
    return pFirst + nAhead;
}

void FreeLarge(void* pMemory, std::size_t nBytes) noexcept
{
    ::munmap(pMemory, nBytes);
}

// --- Files ----------------------------------------------------------------------------------------------------------

namespace
{

thread_local std::uint32_t t_dwLastError = Error_Success;

constexpr std::uint32_t s_dwErrorPathNotFound = 3;
constexpr std::uint32_t s_dwErrorAccessDenied = 5;
constexpr std::uint32_t s_dwErrorInvalidHandle = 6;
constexpr std::uint32_t s_dwErrorNotEnoughMemory = 8;
constexpr std::uint32_t s_dwErrorDiskFull = 112;
constexpr std::uint32_t s_dwErrorInvalidName = 123;
constexpr std::uint32_t s_dwErrorBusy = 170;

/// The error number that Windows reports in the same situation.
std::uint32_t ErrorFromErrno(int nErrno)
{
    struct SRow
    {
        int nErrno;
        std::uint32_t dwError;
    };
    static constexpr SRow s_rows[] = {
        {ENOENT, 2},         // ERROR_FILE_NOT_FOUND
        {ENOTDIR, 3},        // ERROR_PATH_NOT_FOUND
        {EMFILE, 4},         // ERROR_TOO_MANY_OPEN_FILES
        {ENFILE, 4},         // the same
        {EACCES, 5},         // ERROR_ACCESS_DENIED
        {EPERM, 5},          // the same
        {EISDIR, 5},         // the same
        {EBADF, 5},          // the same; a file that is not open for the operation
        {ENOMEM, 8},         // ERROR_NOT_ENOUGH_MEMORY
        {EROFS, 19},         // ERROR_WRITE_PROTECT
        {ETXTBSY, 32},       // ERROR_SHARING_VIOLATION
        {EINVAL, 87},        // ERROR_INVALID_PARAMETER
        {EPIPE, 109},        // ERROR_BROKEN_PIPE
        {ENOSPC, 112},       // ERROR_DISK_FULL
        {EBUSY, 170},        // ERROR_BUSY
        {ENAMETOOLONG, 206}, // ERROR_FILENAME_EXCED_RANGE
        {EFBIG, 223},        // ERROR_FILE_TOO_LARGE
        {ECANCELED, 995},    // ERROR_OPERATION_ABORTED
        {EIO, 1117},         // ERROR_IO_DEVICE
        {EDQUOT, 1295},      // ERROR_DISK_QUOTA_EXCEEDED
        {ELOOP, 1921},       // ERROR_CANT_RESOLVE_FILENAME
    };
    for (const SRow& row : s_rows)
    {
        if (row.nErrno == nErrno)
            return row.dwError;
    }
    return 31; // ERROR_GEN_FAILURE
}

/// What a handle stands for.
struct SObject
{
    SObject() = default;
    virtual ~SObject() = default;
    SObject(const SObject&) = delete;
    SObject& operator=(const SObject&) = delete;
    /// False, with the error set, if the system reports a failure at closing.
    virtual bool Close() { return true; }
};

/// The C library's asynchronous operations are waited for by their control block, so an event has nothing to do here.
struct SEvent : SObject
{
};

struct SFile : SObject
{
    explicit SFile(int nFile_)
        : nFile(nFile_)
    {
    }
    ~SFile() override { Close(); }
    bool Close() override;

    int nFile;
    bool bRegular = true;
    bool bSeekable = true;
    /// The overlapped operation that is under way, with what it still has to transfer; null when there is none.
    Overlapped* pInFlight = nullptr;
    bool bWriting = false;
    /// Of its own, since the C library's structure is not fit to be a member everywhere.
    std::unique_ptr<aiocb> pBlock = std::make_unique<aiocb>();
};

std::uint64_t GetSizeOf(const SFile& file)
{
    struct stat status
    {
    };
    return ::fstat(file.nFile, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

Handle ToHandle(SObject* pObject)
{
    return pObject;
}

/// Null, with the error set, for a handle that stands for nothing.
SObject* ToObject(Handle handle)
{
    if (handle != nullptr && handle != InvalidHandle)
        return static_cast<SObject*>(handle);
    Fail(s_dwErrorInvalidHandle);
    return nullptr;
}

SFile* ToFile(Handle hFile)
{
    return static_cast<SFile*>(ToObject(hFile));
}

/// Repeats a transfer until everything is through, the file ends or an error occurs.
template <class FnTransfer>
bool TransferAll(FnTransfer fnTransfer, std::size_t nLength, std::size_t& nDone)
{
    // More than this the system does not take at once.
    constexpr std::size_t nMost = 0x7FFFF000;
    for (nDone = 0; nDone < nLength;)
    {
        const ssize_t nNow = fnTransfer(nDone, std::min(nLength - nDone, nMost));
        if (nNow < 0 && errno == EINTR)
            continue;
        if (nNow < 0)
            return Fail(ErrorFromErrno(errno));
        if (nNow == 0)
            break;
        nDone += static_cast<std::size_t>(nNow);
    }
    return true;
}

bool ReadAll(int nFile, void* pBuffer, std::size_t nLength, std::size_t& nDone)
{
    auto* const pBytes = static_cast<unsigned char*>(pBuffer);
    return TransferAll([&](std::size_t nAt, std::size_t nNow) { return ::read(nFile, pBytes + nAt, nNow); }, nLength,
                       nDone);
}

bool WriteAll(int nFile, const void* pBuffer, std::size_t nLength, std::size_t& nDone)
{
    const auto* const pBytes = static_cast<const unsigned char*>(pBuffer);
    return TransferAll([&](std::size_t nAt, std::size_t nNow) { return ::write(nFile, pBytes + nAt, nNow); }, nLength,
                       nDone) &&
           (nDone == nLength || Fail(s_dwErrorDiskFull));
}

void EndOverlapped(SFile& file, std::uint32_t dwError)
{
    file.pInFlight->Internal = dwError;
    file.pInFlight = nullptr;
}

/// A file without offsets, such as a pipe, is read and written in order.
ssize_t TransferAt(const SFile& file, unsigned char* pBytes, std::size_t nLength, off_t nOffset)
{
    if (!file.bSeekable)
        return file.bWriting ? ::write(file.nFile, pBytes, nLength) : ::read(file.nFile, pBytes, nLength);
    return file.bWriting ? ::pwrite(file.nFile, pBytes, nLength, nOffset)
                         : ::pread(file.nFile, pBytes, nLength, nOffset);
}

/// Does what is left of the operation in flight, and ends it.
void FinishAtOnce(SFile& file)
{
    auto* const pBytes = static_cast<unsigned char*>(const_cast<void*>(file.pBlock->aio_buf));
    const auto fnTransfer = [&](std::size_t nAt, std::size_t nNow)
    {
        return TransferAt(file, pBytes + nAt, nNow, file.pBlock->aio_offset + static_cast<off_t>(nAt));
    };
    std::size_t nDone = 0;
    const bool bDone = TransferAll(fnTransfer, file.pBlock->aio_nbytes, nDone);
    file.pInFlight->InternalHigh += nDone;
    const bool bEof = !file.bWriting && file.pBlock->aio_nbytes > 0 && file.pInFlight->InternalHigh == 0;
    if (!bDone)
        EndOverlapped(file, t_dwLastError);
    else if (file.bWriting && nDone < file.pBlock->aio_nbytes)
        EndOverlapped(file, s_dwErrorDiskFull);
    else
        EndOverlapped(file, bEof ? Error_HandleEof : Error_Success);
}

/// Books what the system has transferred. It may have stopped short of the whole without saying why.
void BookOverlapped(SFile& file)
{
    const int nError = aio_error(file.pBlock.get());
    const ssize_t nNow = aio_return(file.pBlock.get());
    if (nError != 0)
        return EndOverlapped(file, ErrorFromErrno(nError));

    file.pInFlight->InternalHigh += static_cast<std::size_t>(nNow);
    file.pBlock->aio_buf = static_cast<volatile unsigned char*>(file.pBlock->aio_buf) + nNow;
    file.pBlock->aio_nbytes -= static_cast<std::size_t>(nNow);
    file.pBlock->aio_offset += nNow;
    if (file.pBlock->aio_nbytes == 0)
        return EndOverlapped(file, Error_Success);
    FinishAtOnce(file);
}

void WaitForOverlapped(SFile& file)
{
    const aiocb* const list[] = {file.pBlock.get()};
    while (aio_error(file.pBlock.get()) == EINPROGRESS)
        aio_suspend(list, 1, nullptr);
    BookOverlapped(file);
}

bool SFile::Close()
{
    if (nFile < 0)
        return true;
    if (pInFlight != nullptr)
    {
        if (!bWriting)
            aio_cancel(nFile, pBlock.get());
        WaitForOverlapped(*this);
    }
    const int nResult = ::close(nFile);
    nFile = -1;
    return nResult == 0 || Fail(ErrorFromErrno(errno));
}

/// Writes up to this length, in bytes, go to the system's cache directly: handing them over would cost several times as
/// much.
constexpr std::uint32_t s_dwWriteAtOnce = 65536;

/// Whether an operation was ever queued, and whether that was in another process: the threads of the C library that see to
/// the queue do not come along into a child, and it does not know. There every operation is finished at once.
std::atomic<bool> s_bQueueUsed{false};
std::atomic<bool> s_bQueueLost{false};

[[maybe_unused]] const bool s_bForkTold = CallAroundFork(nullptr, nullptr, [] { s_bQueueLost = s_bQueueUsed.load(); });

bool BeginOverlapped(SFile& file, void* pBuffer, std::uint32_t dwLength, Overlapped& overlapped, bool bWriting)
{
    if (file.pInFlight != nullptr)
        return Fail(s_dwErrorBusy);
    overlapped.Internal = Error_IoPending;
    overlapped.InternalHigh = 0;
    const std::uint64_t nOffset = std::uint64_t{overlapped.OffsetHigh} << 32 | overlapped.Offset;
    if (!bWriting && file.bRegular && nOffset >= GetSizeOf(file))
        return Fail(Error_HandleEof);

    *file.pBlock = aiocb{};
    file.pBlock->aio_fildes = file.nFile;
    file.pBlock->aio_buf = pBuffer;
    file.pBlock->aio_nbytes = dwLength;
    file.pBlock->aio_offset = static_cast<off_t>(nOffset);
    file.pBlock->aio_sigevent.sigev_notify = SIGEV_NONE;
    file.bWriting = bWriting;
    file.pInFlight = &overlapped;
    const bool bQueue = file.bSeekable && !(bWriting && dwLength <= s_dwWriteAtOnce) && !s_bQueueLost;
    if (bQueue)
        s_bQueueUsed = true;
    if (bQueue && (bWriting ? aio_write(file.pBlock.get()) : aio_read(file.pBlock.get())) == 0)
        return Fail(Error_IoPending);
    FinishAtOnce(file);
    if (overlapped.Internal == Error_Success)
        return true;
    // What has failed at once has never begun, so there is no end of it to report later.
    Fail(static_cast<std::uint32_t>(overlapped.Internal));
    overlapped.Internal = Error_IoPending;
    return false;
}

Handle Open(const wchar_t* lpctFileName, int nFlags)
{
    if (IsFaultDue(FileOperation_Open))
        return InvalidHandle;
    std::string strFileName;
    if (lpctFileName == nullptr || *lpctFileName == 0)
    {
        Fail(s_dwErrorPathNotFound);
        return InvalidHandle;
    }
    if (!AppendUtf8(strFileName, lpctFileName))
    {
        Fail(s_dwErrorInvalidName);
        return InvalidHandle;
    }
    // Ahead of the file itself, which must not stay open when there is no memory for its record.
    auto pFile = std::make_unique<SFile>(-1);
    int& nFile = pFile->nFile;
    do
        nFile = ::open(strFileName.c_str(), nFlags | O_CLOEXEC, 0666);
    while (nFile < 0 && errno == EINTR);
    if (nFile < 0)
    {
        Fail(ErrorFromErrno(errno));
        return InvalidHandle;
    }
    struct stat status;
    if (::fstat(nFile, &status) != 0 || S_ISDIR(status.st_mode))
    {
        Fail(s_dwErrorAccessDenied);
        return InvalidHandle;
    }
    pFile->bRegular = S_ISREG(status.st_mode);
    pFile->bSeekable = ::lseek(nFile, 0, SEEK_CUR) >= 0;
    return ToHandle(pFile.release());
}

} // namespace

bool Fail(std::uint32_t dwError)
{
    t_dwLastError = dwError;
    return false;
}

std::uint32_t GetLastError()
{
    return t_dwLastError;
}

Handle OpenFileForReading(const wchar_t* lpctFileName, bool /*bOverlapped*/)
{
    const Handle hFile = Open(lpctFileName, O_RDONLY);
#if defined(POSIX_FADV_SEQUENTIAL)
    if (hFile != InvalidHandle)
        ::posix_fadvise(ToFile(hFile)->nFile, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
    return hFile;
}

Handle CreateFileForWriting(const wchar_t* lpctFileName, bool /*bOverlapped*/)
{
    return Open(lpctFileName, O_WRONLY | O_CREAT | O_TRUNC);
}

std::uint32_t GetFileSize(Handle hFile, std::uint32_t* pdwHigh)
{
    struct stat status
    {
    };
    SFile* const pFile = ToFile(hFile);
    bool bKnown = !IsFaultDue(FileOperation_Size) && pFile != nullptr;
    if (bKnown && ::fstat(pFile->nFile, &status) != 0)
        bKnown = Fail(ErrorFromErrno(errno));
    const std::uint64_t nSize = bKnown ? static_cast<std::uint64_t>(status.st_size) : ~std::uint64_t{0};
    *pdwHigh = static_cast<std::uint32_t>(nSize >> 32);
    return static_cast<std::uint32_t>(nSize);
}

bool ReadFile(Handle hFile, void* pBuffer, std::uint32_t dwLength, std::uint32_t* pdwRead, Overlapped* pOverlapped)
{
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Read) || pFile == nullptr)
        return false;
    if (pOverlapped != nullptr)
        return BeginOverlapped(*pFile, pBuffer, dwLength, *pOverlapped, false);
    std::size_t nDone = 0;
    const bool bDone = ReadAll(pFile->nFile, pBuffer, dwLength, nDone);
    *pdwRead = static_cast<std::uint32_t>(nDone);
    return bDone;
}

bool WriteFile(Handle hFile, const void* pBuffer, std::uint32_t dwLength, std::uint32_t* pdwWritten,
               Overlapped* pOverlapped)
{
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Write) || pFile == nullptr)
        return false;
    if (pOverlapped != nullptr)
        return BeginOverlapped(*pFile, const_cast<void*>(pBuffer), dwLength, *pOverlapped, true);
    std::size_t nDone = 0;
    const bool bDone = WriteAll(pFile->nFile, pBuffer, dwLength, nDone);
    *pdwWritten = static_cast<std::uint32_t>(nDone);
    return bDone;
}

bool GetOverlappedResult(Handle hFile, Overlapped* pOverlapped, std::uint32_t* pdwBytes, bool bWait)
{
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Result) || pFile == nullptr)
        return false;
    if (pFile->pInFlight == pOverlapped)
    {
        if (bWait)
            WaitForOverlapped(*pFile);
        else if (aio_error(pFile->pBlock.get()) != EINPROGRESS)
            BookOverlapped(*pFile);
    }
    *pdwBytes = static_cast<std::uint32_t>(pOverlapped->InternalHigh);
    if (pOverlapped->Internal == Error_IoPending)
        return Fail(Error_IoIncomplete);
    return pOverlapped->Internal == Error_Success || Fail(static_cast<std::uint32_t>(pOverlapped->Internal));
}

Handle CreateAutoResetEvent()
{
    if (IsFaultDue(FileOperation_CreateEvent))
        return nullptr;
    SEvent* const pEvent = new (std::nothrow) SEvent;
    if (pEvent == nullptr)
        Fail(s_dwErrorNotEnoughMemory);
    return pEvent != nullptr ? ToHandle(pEvent) : nullptr;
}

bool CloseHandle(Handle handle)
{
    const std::unique_ptr<SObject> pObject(ToObject(handle));
    const bool bClosed = pObject != nullptr && pObject->Close();
    return !IsFaultDue(FileOperation_Close) && bClosed;
}

// --- Time -----------------------------------------------------------------------------------------------------------

namespace
{

_SYSTEMTIME ToSystemTime(const std::tm& fields, unsigned short wMilliseconds)
{
    _SYSTEMTIME systemTime = {};
    systemTime.wYear = static_cast<unsigned short>(fields.tm_year + 1900);
    systemTime.wMonth = static_cast<unsigned short>(fields.tm_mon + 1);
    systemTime.wDayOfWeek = static_cast<unsigned short>(fields.tm_wday);
    systemTime.wDay = static_cast<unsigned short>(fields.tm_mday);
    systemTime.wHour = static_cast<unsigned short>(fields.tm_hour);
    systemTime.wMinute = static_cast<unsigned short>(fields.tm_min);
    systemTime.wSecond = static_cast<unsigned short>(fields.tm_sec);
    systemTime.wMilliseconds = wMilliseconds;
    return systemTime;
}

} // namespace

_SYSTEMTIME GetLocalTime()
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    std::tm fields = {};
    localtime_r(&now.tv_sec, &fields);
    return ToSystemTime(fields, static_cast<unsigned short>(now.tv_nsec / 1000000));
}

bool FileTimeToSystemTime(const _FILETIME& fileTime, _SYSTEMTIME& systemTime)
{
    constexpr std::int64_t nTicksPerSecond = 10000000;
    constexpr std::int64_t nSecondsFrom1601To1970 = 11644473600;
    const std::uint64_t nTicks = (std::uint64_t{fileTime.dwHighDateTime} << 32) | fileTime.dwLowDateTime;
    if (nTicks > INT64_MAX)
        return false;
    const auto nSignedTicks = static_cast<std::int64_t>(nTicks);
    std::tm fields = {};
    if (!GetUtcTime(nSignedTicks / nTicksPerSecond - nSecondsFrom1601To1970, fields))
        return false;
    systemTime = ToSystemTime(fields, static_cast<unsigned short>(nSignedTicks % nTicksPerSecond / 10000));
    return true;
}

__int64 MakeTime(std::tm& fields)
{
    return std::mktime(&fields);
}

bool GetUtcTime(__int64 nTime, std::tm& fields)
{
    const std::time_t nSeconds = nTime;
    return gmtime_r(&nSeconds, &fields) != nullptr;
}

bool GetZonedTime(__int64 nTime, std::tm& fields)
{
    const std::time_t nSeconds = nTime;
    return localtime_r(&nSeconds, &fields) != nullptr;
}

// --- Threads --------------------------------------------------------------------------------------------------------

namespace
{

struct SThreadEnd
{
    SThreadEnd() = default;
    SThreadEnd(const SThreadEnd&) = delete;
    SThreadEnd& operator=(const SThreadEnd&) = delete;
    ~SThreadEnd()
    {
        if (pfnEnd != nullptr)
            pfnEnd(pData);
    }

    PfnThreadEnd pfnEnd = nullptr;
    void* pData = nullptr;
};

} // namespace

bool CallAtThreadEnd(PfnThreadEnd pfnEnd, void* pData)
{
    thread_local SThreadEnd t_end;
    t_end.pfnEnd = pfnEnd;
    t_end.pData = pData;
    return true;
}

// --- Processes ------------------------------------------------------------------------------------------------------

bool CallAroundFork(PfnFork pfnBefore, PfnFork pfnInParent, PfnFork pfnInChild)
{
    return pthread_atfork(pfnBefore, pfnInParent, pfnInChild) == 0;
}

} // namespace QvXmlLib9::Platform
