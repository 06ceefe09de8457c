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
    if (m_pLastBlock != nullptr)
        PackLastBlock();
    if (m_pLastBlock == nullptr || static_cast<std::size_t>(m_pEnd - m_pLastBlock.get()) != m_nBlockSize)
    {
        m_pNext = m_pEnd = nullptr;
        m_pLastBlock.reset();
        m_pLastBlock.reset(new wchar_t[m_nBlockSize + 1]);
    }
    m_pNext = m_pLastBlock.get();
    m_pEnd = m_pNext + m_nBlockSize;
}

void CStringBuffer::PackLastBlock()
{
    const wchar_t* const pUnits = m_pLastBlock.get();
    const std::size_t nUnits = GetLastBlockDataIn();
    std::uint32_t nAll = 0;
    for (std::size_t n = 0; n < nUnits; ++n)
        nAll |= static_cast<std::uint32_t>(pUnits[n]);

    SPackedBlock block{nullptr, nUnits, nAll < 0x80};
    block.pBytes.reset(new unsigned char[block.bAscii ? nUnits : nUnits * 2]);
    unsigned char* const pBytes = block.pBytes.get();
    if (block.bAscii)
    {
        for (std::size_t n = 0; n < nUnits; ++n)
            pBytes[n] = static_cast<unsigned char>(pUnits[n]);
    }
    else
    {
        for (std::size_t n = 0; n < nUnits; ++n)
        {
            const auto nUnit = static_cast<std::uint16_t>(pUnits[n]);
            std::memcpy(pBytes + n * 2, &nUnit, sizeof(nUnit));
        }
    }
    m_packed.push_back(std::move(block));
    m_nPackedUnits += nUnits;
    m_pNext = m_pLastBlock.get();
}

void CStringBuffer::Unpack(const SPackedBlock& block, wchar_t* pOut)
{
    const unsigned char* const pBytes = block.pBytes.get();
    if (block.bAscii)
    {
        for (std::size_t n = 0; n < block.nUnits; ++n)
            pOut[n] = static_cast<wchar_t>(pBytes[n]);
    }
    else
    {
        for (std::size_t n = 0; n < block.nUnits; ++n)
        {
            std::uint16_t nUnit = 0;
            std::memcpy(&nUnit, pBytes + n * 2, sizeof(nUnit));
            pOut[n] = static_cast<wchar_t>(nUnit);
        }
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
