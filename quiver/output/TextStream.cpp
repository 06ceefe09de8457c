#include "quiver/output/TextStream.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Product.h"

#include <memory>

namespace QvXmlLib9
{

namespace
{

/// Visits the blocks up to the first zero unit, where the text ends.
template <class TVisitor>
void ForEachBlockUpToZero(const CStringBuffer& buffer, TVisitor&& visit)
{
    bool bEnded = false;
    buffer.ForEachBlock(
        [&](std::wstring_view strBlock)
        {
            if (bEnded)
                return;
            const std::size_t nEnd = strBlock.find(L'\0');
            bEnded = nEnd != std::wstring_view::npos;
            visit(strBlock.substr(0, nEnd));
        });
}

/// Writes the UTF-8 form of a text that comes in pieces, between which a surrogate pair may be split.
class CUtf8Output
{
public:
    explicit CUtf8Output(unsigned char* pOut)
        : m_pOut(pOut)
    {
    }

    void Write(std::wstring_view strPiece)
    {
        if (m_cHigh != 0 && !strPiece.empty())
        {
            const wchar_t szPair[] = {m_cHigh, strPiece.front()};
            m_cHigh = 0;
            strPiece.remove_prefix(1);
            WriteWhole({szPair, 2});
        }
        if (!strPiece.empty() && IsHighSurrogate(strPiece.back()))
        {
            m_cHigh = strPiece.back();
            strPiece.remove_suffix(1);
        }
        WriteWhole(strPiece);
    }

    unsigned char* GetEnd() const { return m_pOut; }

private:
    static bool IsHighSurrogate(wchar_t c) { return (c & 0xFC00) == 0xD800; }

    void WriteWhole(std::wstring_view strPiece)
    {
        if (m_bFault)
            return;
        const std::size_t nBytes = WriteUtf8(strPiece, m_pOut);
        m_pOut += nBytes;
        m_bFault = nBytes != GetUtf8Length(strPiece);
    }

    unsigned char* m_pOut;
    wchar_t m_cHigh = 0;
    /// Text that is not well-formed ends the output.
    bool m_bFault = false;
};

CBinaryData EncodeUtf8Blocks(const CStringBuffer& buffer)
{
    std::size_t nBytes = 0;
    ForEachBlockUpToZero(buffer, [&](std::wstring_view strBlock) { nBytes += GetUtf8Length(strBlock); });
    if (nBytes == 0)
        return CBinaryData();

    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nBytes]);
    CUtf8Output output(pBytes.get());
    ForEachBlockUpToZero(buffer, [&](std::wstring_view strBlock) { output.Write(strBlock); });
    const auto nWritten = static_cast<std::size_t>(output.GetEnd() - pBytes.get());
    QV_ASSERT_MSG(nWritten == nBytes, "dwActualLen == dwUtf8Len");
    return CBinaryData(pBytes.release(), nWritten, true);
}

CBinaryData EncodeUtf16Blocks(const CStringBuffer& buffer)
{
    std::size_t nUnits = 0;
    ForEachBlockUpToZero(buffer, [&](std::wstring_view strBlock) { nUnits += strBlock.size(); });

    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nUnits * 2]);
    unsigned char* pOut = pBytes.get();
    ForEachBlockUpToZero(buffer,
                         [&](std::wstring_view strBlock)
                         {
                             WriteUtf16LittleEndian(strBlock, pOut);
                             pOut += strBlock.size() * 2;
                         });
    return CBinaryData(pBytes.release(), nUnits * 2, true);
}

} // namespace

CTextStream::CTextStream()
    : CTextStream(Encoding_None)
{
}

CTextStream::CTextStream(XmlEncoding eEncoding)
    : CTextStream(L"CTextStream", eEncoding)
{
}

CTextStream::CTextStream(const wchar_t* lpctClassName, XmlEncoding eEncoding)
    : CInstanceMonitor(lpctClassName)
    , m_eEncoding(eEncoding)
{
}

CTextStream::~CTextStream() = default;

void CTextStream::Open()
{
    m_buffer.Reset();
}

void CTextStream::Close()
{
}

void CTextStream::Flush()
{
}

CBinaryData CTextStream::GetBinaryData() const
{
    switch (m_eEncoding)
    {
    case Encoding_UTF8:
        return EncodeUtf8Blocks(m_buffer);
    case Encoding_UTF16:
    case Encoding_UTF16_Undeclared:
        return EncodeUtf16Blocks(m_buffer);
    case Encoding_None:
        break;
    }
    throw CQvException(FormatString(L"Unknown Encoding, select UTF-8 (contact %s for support)", g_szSupportAddress));
}

} // namespace QvXmlLib9
