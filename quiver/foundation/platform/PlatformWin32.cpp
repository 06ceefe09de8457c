#include "quiver/foundation/platform/Platform.h"

#include "quiver/foundation/platform/PlatformHooks.h"
#include "quiver/foundation/platform/SystemTimeFields.h"

#include <climits>
#include <cstdint>
#include <ctime>
#include <memory>
#include <new>
#include <utility>

namespace QvXmlLib9::Platform
{

// --- Reports --------------------------------------------------------------------------------------------------------

void ShowErrorBoxToUser(const wchar_t* lpctText, const wchar_t* lpctCaption)
{
    ::MessageBoxW(nullptr, lpctText, lpctCaption, MB_ICONERROR);
}

void OutputDebugToPlatform(const wchar_t* lpctText)
{
    ::OutputDebugStringW(lpctText);
}

// --- Memory ---------------------------------------------------------------------------------------------------------

void* AllocateLarge(std::size_t nBytes)
{
    return ::VirtualAlloc(nullptr, nBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void FreeLarge(void* pMemory, std::size_t) noexcept
{
    ::VirtualFree(pMemory, 0, MEM_RELEASE);
}

// --- Files ----------------------------------------------------------------------------------------------------------

namespace
{

/// The library's own record of the last failure: the system's is overwritten by calls that succeed.
thread_local std::uint32_t t_dwLastError = Error_Success;

/// Keeps the reason of a call to the system that has failed.
bool Check(BOOL bDone)
{
    return bDone != 0 || Fail(::GetLastError());
}

/// What a handle stands for.
struct SObject
{
    explicit SObject(HANDLE hObject_)
        : hObject(hObject_)
    {
    }
    virtual ~SObject() { Close(); }
    SObject(const SObject&) = delete;
    SObject& operator=(const SObject&) = delete;
    /// False, with the error set, if the system reports a failure at closing.
    virtual bool Close()
    {
        const HANDLE hClosing = hObject;
        hObject = nullptr;
        return hClosing == nullptr || Check(::CloseHandle(hClosing));
    }

    HANDLE hObject;
};

struct SFile : SObject
{
    using SObject::SObject;
    ~SFile() override { Close(); }
    bool Close() override;

    /// The overlapped operation that is under way, null when there is none. The system works on a record of the file's
    /// own, which stays where it is even if the caller's does not.
    Overlapped* pInFlight = nullptr;
    bool bWriting = false;
    OVERLAPPED overlapped = {};
};

/// Null, with the error set, for a handle that stands for nothing.
SObject* ToObject(Handle handle)
{
    if (handle != nullptr && handle != InvalidHandle)
        return static_cast<SObject*>(handle);
    Fail(ERROR_INVALID_HANDLE);
    return nullptr;
}

SFile* ToFile(Handle hFile)
{
    return static_cast<SFile*>(ToObject(hFile));
}

void EndOverlapped(SFile& file, std::uint32_t dwError, std::uint32_t dwBytes)
{
    file.pInFlight->Internal = dwError;
    file.pInFlight->InternalHigh = dwBytes;
    file.pInFlight = nullptr;
}

/// Asks for the end of the operation in flight, and books it unless it has not come.
void BookOverlapped(SFile& file, bool bWait)
{
    DWORD dwBytes = 0;
    if (::GetOverlappedResult(file.hObject, &file.overlapped, &dwBytes, bWait ? TRUE : FALSE))
        EndOverlapped(file, Error_Success, dwBytes);
    else if (::GetLastError() != ERROR_IO_INCOMPLETE)
        EndOverlapped(file, ::GetLastError(), dwBytes);
}

bool SFile::Close()
{
    if (hObject != nullptr && pInFlight != nullptr)
    {
        if (!bWriting)
            ::CancelIoEx(hObject, &overlapped);
        BookOverlapped(*this, true);
    }
    return SObject::Close();
}

/// Whether a read would begin at or behind the end of the file. The system may say so at once or in the result only;
/// this makes it the first always.
bool IsAtEnd(const SFile& file)
{
    const std::uint64_t nOffset = std::uint64_t{file.overlapped.OffsetHigh} << 32 | file.overlapped.Offset;
    LARGE_INTEGER size = {};
    return ::GetFileSizeEx(file.hObject, &size) && nOffset >= static_cast<std::uint64_t>(size.QuadPart);
}

/// Prepares the file's own record for an operation.
bool PrepareOverlapped(SFile& file, Overlapped& record, bool bWriting)
{
    if (file.pInFlight != nullptr)
        return Fail(ERROR_BUSY);
    file.overlapped = {};
    file.overlapped.Offset = record.Offset;
    file.overlapped.OffsetHigh = record.OffsetHigh;
    file.overlapped.hEvent = record.hEvent != nullptr ? ToObject(record.hEvent)->hObject : nullptr;
    record.Internal = Error_IoPending;
    record.InternalHigh = 0;
    if (!bWriting && IsAtEnd(file))
        return Fail(Error_HandleEof);
    file.bWriting = bWriting;
    file.pInFlight = &record;
    return true;
}

/// Takes up what the system said when an operation was begun.
bool TakeUpOverlapped(SFile& file, BOOL bEnded)
{
    if (Check(bEnded))
    {
        BookOverlapped(file, true);
        return true;
    }
    // What has failed at once has never begun, so there is no end of it to report later.
    if (t_dwLastError != ERROR_IO_PENDING)
        file.pInFlight = nullptr;
    return false;
}

Handle Open(const wchar_t* lpctFileName, DWORD dwAccess, DWORD dwSharing, DWORD dwDisposition, DWORD dwFlags)
{
    if (IsFaultDue(FileOperation_Open))
        return InvalidHandle;
    const HANDLE hObject = ::CreateFileW(lpctFileName, dwAccess, dwSharing, nullptr, dwDisposition, dwFlags, nullptr);
    if (!Check(hObject != INVALID_HANDLE_VALUE))
        return InvalidHandle;
    SObject* const pFile = new (std::nothrow) SFile(hObject);
    if (pFile != nullptr)
        return pFile;
    ::CloseHandle(hObject);
    Fail(ERROR_NOT_ENOUGH_MEMORY);
    return InvalidHandle;
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

Handle OpenFileForReading(const wchar_t* lpctFileName, bool bOverlapped)
{
    return Open(lpctFileName, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING,
                FILE_FLAG_SEQUENTIAL_SCAN | (bOverlapped ? FILE_FLAG_OVERLAPPED : 0));
}

Handle CreateFileForWriting(const wchar_t* lpctFileName, bool bOverlapped)
{
    return Open(lpctFileName, GENERIC_WRITE, 0, CREATE_ALWAYS,
                FILE_ATTRIBUTE_NORMAL | (bOverlapped ? FILE_FLAG_OVERLAPPED : FILE_FLAG_SEQUENTIAL_SCAN));
}

std::uint32_t GetFileSize(Handle hFile, std::uint32_t* pdwHigh)
{
    LARGE_INTEGER size = {};
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Size) || pFile == nullptr || !Check(::GetFileSizeEx(pFile->hObject, &size)))
        size.QuadPart = -1;
    *pdwHigh = static_cast<std::uint32_t>(size.HighPart);
    return size.LowPart;
}

bool ReadFile(Handle hFile, void* pBuffer, std::uint32_t dwLength, std::uint32_t* pdwRead, Overlapped* pOverlapped)
{
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Read) || pFile == nullptr)
        return false;
    if (pOverlapped != nullptr)
        return PrepareOverlapped(*pFile, *pOverlapped, false) &&
               TakeUpOverlapped(*pFile, ::ReadFile(pFile->hObject, pBuffer, dwLength, nullptr, &pFile->overlapped));
    DWORD dwRead = 0;
    const bool bDone = Check(::ReadFile(pFile->hObject, pBuffer, dwLength, &dwRead, nullptr));
    *pdwRead = dwRead;
    return bDone;
}

bool WriteFile(Handle hFile, const void* pBuffer, std::uint32_t dwLength, std::uint32_t* pdwWritten,
               Overlapped* pOverlapped)
{
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Write) || pFile == nullptr)
        return false;
    if (pOverlapped != nullptr)
        return PrepareOverlapped(*pFile, *pOverlapped, true) &&
               TakeUpOverlapped(*pFile, ::WriteFile(pFile->hObject, pBuffer, dwLength, nullptr, &pFile->overlapped));
    DWORD dwWritten = 0;
    const bool bDone = Check(::WriteFile(pFile->hObject, pBuffer, dwLength, &dwWritten, nullptr));
    *pdwWritten = dwWritten;
    return bDone && (dwWritten == dwLength || Fail(ERROR_DISK_FULL));
}

bool GetOverlappedResult(Handle hFile, Overlapped* pOverlapped, std::uint32_t* pdwBytes, bool bWait)
{
    SFile* const pFile = ToFile(hFile);
    if (IsFaultDue(FileOperation_Result) || pFile == nullptr)
        return false;
    if (pFile->pInFlight == pOverlapped)
        BookOverlapped(*pFile, bWait);
    *pdwBytes = static_cast<std::uint32_t>(pOverlapped->InternalHigh);
    if (pOverlapped->Internal == Error_IoPending)
        return Fail(Error_IoIncomplete);
    return pOverlapped->Internal == Error_Success || Fail(static_cast<std::uint32_t>(pOverlapped->Internal));
}

Handle CreateAutoResetEvent()
{
    if (IsFaultDue(FileOperation_CreateEvent))
        return nullptr;
    const HANDLE hObject = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    if (!Check(hObject != nullptr))
        return nullptr;
    SObject* const pEvent = new (std::nothrow) SObject(hObject);
    if (pEvent == nullptr)
    {
        ::CloseHandle(hObject);
        Fail(ERROR_NOT_ENOUGH_MEMORY);
    }
    return pEvent;
}

bool CloseHandle(Handle handle)
{
    const std::unique_ptr<SObject> pObject(ToObject(handle));
    const bool bClosed = pObject != nullptr && pObject->Close();
    return !IsFaultDue(FileOperation_Close) && bClosed;
}

// --- Stack ----------------------------------------------------------------------------------------------------------

namespace
{

struct SStackBounds
{
    ULONG_PTR nLow = 0;
    ULONG_PTR nHigh = 0;
};

SStackBounds GetStackBounds()
{
    SStackBounds bounds;
    ::GetCurrentThreadStackLimits(&bounds.nLow, &bounds.nHigh);
    return bounds;
}

} // namespace

std::size_t GetStackBytesLeft()
{
    const volatile char cHere = 0;
    const auto nHere = reinterpret_cast<ULONG_PTR>(&cHere);
    const SStackBounds bounds = GetStackBounds();
    return nHere > bounds.nLow ? nHere - bounds.nLow : 0;
}

std::size_t GetStackSize()
{
    const SStackBounds bounds = GetStackBounds();
    return bounds.nHigh - bounds.nLow;
}

// --- Time -----------------------------------------------------------------------------------------------------------

_SYSTEMTIME GetLocalTime()
{
    _SYSTEMTIME systemTime = {};
    ::GetLocalTime(&systemTime);
    return systemTime;
}

bool FileTimeToSystemTime(const _FILETIME& fileTime, _SYSTEMTIME& systemTime)
{
    return ::FileTimeToSystemTime(&fileTime, &systemTime) != 0;
}

namespace
{

constexpr std::int64_t s_nSecondsPerDay = 86400;
constexpr std::int64_t s_nDaysPer400Years = 146097;

/// Quotient and remainder with a remainder of 0 or more.
std::pair<std::int64_t, std::int64_t> DivideDown(std::int64_t nDividend, std::int64_t nDivisor)
{
    const std::int64_t nRemainder = (nDividend % nDivisor + nDivisor) % nDivisor;
    return {(nDividend - nRemainder) / nDivisor, nRemainder};
}

// The calendar of the C library, which here knows the years from 1970 to 3000 only: Gregorian in both directions. Years
// begin in March within these two, so that the leap day is the last of its year.

/// Days from 1970-01-01 to the first day of a month; months beyond 0 to 11 carry into the year.
std::int64_t DaysToMonth(std::int64_t nYear, std::int64_t nMonth)
{
    const auto [nCarry, nMonthFromMarch] = DivideDown(nMonth - 2, 12);
    const auto [nEra, nYearOfEra] = DivideDown(nYear + nCarry, 400);
    const std::int64_t nDayOfYear = (153 * nMonthFromMarch + 2) / 5;
    const std::int64_t nDayOfEra = nYearOfEra * 365 + nYearOfEra / 4 - nYearOfEra / 100 + nDayOfYear;
    return nEra * s_nDaysPer400Years + nDayOfEra - 719468;
}

/// Fields of a count of seconds; false if the year does not fit.
bool TakeApart(std::int64_t nSeconds, std::tm& fields)
{
    const auto [nDay, nSecondOfDay] = DivideDown(nSeconds, s_nSecondsPerDay);
    const auto [nEra, nDayOfEra] = DivideDown(nDay + 719468, s_nDaysPer400Years);
    const std::int64_t nYearOfEra = (nDayOfEra - nDayOfEra / 1460 + nDayOfEra / 36524 - nDayOfEra / 146096) / 365;
    const std::int64_t nDayOfYear = nDayOfEra - (365 * nYearOfEra + nYearOfEra / 4 - nYearOfEra / 100);
    const std::int64_t nMonthFromMarch = (5 * nDayOfYear + 2) / 153;
    const std::int64_t nMonth = (nMonthFromMarch + 2) % 12;
    const std::int64_t nYear = nEra * 400 + nYearOfEra + (nMonth < 2 ? 1 : 0);
    if (nYear - 1900 < INT_MIN || nYear - 1900 > INT_MAX)
        return false;
    fields = {};
    fields.tm_year = static_cast<int>(nYear - 1900);
    fields.tm_mon = static_cast<int>(nMonth);
    fields.tm_mday = static_cast<int>(nDayOfYear - (153 * nMonthFromMarch + 2) / 5 + 1);
    fields.tm_hour = static_cast<int>(nSecondOfDay / 3600);
    fields.tm_min = static_cast<int>(nSecondOfDay / 60 % 60);
    fields.tm_sec = static_cast<int>(nSecondOfDay % 60);
    fields.tm_wday = static_cast<int>(DivideDown(nDay + 4, 7).second);
    fields.tm_yday = static_cast<int>(nDay - DaysToMonth(nYear, 0));
    return true;
}

/// Seconds that the fields make, as if they were in UTC.
std::int64_t PutTogether(const std::tm& fields)
{
    const std::int64_t nDay = DaysToMonth(std::int64_t{fields.tm_year} + 1900, fields.tm_mon) + fields.tm_mday - 1;
    return ((nDay * 24 + fields.tm_hour) * 60 + fields.tm_min) * 60 + fields.tm_sec;
}

struct SZone
{
    SZone() { ::GetTimeZoneInformation(&information); }

    /// Seconds by which the clocks are ahead of UTC in one of the two seasons.
    std::int64_t GetOffset(bool bSummer) const
    {
        return -60 * (std::int64_t{information.Bias} + (bSummer ? information.DaylightBias : information.StandardBias));
    }

    TIME_ZONE_INFORMATION information = {};
};

/// Seconds by which the machine's clocks are ahead of UTC at a time. The system knows the years from 1601 on; the rules
/// of others are those of a year that is a multiple of 400 away.
std::int64_t GetZoneOffset(std::int64_t nTime)
{
    constexpr std::int64_t nCycle = s_nDaysPer400Years * s_nSecondsPerDay;
    const std::int64_t nWithin1970To2370 = DivideDown(nTime, nCycle).second;
    // Years that the system knows stay what they are: their rules may have been others.
    const bool bKnown = nTime >= -11644473600 && nTime < 253402300800;
    std::tm utc = {};
    TakeApart(bKnown ? nTime : nWithin1970To2370, utc);
    const _SYSTEMTIME systemUtc = {static_cast<WORD>(utc.tm_year + 1900), static_cast<WORD>(utc.tm_mon + 1),
                                   static_cast<WORD>(utc.tm_wday),        static_cast<WORD>(utc.tm_mday),
                                   static_cast<WORD>(utc.tm_hour),        static_cast<WORD>(utc.tm_min),
                                   static_cast<WORD>(utc.tm_sec),         0};
    _SYSTEMTIME local = {};
    if (!::SystemTimeToTzSpecificLocalTime(nullptr, &systemUtc, &local))
        return SZone().GetOffset(false);
    std::tm fields = {};
    fields.tm_year = local.wYear - 1900;
    fields.tm_mon = local.wMonth - 1;
    fields.tm_mday = local.wDay;
    fields.tm_hour = local.wHour;
    fields.tm_min = local.wMinute;
    fields.tm_sec = local.wSecond;
    return PutTogether(fields) - PutTogether(utc);
}

} // namespace

__int64 MakeTime(std::tm& fields)
{
    const SZone zone;
    const std::int64_t nLocal = PutTogether(fields);
    __int64 nTime = nLocal - GetZoneOffset(nLocal - zone.GetOffset(false));
    // Who says which season it is, is believed.
    if (fields.tm_isdst >= 0)
        nTime = nLocal - zone.GetOffset(fields.tm_isdst > 0);
    return GetZonedTime(nTime, fields) ? nTime : -1;
}

bool GetUtcTime(__int64 nTime, std::tm& fields)
{
    return TakeApart(nTime, fields);
}

bool GetZonedTime(__int64 nTime, std::tm& fields)
{
    const std::int64_t nOffset = GetZoneOffset(nTime);
    if (!TakeApart(nTime + nOffset, fields))
        return false;
    fields.tm_isdst = nOffset != SZone().GetOffset(false);
    return true;
}

// --- Threads --------------------------------------------------------------------------------------------------------

namespace
{

struct SThreadEnd
{
    PfnThreadEnd pfnEnd;
    void* pData;
};

void WINAPI EndThread(void* pValue)
{
    const std::unique_ptr<SThreadEnd> pEnd(static_cast<SThreadEnd*>(pValue));
    if (pEnd != nullptr)
        pEnd->pfnEnd(pEnd->pData);
}

/// One slot of each thread, whose operation the system calls ahead of everything that it takes from the thread. The
/// destructors of thread-local objects would come too late: the compiler's run-time library may have given their
/// storage back by then.
DWORD MakeThreadEndSlot()
{
    // The threads may end behind the module that has this code, be it unloaded: it stays where it is until the process ends.
    HMODULE hModule = nullptr;
    if (!::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                              reinterpret_cast<LPCWSTR>(&EndThread), &hModule))
        return FLS_OUT_OF_INDEXES;
    return ::FlsAlloc(&EndThread);
}

DWORD GetThreadEndSlot()
{
    static const DWORD s_dwSlot = MakeThreadEndSlot();
    return s_dwSlot;
}

} // namespace

bool CallAtThreadEnd(PfnThreadEnd pfnEnd, void* pData)
{
    auto pRecord = std::unique_ptr<SThreadEnd>(new (std::nothrow) SThreadEnd{pfnEnd, pData});
    if (pRecord == nullptr || GetThreadEndSlot() == FLS_OUT_OF_INDEXES ||
        !::FlsSetValue(GetThreadEndSlot(), pRecord.get()))
        return false;
    static_cast<void>(pRecord.release());
    return true;
}

// --- Processes ------------------------------------------------------------------------------------------------------

bool CallAroundFork(PfnFork, PfnFork, PfnFork)
{
    return true;
}

} // namespace QvXmlLib9::Platform
