#include "quiver/document/XmlText.h"

#include "quiver/foundation/Encoder.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace QvXmlLib9
{

namespace
{

/// Longer texts are not kept in the parser's form. It bounds what is lost at the end of a block, and by the move of a
/// text that has outgrown its place.
constexpr std::size_t s_nLongestUtf8Text = 16 * 1024;

constexpr std::size_t RoundUp(std::size_t nSize)
{
    return (nSize + alignof(CXmlText) - 1) / alignof(CXmlText) * alignof(CXmlText);
}

/// Text holds no control characters but white space, so the largest unit tells. Looking at all of them needs no branch
/// for each: what has to be looked at is mostly the indentation of child elements.
template <class TUnit>
bool HasOnlyBlanks(const TUnit* pUnits, std::size_t nCount)
{
    using Number = std::make_unsigned_t<std::conditional_t<std::is_same_v<TUnit, wchar_t>, std::int32_t, TUnit>>;
    Number nLargest = 0;
    for (std::size_t n = 0; n < nCount; ++n)
        nLargest = std::max(nLargest, static_cast<Number>(pUnits[n]));
    return nLargest <= static_cast<Number>(' ');
}

} // namespace

CXmlText::CXmlText(std::wstring strText)
    : m_pstrText(new std::wstring(std::move(strText)))
    , m_nCapacity(0)
{
}

CXmlText::~CXmlText()
{
    delete m_pstrText.load(std::memory_order_acquire);
}

const std::wstring& CXmlText::GetEmpty()
{
    // Never destroyed: documents in static storage may be read to the very end of the process.
    static const std::wstring* const s_pstrEmpty = new std::wstring;
    return *s_pstrEmpty;
}

const std::wstring& CXmlText::Get(std::wstring& strBuffer) const
{
    const std::wstring* const pstrText = m_pstrText.load(std::memory_order_acquire);
    if (pstrText != nullptr)
        return *pstrText;
    strBuffer.clear();
    AppendUtf8AsUtf16(strBuffer, std::string_view(GetBytes(), m_nLength));
    return strBuffer;
}

bool CXmlText::IsEmpty() const
{
    const std::wstring* const pstrText = m_pstrText.load(std::memory_order_acquire);
    return pstrText != nullptr ? pstrText->empty() : m_nLength == 0;
}

bool CXmlText::IsWhiteSpace() const
{
    const std::wstring* const pstrText = m_pstrText.load(std::memory_order_acquire);
    return pstrText != nullptr ? HasOnlyBlanks(pstrText->data(), pstrText->size())
                               : HasOnlyBlanks(GetBytes(), m_nLength);
}

std::wstring& CXmlText::Convert() const
{
    auto pstrText = std::make_unique<std::wstring>();
    AppendUtf8AsUtf16(*pstrText, std::string_view(GetBytes(), m_nLength));
    std::wstring* pstrFirst = nullptr;
    // Of several threads that come here at the same time, the first decides for all.
    if (m_pstrText.compare_exchange_strong(pstrFirst, pstrText.get(), std::memory_order_acq_rel))
        return *pstrText.release();
    return *pstrFirst;
}

void CXmlTextArena::Append(CXmlText*& pText, std::string_view utf8Text)
{
    if (pText != nullptr && pText->IsShared())
        pText = Copy(*pText);
    const std::size_t nOldLength = pText != nullptr ? pText->m_nLength : 0;
    const std::size_t nLength = nOldLength + utf8Text.size();
    const bool bConverted = pText != nullptr && pText->m_pstrText.load(std::memory_order_relaxed) != nullptr;
    if (bConverted || nLength > s_nLongestUtf8Text)
    {
        AppendUtf8AsUtf16(GetForAppending(pText), utf8Text);
        return;
    }
    if (pText == nullptr)
        pText = NewText(nLength);
    else if (nLength > pText->m_nCapacity)
        Grow(pText, nLength);
    std::memcpy(pText->GetBytes() + nOldLength, utf8Text.data(), utf8Text.size());
    pText->m_nLength = static_cast<std::uint32_t>(nLength);
}

void CXmlTextArena::Append(CXmlText*& pText, std::wstring_view text)
{
    if (pText != nullptr && pText->IsShared())
        pText = Copy(*pText);
    std::wstring& strText = GetForAppending(pText);
    if (HasWholeCodePoints(text))
    {
        AppendUtf16Units(strText, text);
        return;
    }
    // A long text arrives in many pieces, and not every library's string grows by doubling.
    const std::size_t nLength = strText.size() + text.size();
    if (!strText.empty() && nLength > strText.capacity())
        strText.reserve(std::max(nLength, 2 * strText.capacity()));
    strText.append(text);
}

void CXmlTextArena::DestroyStrings() noexcept
{
    for (CXmlText* const pText : m_strings)
        std::destroy_at(pText);
    m_strings.clear();
}

void CXmlTextArena::Rewind(const SMark& mark) noexcept
{
    while (m_blocks.size() > mark.nBlocks)
        m_blocks.pop_back();
    m_pNext = mark.pNext;
    m_pEnd = m_blocks.empty() ? nullptr : GetStart(m_blocks.back()) + m_blocks.back().nSize;
}

CXmlText* CXmlTextArena::NewText(std::size_t nCapacity)
{
    const std::size_t nSize = RoundUp(sizeof(CXmlText) + nCapacity);
    return new (Allocate(nSize)) CXmlText(static_cast<std::uint32_t>(nSize - sizeof(CXmlText)));
}

char* CXmlTextArena::Allocate(std::size_t nSize)
{
    if (nSize > static_cast<std::size_t>(m_pEnd - m_pNext))
    {
        // A short document fits into the first block; long ones soon get by with few allocations.
        const std::size_t nGrown = m_blocks.empty() ? CTreeMemory::s_nFirstBlockSize : 2 * m_blocks.back().nSize;
        const std::size_t nBlockSize = std::max(nSize, std::min(nGrown, CTreeMemory::s_nLargestBlockSize));
        m_blocks.push_back({m_memory.Allocate(nBlockSize), nBlockSize});
        m_pNext = GetStart(m_blocks.back());
        m_pEnd = m_pNext + nBlockSize;
    }
    return std::exchange(m_pNext, m_pNext + nSize);
}

std::wstring& CXmlTextArena::GetForAppending(CXmlText*& pText)
{
    if (pText == nullptr)
        pText = NewText(0);
    std::wstring* const pstrText = pText->m_pstrText.load(std::memory_order_relaxed);
    if (pstrText != nullptr)
        return *pstrText;
    m_strings.push_back(pText);
    return pText->Convert();
}

/// Finds room for a longer text: behind the old one if nothing else has come to stand there.
void CXmlTextArena::Grow(CXmlText*& pText, std::size_t nLength)
{
    const char* const pTextEnd = pText->GetBytes() + pText->m_nCapacity;
    const std::size_t nMissing = RoundUp(nLength - pText->m_nCapacity);
    const bool bAtEnd = pTextEnd == m_pNext && m_pNext != GetStart(m_blocks.back());
    if (bAtEnd && nMissing <= static_cast<std::size_t>(m_pEnd - m_pNext))
    {
        m_pNext += nMissing;
        pText->m_nCapacity += static_cast<std::uint32_t>(nMissing);
        return;
    }
    CXmlText* const pLonger = NewText(std::max<std::size_t>(nLength, 2 * pText->m_nCapacity));
    std::memcpy(pLonger->GetBytes(), pText->GetBytes(), pText->m_nLength);
    pLonger->m_nLength = pText->m_nLength;
    pText = pLonger;
}

CXmlText* CXmlTextArena::Copy(const CXmlText& text)
{
    CXmlText* pCopy = nullptr;
    if (text.m_nLength != 0)
        Append(pCopy, std::string_view(text.GetBytes(), text.m_nLength));
    else
        Append(pCopy, std::wstring_view(text.Get()));
    return pCopy;
}

} // namespace QvXmlLib9
