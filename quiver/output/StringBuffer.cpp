#include "quiver/output/StringBuffer.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <utility>

namespace QvXmlLib9
{

namespace
{

constexpr unsigned long s_nDefaultBlockSize = 4096;

} // namespace

CStringBuffer::CStringBuffer()
    : CStringBuffer(s_nDefaultBlockSize)
{
}

CStringBuffer::CStringBuffer(unsigned long nBlockSize)
    : CInstanceMonitor(L"CStringBuffer")
    , m_nBlockSize(nBlockSize > 1 ? nBlockSize - 1 : 1)
{
}

CStringBuffer::~CStringBuffer() = default;

const wchar_t* CStringBuffer::GetData()
{
    if (m_pLastBlock == nullptr)
        return L"";
    if (!m_packed.empty())
        JoinBlocks();
    *m_pNext = 0;
    return m_pLastBlock.get();
}

void CStringBuffer::JoinBlocks()
{
    const std::size_t nLength = GetLength();
    std::unique_ptr<wchar_t[]> pJoined(new wchar_t[nLength + 1]);
    wchar_t* pOut = pJoined.get();
    for (const SPackedBlock& block : m_packed)
    {
        Unpack(block, pOut);
        pOut += block.nUnits;
    }
    pOut = std::copy(m_pLastBlock.get(), m_pNext, pOut);
    QV_ASSERT_MSG(pOut == pJoined.get() + nLength, "dwOutputPos == m_dwTotalBufferLen");

    Clear();
    m_pLastBlock = std::move(pJoined);
    m_pNext = m_pEnd = m_pLastBlock.get() + nLength;
}

std::wstring CStringBuffer::GetString() const
{
    std::wstring strText;
    strText.reserve(GetLength());
    std::wstring strWide;
    for (const SPackedBlock& block : m_packed)
        strText.append(Unpack(block, strWide));
    strText.append(m_pLastBlock.get(), GetLastBlockDataIn());
    return strText;
}

void CStringBuffer::Set(std::wstring_view svText)
{
    if (IsOwn(svText))
    {
        Set(std::wstring(svText));
        return;
    }
    Clear();
    Append(svText);
}

bool CStringBuffer::IsOwn(std::wstring_view svText) const
{
    return !std::less<>()(svText.data(), static_cast<const wchar_t*>(m_pLastBlock.get())) &&
           std::less<>()(svText.data(), static_cast<const wchar_t*>(m_pEnd));
}

void CStringBuffer::Append(std::wstring_view svText)
{
    if (HasWholeCodePoints(svText))
        AppendUnits(ToUtf16Units(svText));
    else
        AppendUnits(svText);
}

void CStringBuffer::Append(wchar_t c)
{
    Append(std::wstring_view(&c, 1));
}

void CStringBuffer::AppendOverBlocks(std::wstring_view svUnits)
{
    // The next block may take the place of the one that the text lies in.
    if (IsOwn(svUnits))
    {
        AppendOverBlocks(std::wstring(svUnits));
        return;
    }
    while (!svUnits.empty())
    {
        if (m_pNext == m_pEnd)
            AddBlock();
        const std::size_t nFits = std::min(svUnits.size(), static_cast<std::size_t>(m_pEnd - m_pNext));
        m_pNext = std::copy_n(svUnits.data(), nFits, m_pNext);
        svUnits.remove_prefix(nFits);
    }
}

void CStringBuffer::AddBlock()
{
    QV_ASSERT_MSG(m_pNext == m_pEnd, "m_LastBlock_SizeOf == m_LastBlock_DataIn");
    // What did not go into the packed block begins the next one.
    wchar_t cKept = 0;
    const bool bKept = m_pLastBlock != nullptr && !PackLastBlock();
    if (bKept)
        cKept = m_pEnd[-1];
    if (m_pLastBlock == nullptr || static_cast<std::size_t>(m_pEnd - m_pLastBlock.get()) != m_nBlockSize)
    {
        m_pNext = m_pEnd = nullptr;
        m_pLastBlock.reset();
        m_pLastBlock.reset(new wchar_t[m_nBlockSize + 1]);
    }
    m_pNext = m_pLastBlock.get();
    m_pEnd = m_pNext + m_nBlockSize;
    if (bKept)
        *m_pNext++ = cKept;
}

/// Packs the last block.
/// @return false if its last unit did not go with the others.
bool CStringBuffer::PackLastBlock()
{
    const std::size_t nUnits = GetLastBlockDataIn();
    SPackedBlock block{nullptr, 0, nUnits, SPiece::Form_Ascii};
    if (!PackAscii(block) && !(m_bUtf8 && PackUtf8(block)))
        PackUnits(block);
    const std::size_t nPacked = block.nUnits;
    m_packed.push_back(std::move(block));
    m_nPackedUnits += nPacked;
    m_pNext = m_pLastBlock.get();
    return nPacked == nUnits;
}

bool CStringBuffer::PackAscii(SPackedBlock& block) const
{
    const wchar_t* const pUnits = m_pLastBlock.get();
    block.nBytes = block.nUnits;
    block.pBytes.reset(new unsigned char[block.nBytes]);
    unsigned char* const pBytes = block.pBytes.get();
    // Nearly every block passes, so it is narrowed while it is looked at.
    std::uint32_t nAll = 0;
    for (std::size_t n = 0; n < block.nUnits; ++n)
    {
        nAll |= static_cast<std::uint32_t>(pUnits[n]);
        pBytes[n] = static_cast<unsigned char>(pUnits[n]);
    }
    return nAll < 0x80;
}

/// False for a text that has no UTF-8 form.
bool CStringBuffer::PackUtf8(SPackedBlock& block) const
{
    std::wstring_view svUnits(m_pLastBlock.get(), block.nUnits);
    // The other half of a pair is still to come.
    if (svUnits.size() > 1 && m_nBlockSize > 1 && (svUnits.back() & 0xFC00) == 0xD800)
        svUnits.remove_suffix(1);
    constexpr std::size_t nMostBytesOfAUnit = 3;
    const std::unique_ptr<unsigned char[]> pRoom(new unsigned char[svUnits.size() * nMostBytesOfAUnit]);
    bool bWhole = false;
    const std::size_t nBytes = WriteUtf8(svUnits, pRoom.get(), bWhole);
    if (!bWhole)
        return false;
    block = {nullptr, nBytes, svUnits.size(), SPiece::Form_Utf8};
    block.pBytes.reset(new unsigned char[nBytes]);
    std::memcpy(block.pBytes.get(), pRoom.get(), nBytes);
    return true;
}

void CStringBuffer::PackUnits(SPackedBlock& block) const
{
    const wchar_t* const pUnits = m_pLastBlock.get();
    block = {nullptr, block.nUnits * 2, block.nUnits, SPiece::Form_Units};
    block.pBytes.reset(new unsigned char[block.nBytes]);
    for (std::size_t n = 0; n < block.nUnits; ++n)
    {
        const auto nUnit = static_cast<std::uint16_t>(pUnits[n]);
        std::memcpy(block.pBytes.get() + n * 2, &nUnit, sizeof(nUnit));
    }
}

void CStringBuffer::Unpack(const SPackedBlock& block, wchar_t* pOut)
{
    const unsigned char* const pBytes = block.pBytes.get();
    switch (block.eForm)
    {
    case SPiece::Form_Ascii:
        for (std::size_t n = 0; n < block.nUnits; ++n)
            pOut[n] = static_cast<wchar_t>(pBytes[n]);
        break;
    case SPiece::Form_Utf8:
    {
        std::wstring strWide;
        AppendUtf8AsUtf16(strWide, {reinterpret_cast<const char*>(pBytes), block.nBytes});
        QV_ASSERT(strWide.size() == block.nUnits);
        std::copy(strWide.begin(), strWide.end(), pOut);
        break;
    }
    case SPiece::Form_Units:
        for (std::size_t n = 0; n < block.nUnits; ++n)
        {
            std::uint16_t nUnit = 0;
            std::memcpy(&nUnit, pBytes + n * 2, sizeof(nUnit));
            pOut[n] = static_cast<wchar_t>(nUnit);
        }
        break;
    }
}

std::wstring_view CStringBuffer::Unpack(const SPackedBlock& block, std::wstring& strWide)
{
    if (strWide.size() < block.nUnits)
        strWide.resize(block.nUnits);
    Unpack(block, strWide.data());
    return std::wstring_view(strWide).substr(0, block.nUnits);
}

void CStringBuffer::Clear()
{
    m_packed.clear();
    m_nPackedUnits = 0;
    m_pNext = m_pEnd = nullptr;
    m_pLastBlock.reset();
}

void CStringBuffer::Reset()
{
    m_packed.clear();
    m_nPackedUnits = 0;
    m_pNext = m_pLastBlock.get();
}

} // namespace QvXmlLib9
