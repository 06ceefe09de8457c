#pragma once

#include <string>

#if defined(_WIN32)
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"
#endif

namespace QvTest
{

/// A file on a disk that is full, for as long as it lives.
class CFullDisk
{
public:
#if defined(_WIN32)
    // Windows has no such file, so that the platform layer has to say so.
    CFullDisk()
    {
        QvXmlLib9::Platform::SetFileFault(OnOperation);
    }
    ~CFullDisk()
    {
        QvXmlLib9::Platform::SetFileFault(nullptr);
    }
    std::wstring GetFileName() const
    {
        return m_dir.NameOf("file");
    }
#else
    CFullDisk() = default;
    std::wstring GetFileName() const
    {
        return L"/dev/full";
    }
#endif
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

#if defined(_WIN32)
private:
    static std::uint32_t OnOperation(QvXmlLib9::Platform::EFileOperation eOperation)
    {
        return eOperation == QvXmlLib9::Platform::FileOperation_Write ? 112 : 0;
    }

    CTempDir m_dir;
#endif
};

} // namespace QvTest
