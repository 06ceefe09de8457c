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

using SPiece = CStringBuffer::SPiece;

/// Cuts a text off at its first zero unit, which is a zero byte in UTF-8, too.
/// @return whether there is one.
template <class TText>
bool CutAtZero(TText& svText)
{
    const std::size_t nEnd = svText.find(typename TText::value_type());
    svText = svText.substr(0, nEnd);
    return nEnd != svText.npos;
}

/// Visits the pieces up to the first zero unit, where the text ends.
template <class TVisitor>
void ForEachPieceUpToZero(const CStringBuffer& buffer, TVisitor&& visit)
{
    bool bEnded = false;
    buffer.ForEachPiece(
        [&](SPiece piece)
        {
            if (bEnded)
                return;
            bEnded = CutAtZero(piece.svBytes) || CutAtZero(piece.svUnits);
            visit(piece);
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

    void Write(const SPiece& piece)
    {
        if (piece.eForm == SPiece::Form_Units)
            Write(piece.svUnits);
        else
            Write(piece.svBytes);
    }

    unsigned char* GetEnd() const { return m_pOut; }

private:
    static bool IsHighSurrogate(wchar_t c) { return (c & 0xFC00) == 0xD800; }

    /// Whole characters.
    void Write(std::string_view svBytes)
    {
        m_bFault = m_bFault || (m_cHigh != 0 && !svBytes.empty());
        if (!m_bFault)
            m_pOut = std::copy(svBytes.begin(), svBytes.end(), m_pOut);
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

    void WriteWhole(std::wstring_view svPiece)
    {
        if (m_bFault)
            return;
        bool bWhole = false;
        m_pOut += WriteUtf8(svPiece, m_pOut, bWhole);
        m_bFault = !bWhole;
    }

    unsigned char* m_pOut;
    wchar_t m_cHigh = 0;
    /// Text that is not well-formed ends the output.
    bool m_bFault = false;
};

CBinaryData EncodeUtf8Pieces(const CStringBuffer& buffer)
{
    std::size_t nBytes = 0;
    ForEachPieceUpToZero(buffer,
                         [&](const SPiece& piece) { nBytes += piece.svBytes.size() + GetUtf8Length(piece.svUnits); });
    if (nBytes == 0)
        return CBinaryData();

    Throw_IfBinaryDataIsTooLong(nBytes);
    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nBytes]);
    CUtf8Output output(pBytes.get());
    ForEachPieceUpToZero(buffer, [&](const SPiece& piece) { output.Write(piece); });
    const auto nWritten = static_cast<std::size_t>(output.GetEnd() - pBytes.get());
    QV_ASSERT_MSG(nWritten == nBytes, "dwActualLen == dwUtf8Len");
    return CBinaryData(pBytes.release(), static_cast<unsigned long>(nWritten), true);
}

void WriteUtf16(std::string_view svAscii, unsigned char* pOut)
{
    for (std::size_t n = 0; n < svAscii.size(); ++n)
    {
        pOut[n * 2] = static_cast<unsigned char>(svAscii[n]);
        pOut[n * 2 + 1] = 0;
    }
}

/// Of a buffer that does not pack as UTF-8.
CBinaryData EncodeUtf16Pieces(const CStringBuffer& buffer)
{
    std::size_t nUnits = 0;
    ForEachPieceUpToZero(buffer,
                         [&](const SPiece& piece)
                         {
                             QV_ASSERT(piece.eForm != SPiece::Form_Utf8);
                             nUnits += piece.svBytes.size() + piece.svUnits.size();
                         });

    Throw_IfBinaryDataIsTooLong(nUnits * 2);
    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nUnits * 2]);
    unsigned char* pOut = pBytes.get();
    ForEachPieceUpToZero(buffer,
                         [&](const SPiece& piece)
                         {
                             WriteUtf16(piece.svBytes, pOut);
                             WriteUtf16LittleEndian(piece.svUnits, pOut);
                             pOut += (piece.svBytes.size() + piece.svUnits.size()) * 2;
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
    if (eEncoding == Encoding_UTF8)
        m_buffer.PackAsUtf8();
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
