#include "quiver/output/StringBuffer.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"

#include <algorithm>
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
    if (m_blocks.empty())
        return L"";
    if (m_blocks.size() > 1)
        JoinBlocks();
    *m_pNext = 0;
    return m_pBegin;
}

void CStringBuffer::JoinBlocks()
{
    const std::size_t nLength = GetLength();
    std::unique_ptr<wchar_t[]> pJoined(new wchar_t[nLength + 1]);
    wchar_t* pOut = pJoined.get();
    ForEachBlock([&pOut](std::wstring_view strBlock) { pOut = std::copy(strBlock.begin(), strBlock.end(), pOut); });
    QV_ASSERT_MSG(pOut == pJoined.get() + nLength, "dwOutputPos == m_dwTotalBufferLen");

    m_blocks.resize(1);
    m_blocks.front() = {std::move(pJoined), nLength};
    m_pBegin = m_blocks.front().pUnits.get();
    m_pNext = m_pEnd = m_pBegin + nLength;
    m_nEarlierBlocks = 0;
}

std::wstring CStringBuffer::GetString() const
{
    std::wstring strText;
    strText.reserve(GetLength());
    ForEachBlock([&strText](std::wstring_view strBlock) { strText.append(strBlock); });
    return strText;
}

void CStringBuffer::Set(std::wstring_view strText)
{
    Clear();
    Append(strText);
}

void CStringBuffer::Append(std::wstring_view strText)
{
    if (HasWholeCodePoints(strText))
        AppendUnits(ToUtf16Units(strText));
    else
        AppendUnits(strText);
}

void CStringBuffer::Append(wchar_t c)
{
    Append(std::wstring_view(&c, 1));
}

void CStringBuffer::AppendOverBlocks(std::wstring_view strUnits)
{
    while (!strUnits.empty())
    {
        if (m_pNext == m_pEnd)
            AddBlock();
        const std::size_t nFits = std::min(strUnits.size(), static_cast<std::size_t>(m_pEnd - m_pNext));
        m_pNext = std::copy_n(strUnits.data(), nFits, m_pNext);
        strUnits.remove_prefix(nFits);
    }
}

void CStringBuffer::AddBlock()
{
    QV_ASSERT_MSG(m_pNext == m_pEnd, "m_LastBlock_SizeOf == m_LastBlock_DataIn");
    m_blocks.push_back({std::unique_ptr<wchar_t[]>(new wchar_t[m_nBlockSize + 1]), m_nBlockSize});
    m_nEarlierBlocks += GetLastBlockDataIn();
    m_pBegin = m_pNext = m_blocks.back().pUnits.get();
    m_pEnd = m_pBegin + m_nBlockSize;
}

void CStringBuffer::Clear()
{
    m_blocks.clear();
    m_pBegin = m_pNext = m_pEnd = nullptr;
    m_nEarlierBlocks = 0;
}

void CStringBuffer::Reset()
{
    if (m_blocks.size() == 1)
        m_pNext = m_pBegin;
    else
        Clear();
}

} // namespace QvXmlLib9
