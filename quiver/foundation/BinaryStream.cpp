#include "quiver/foundation/BinaryStream.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/platform/Platform.h"

#include <string_view>
#include <utility>

namespace QvXmlLib9
{

void Throw_FileWriteFailed(const std::wstring& strFileName, std::uint32_t dwError)
{
    throw CQvException(
        FormatString(L"Failed to write data to the file [%s] error [0x%08X]", strFileName.c_str(), dwError));
}

CBinaryStream::CBinaryStream()
    : CBinaryStream(L"CBinaryStream", CBinaryData())
{
}

CBinaryStream::CBinaryStream(const CBinaryData& data)
    : CBinaryStream(L"CBinaryStream", data)
{
}

CBinaryStream::CBinaryStream(const wchar_t* lpctClassName, const CBinaryData& data)
    : CInstanceMonitor(lpctClassName)
    , m_data(data)
{
}

CBinaryStream::~CBinaryStream() = default;

CBinaryData CBinaryStream::GetData() const
{
    return m_data;
}

void CBinaryStream::Append(const CBinaryData& data)
{
    m_data.Append(data);
}

namespace
{

bool WriteBytes(Platform::Handle hFile, std::string_view bytes)
{
    std::uint32_t dwWritten = 0;
    return bytes.empty() ||
           Platform::WriteFile(hFile, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &dwWritten, nullptr);
}

} // namespace

CFileBinaryStream::CFileBinaryStream(std::wstring strFileName, XmlEncoding eEncoding)
    : CFileBinaryStream(std::move(strFileName), eEncoding, CBinaryData())
{
}

CFileBinaryStream::CFileBinaryStream(std::wstring strFileName, XmlEncoding eEncoding, const CBinaryData& data)
    : CBinaryStream(L"CFileBinaryStream", data)
    , m_strFileName(std::move(strFileName))
    , m_eEncoding(eEncoding)
{
}

CFileBinaryStream::~CFileBinaryStream() = default;

void CFileBinaryStream::Write()
{
    const Platform::Handle hFile = Platform::CreateFileForWriting(m_strFileName.c_str(), false);
    if (hFile == Platform::InvalidHandle)
        Throw_FileWriteFailed(m_strFileName, Platform::GetLastError());
    const CBinaryData data = GetData();
    if (!WriteBytes(hFile, GetByteOrderMark(m_eEncoding)) || !WriteBytes(hFile, data.GetView()))
    {
        const std::uint32_t dwError = Platform::GetLastError();
        Platform::CloseHandle(hFile);
        Throw_FileWriteFailed(m_strFileName, dwError);
    }
    // The system may keep a failure to itself until the file is closed.
    if (!Platform::CloseHandle(hFile))
        Throw_FileWriteFailed(m_strFileName, Platform::GetLastError());
}

} // namespace QvXmlLib9
