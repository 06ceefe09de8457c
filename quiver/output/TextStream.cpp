#include "quiver/output/TextStream.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Product.h"

#include <algorithm>
#include <memory>

namespace QvXmlLib9
{

namespace
{

/// Visits the pieces up to the first zero unit, where the text ends.
template <class TVisitor>
void ForEachPieceUpToZero(const CStringBuffer& buffer, TVisitor&& visit)
{
    bool bEnded = false;
    buffer.ForEachPiece(
        [&](auto strPiece)
        {
            if (bEnded)
                return;
            const std::size_t nEnd = strPiece.find(typename decltype(strPiece)::value_type());
            bEnded = nEnd != strPiece.npos;
            visit(strPiece.substr(0, nEnd));
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

    void Write(std::string_view svAscii)
    {
        m_bFault = m_bFault || (m_cHigh != 0 && !svAscii.empty());
        if (!m_bFault)
            m_pOut = std::copy(svAscii.begin(), svAscii.end(), m_pOut);
    }

    void Write(std::wstring_view svPiece)
    {
        if (m_cHigh != 0 && !svPiece.empty())
        {
            const wchar_t szPair[] = {m_cHigh, svPiece.front()};
            m_cHigh = 0;
            svPiece.remove_prefix(1);
            WriteWhole({szPair, 2});
        }
        if (!svPiece.empty() && IsHighSurrogate(svPiece.back()))
        {
            m_cHigh = svPiece.back();
            svPiece.remove_suffix(1);
        }
        WriteWhole(svPiece);
    }

    unsigned char* GetEnd() const { return m_pOut; }

private:
    static bool IsHighSurrogate(wchar_t c) { return (c & 0xFC00) == 0xD800; }

    void WriteWhole(std::wstring_view svPiece)
    {
        if (m_bFault)
            return;
        const std::size_t nBytes = WriteUtf8(svPiece, m_pOut);
        m_pOut += nBytes;
        m_bFault = nBytes != GetUtf8Length(svPiece);
    }

    unsigned char* m_pOut;
    wchar_t m_cHigh = 0;
    /// Text that is not well-formed ends the output.
    bool m_bFault = false;
};

std::size_t CountUtf8(std::string_view svAscii)
{
    return svAscii.size();
}

std::size_t CountUtf8(std::wstring_view svPiece)
{
    return GetUtf8Length(svPiece);
}

void WriteUtf16(std::string_view svAscii, unsigned char* pOut)
{
    for (std::size_t n = 0; n < svAscii.size(); ++n)
    {
        pOut[n * 2] = static_cast<unsigned char>(svAscii[n]);
        pOut[n * 2 + 1] = 0;
    }
}

void WriteUtf16(std::wstring_view svPiece, unsigned char* pOut)
{
    WriteUtf16LittleEndian(svPiece, pOut);
}

CBinaryData EncodeUtf8Pieces(const CStringBuffer& buffer)
{
    std::size_t nBytes = 0;
    ForEachPieceUpToZero(buffer, [&](auto strPiece) { nBytes += CountUtf8(strPiece); });
    if (nBytes == 0)
        return CBinaryData();

    Throw_IfBinaryDataIsTooLong(nBytes);
    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nBytes]);
    CUtf8Output output(pBytes.get());
    ForEachPieceUpToZero(buffer, [&](auto strPiece) { output.Write(strPiece); });
    const auto nWritten = static_cast<std::size_t>(output.GetEnd() - pBytes.get());
    QV_ASSERT_MSG(nWritten == nBytes, "dwActualLen == dwUtf8Len");
    return CBinaryData(pBytes.release(), static_cast<unsigned long>(nWritten), true);
}

CBinaryData EncodeUtf16Pieces(const CStringBuffer& buffer)
{
    std::size_t nUnits = 0;
    ForEachPieceUpToZero(buffer, [&](auto strPiece) { nUnits += strPiece.size(); });

    Throw_IfBinaryDataIsTooLong(nUnits * 2);
    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nUnits * 2]);
    unsigned char* pOut = pBytes.get();
    ForEachPieceUpToZero(buffer,
                         [&](auto strPiece)
                         {
                             WriteUtf16(strPiece, pOut);
                             pOut += strPiece.size() * 2;
                         });
    return CBinaryData(pBytes.release(), static_cast<unsigned long>(nUnits * 2), true);
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
        return EncodeUtf8Pieces(m_buffer);
    case Encoding_UTF16:
    case Encoding_UTF16_Undeclared:
        return EncodeUtf16Pieces(m_buffer);
    case Encoding_None:
        break;
    }
    throw CQvException(FormatString(L"Unknown Encoding, select UTF-8 (contact %s for support)", g_szSupportAddress));
}

} // namespace QvXmlLib9
