#pragma once

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/platform/Platform.h"

namespace QvXmlLib9
{

/// A handle of the platform that is closed on every path; null or invalid for none.
class CSourceHandle
{
public:
    explicit CSourceHandle(Platform::Handle handle)
        : m_handle(handle)
    {
    }
    ~CSourceHandle() { Close(); }
    CSourceHandle(const CSourceHandle&) = delete;
    CSourceHandle& operator=(const CSourceHandle&) = delete;

    Platform::Handle Get() const { return m_handle; }
    void Close();

private:
    Platform::Handle m_handle;
};

/// A file that a document is read from.
class CSourceFile : public CSourceHandle
{
public:
    /// @param bOverlapped whether reads begin without being waited for.
    /// @throws CQvException "Failed to open the file [%s] Error [0x%08x]".
    CSourceFile(const wchar_t* lpctFileName, bool bOverlapped);

    /// The failure of the platform's operation that came last.
    /// @param lpctFormat takes the name of the file and the error number.
    static CQvException MakeException(const wchar_t* lpctFormat, const wchar_t* lpctFileName);
};

} // namespace QvXmlLib9
