#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <cstdint>
#include <string>

namespace QvXmlLib9
{

/// @throws CQvException "Failed to write data to the file [%s] error [0x%08X]" with the platform's error number.
[[noreturn]] void Throw_FileWriteFailed(const std::wstring& strFileName, std::uint32_t dwError);

/// Collects bytes in memory. Used by one thread.
class CBinaryStream : public CInstanceMonitor
{
public:
    /// No bytes yet.
    CBinaryStream();
    /// Begins with the bytes of `data`, sharing its block until the first append.
    explicit CBinaryStream(const CBinaryData& data);
    ~CBinaryStream() override;

    /// What has been collected; shares the stream's block.
    CBinaryData GetData() const;

    /// Bytes collected so far.
    unsigned long GetLength() const { return m_data.IsEmpty() ? 0 : m_data.GetLength(); }

    void Append(unsigned char by) { m_data.Append(by); }
    void Append(const CBinaryData& data);
    void Append(const unsigned char* pData, unsigned long ulLength) { m_data.Append(pData, ulLength); }

protected:
    /// For derived classes, which are counted under their own name.
    CBinaryStream(const wchar_t* lpctClassName, const CBinaryData& data);

private:
    CBinaryData m_data;
};

/// Collects bytes in memory and writes them to a file in one go.
///
///     CFileBinaryStream stream(L"order.xml", Encoding_UTF16, order.ToXmlStream(...));
///     stream.Write();
class CFileBinaryStream : public CBinaryStream
{
public:
    /// @param strFileName the file to write.
    /// @param eEncoding for the two UTF-16 encodings the file begins with the byte order mark FF FE; otherwise this
    ///        changes nothing.
    CFileBinaryStream(std::wstring strFileName, XmlEncoding eEncoding);
    /// The same with the bytes to write.
    CFileBinaryStream(std::wstring strFileName, XmlEncoding eEncoding, const CBinaryData& data);
    ~CFileBinaryStream() override;

    /// Creates the file, or empties the one that is there, and writes the mark and the bytes.
    /// @throws CQvException "Failed to write data to the file [%s] error [0x%08X]" with the name and the platform's
    ///         error number. The file is closed and keeps what had been written.
    void Write();

private:
    std::wstring m_strFileName;
    XmlEncoding m_eEncoding;
};

} // namespace QvXmlLib9
