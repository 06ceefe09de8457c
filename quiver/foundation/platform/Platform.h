#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/foundation/platform/SystemTime.h"

#include <cstddef>
#include <cstdint>
#include <ctime>

/// @file
/// The operations that the library needs from the operating system, with Windows' meaning. Nothing outside this
/// directory includes a header of the operating system. Each platform has one source unit that implements all of them.

namespace QvXmlLib9::Platform
{

// --- Reports --------------------------------------------------------------------------------------------------------

/// Receives what would otherwise go to the user or to the debugger. Null puts the platform's own way back.
/// Set while no other thread is inside the library; meant for tests.
using PfnMessageBox = void (*)(const wchar_t* lpctText, const wchar_t* lpctCaption);
using PfnDebugOutput = void (*)(const wchar_t* lpctText);
PfnMessageBox SetMessageBoxSink(PfnMessageBox pfnSink);
PfnDebugOutput SetDebugOutputSink(PfnDebugOutput pfnSink);

/// Shows an error to the user and returns once it has been seen. Where there is no message box, caption and text go to
/// standard error.
void ShowErrorBox(const wchar_t* lpctText, const wchar_t* lpctCaption);

/// Whether OutputDebug has anywhere to go, so that callers can spare themselves the formatting.
bool IsDebugOutputOn();

/// Hands a text to the debug output: standard error in diagnostic builds, nowhere in others.
void OutputDebug(const wchar_t* lpctText);

// --- Memory ---------------------------------------------------------------------------------------------------------

/// Zeroed memory for very much data, a multiple of 2 MiB, in large pages where the system has them: that many bytes are
/// handed over at their first use instead of 4 KiB at a time.
/// @return null for want of memory.
void* AllocateLarge(std::size_t nBytes);
void FreeLarge(void* pMemory, std::size_t nBytes) noexcept;

// --- Files ----------------------------------------------------------------------------------------------------------
//
// An operation that fails returns false (or what its comment says) and leaves the reason in GetLastError, always as one
// of Windows' error numbers: 2 for a file that is not there, 5 for one that may not be opened, a directory included,
// 112 for a full disk.

/// An open file or an event.
using Handle = void*;

/// What opening a file returns on failure. Creating an event returns null instead.
inline const Handle InvalidHandle = reinterpret_cast<Handle>(~std::uintptr_t{0});

inline constexpr std::uint32_t Error_Success = 0;
/// A read began at or behind the end of the file.
inline constexpr std::uint32_t Error_HandleEof = 38;
/// GetOverlappedResult was told not to wait, and the operation has not ended.
inline constexpr std::uint32_t Error_IoIncomplete = 996;
/// The overlapped operation has begun and has not ended: not a failure.
inline constexpr std::uint32_t Error_IoPending = 997;

/// State of an overlapped operation. Before each one: zero the record, then set offset and event. It must stay where it
/// is until the operation has ended.
struct Overlapped
{
    /// Owned by the platform: state, and bytes transferred. A zeroed record counts as an operation that ended well with
    /// 0 bytes.
    std::uintptr_t Internal = 0;
    std::uintptr_t InternalHigh = 0;
    /// Where in the file the operation takes place: low and high word.
    std::uint32_t Offset = 0;
    std::uint32_t OffsetHigh = 0;
    /// Signalled at the end of the operation; may be null.
    Handle hEvent = nullptr;
};

/// Reason of the calling thread's last failure. An operation that succeeds leaves it as it was.
std::uint32_t GetLastError();

/// Opens an existing file for reading in sequence; others may read it at the same time.
/// @param lpctFileName name in UTF-16 units.
/// @param bOverlapped whether ReadFile is going to be given an Overlapped record.
/// @return InvalidHandle on failure.
Handle OpenFileForReading(const wchar_t* lpctFileName, bool bOverlapped);

/// Creates a file for writing, or empties the one that is there.
/// @param lpctFileName name in UTF-16 units.
/// @param bOverlapped whether WriteFile is going to be given an Overlapped record.
/// @return InvalidHandle on failure.
Handle CreateFileForWriting(const wchar_t* lpctFileName, bool bOverlapped);

/// Size of a file in bytes.
/// @param pdwHigh receives the high word of the size.
/// @return the low word. On failure both words are 0xFFFFFFFF.
std::uint32_t GetFileSize(Handle hFile, std::uint32_t* pdwHigh);

/// Reads from a file.
///
/// Without a record: reads at the file's position until `dwLength` bytes are there or the file ends; reading at the end
/// gives 0 bytes and succeeds. `pdwRead` receives the count.
///
/// With a record: begins a read at its offset. True when it has ended already; false with Error_IoPending when it is
/// under way; false with another error when it could not begin, with Error_HandleEof if that is because its offset is
/// at or behind the end of the file. `pBuffer` must stay allocated until GetOverlappedResult has reported the end, or
/// CloseHandle on the file has returned. One operation can be under way on a file. `pdwRead` is null.
bool ReadFile(Handle hFile, void* pBuffer, std::uint32_t dwLength, std::uint32_t* pdwRead, Overlapped* pOverlapped);

/// Writes to a file; the counterpart of ReadFile, with the same rules. A write that could not place all its bytes has
/// failed.
bool WriteFile(Handle hFile, const void* pBuffer, std::uint32_t dwLength, std::uint32_t* pdwWritten,
               Overlapped* pOverlapped);

/// Result of the overlapped operation last begun with a record. The result stays until the record is used anew, so
/// asking again gives the same answer.
/// @param pdwBytes receives the count of bytes transferred.
/// @param bWait whether to wait for the end; otherwise an operation under way fails with Error_IoIncomplete. An
///        operation that could not begin fails in the same way.
bool GetOverlappedResult(Handle hFile, Overlapped* pOverlapped, std::uint32_t* pdwBytes, bool bWait);

/// Creates an unnamed event that is not signalled and resets itself.
/// @return null on failure.
Handle CreateAutoResetEvent();

/// Closes a file or an event. An operation that is still under way on the file is ended first, so that its buffer and
/// its record can go afterwards, not before.
bool CloseHandle(Handle handle);

/// The file operations, for SetFileFault.
enum EFileOperation : int
{
    FileOperation_Open,
    FileOperation_Size,
    FileOperation_Read,
    FileOperation_Write,
    FileOperation_Result,
    FileOperation_CreateEvent,
    FileOperation_Close
};

/// Called ahead of every file operation; what it returns, unless 0, is the error that the operation then fails with
/// (a handle is closed all the same). Null ends that. Set while no other thread is inside the library; meant for tests.
using PfnFileFault = std::uint32_t (*)(EFileOperation eOperation);
PfnFileFault SetFileFault(PfnFileFault pfnFault);

// --- Stack ----------------------------------------------------------------------------------------------------------

/// Bytes of stack that the calling thread has left, or the greatest value where the platform cannot tell.
std::size_t GetStackBytesLeft();

/// Size in bytes of the calling thread's stack, or the greatest value where the platform cannot tell.
std::size_t GetStackSize();

// --- Threads --------------------------------------------------------------------------------------------------------

/// Has an operation called when the calling thread ends, after the destructors of the thread's own objects or, where
/// these come late, ahead of them. A thread has one; the last call holds.
/// @return false for want of memory.
using PfnThreadEnd = void (*)(void* pData);
bool CallAtThreadEnd(PfnThreadEnd pfnEnd, void* pData);

// --- Processes ------------------------------------------------------------------------------------------------------

/// Has operations called around each fork of the process, by the thread that forks: one ahead of it, then one in the
/// parent and one in the child, which has no other thread. Where a process cannot fork nothing is called.
/// @return false for want of memory.
using PfnFork = void (*)();
bool CallAroundFork(PfnFork pfnBefore, PfnFork pfnInParent, PfnFork pfnInChild);

// --- Time -----------------------------------------------------------------------------------------------------------

/// The machine's local time.
_SYSTEMTIME GetLocalTime();

/// Takes a file time apart, in UTC; what is finer than a millisecond is cut. False for a time of 2^63 ticks or more.
bool FileTimeToSystemTime(const _FILETIME& fileTime, _SYSTEMTIME& systemTime);

/// `mktime`, `gmtime` and `localtime` on 64-bit seconds since 1970-01-01T00:00:00Z, without their shared result.
/// MakeTime gives -1 for what cannot be a time, and brings the fields into their ranges; the others are false for a
/// time whose year does not fit.
__int64 MakeTime(std::tm& fields);
bool GetUtcTime(__int64 nTime, std::tm& fields);
bool GetZonedTime(__int64 nTime, std::tm& fields);

} // namespace QvXmlLib9::Platform
