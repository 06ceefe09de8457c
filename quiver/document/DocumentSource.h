#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

/// The bytes of a document that lie in memory as a whole. They are its own, or of the one who made the source and must
/// then outlive it. Lengths have 32 bits; what is longer is cut to its low word.
class CDocumentSource
{
public:
    /// Bytes of the caller, which are not copied.
    static CDocumentSource FromMemory(const void* pData, std::size_t nLength);

    /// Text as UTF-16 with a byte order mark.
    /// @throws CQvException "XML String is empty!" if it is so long that nothing is left of its length.
    static CDocumentSource FromText(std::wstring_view text);

    /// A file, read by one operation.
    /// @throws CQvException "Failed to open the file [%s] Error [0x%08x]" and its like with the platform's error
    ///         number.
    static CDocumentSource FromFile(const wchar_t* lpctFileName);

    /// Bytes that are compressed with gzip or zlib are inflated, all others are handed on.
    static CDocumentSource Inflate(CDocumentSource source);

    std::string_view GetData() const { return {reinterpret_cast<const char*>(m_pbyData), m_dwDataLen}; }

private:
    CDocumentSource(const unsigned char* pbyData, unsigned long dwDataLen)
        : m_pbyData(pbyData)
        , m_dwDataLen(dwDataLen)
    {
    }
    CDocumentSource(std::unique_ptr<unsigned char[]> pbyOwn, unsigned long dwDataLen)
        : m_pbyOwn(std::move(pbyOwn))
        , m_pbyData(m_pbyOwn.get())
        , m_dwDataLen(dwDataLen)
    {
    }

    bool LooksCompressed() const;

    /// Null if the bytes are the caller's.
    std::unique_ptr<unsigned char[]> m_pbyOwn;
    const unsigned char* m_pbyData;
    unsigned long m_dwDataLen;
};

} // namespace QvXmlLib9
