#include "quiver/values/WhitespaceUtils.h"

#include "quiver/foundation/Exceptions.h"

#include <cstddef>

namespace QvXmlLib9
{

namespace
{

/// Runs `transform(pBegin, pEnd, pOut)`, which returns the end of what it wrote, into a string of the text's length,
/// which no rule exceeds.
template <class TTransform>
std::wstring Transform(const wchar_t* lpctText, std::size_t nLength, TTransform transform)
{
    std::wstring strOut(nLength, L'\0');
    const wchar_t* const pEnd = transform(lpctText, lpctText + nLength, &strOut[0]);
    strOut.resize(static_cast<std::size_t>(pEnd - strOut.data()));
    return strOut;
}

wchar_t* CopyWithoutCarriageReturns(const wchar_t* p, const wchar_t* pEnd, wchar_t* pOut)
{
    for (; p != pEnd; ++p)
    {
        if (*p != L'\r')
            *pOut++ = *p;
    }
    return pOut;
}

wchar_t* CopyReplaced(const wchar_t* p, const wchar_t* pEnd, wchar_t* pOut)
{
    for (; p != pEnd; ++p)
    {
        if (!CWhitespaceUtils::IsWhiteSpace(*p))
            *pOut++ = *p;
        else if (*p != L'\r')
            *pOut++ = L' ';
    }
    return pOut;
}

wchar_t* CopyCollapsed(const wchar_t* p, const wchar_t* pEnd, wchar_t* pOut)
{
    const wchar_t* const pStart = pOut;
    bool bAfterBlank = true;
    for (; p != pEnd; ++p)
    {
        if (!CWhitespaceUtils::IsWhiteSpace(*p))
        {
            *pOut++ = *p;
            bAfterBlank = false;
        }
        else if (*p != L'\r' && !bAfterBlank)
        {
            *pOut++ = L' ';
            bAfterBlank = true;
        }
    }
    return bAfterBlank && pOut != pStart ? pOut - 1 : pOut;
}

bool HasWhiteSpace(const std::wstring& text)
{
    for (const wchar_t c : text)
    {
        if (CWhitespaceUtils::IsWhiteSpace(c))
            return true;
    }
    return false;
}

} // namespace

std::wstring CWhitespaceUtils::ApplyRule(WhitespaceRule rule, const std::wstring& text)
{
    switch (rule)
    {
    case WhitespaceRule_None:
        return text;
    case WhitespaceRule_Preserve:
        return Preserve(text);
    case WhitespaceRule_Replace:
        return Replace(text);
    case WhitespaceRule_Collapse:
        return Collapse(text);
    }
    throw CQvException(L"Unknown WhitespaceRule");
}

std::wstring CWhitespaceUtils::Preserve(const std::wstring& text)
{
    if (text.find(L'\r') == std::wstring::npos)
        return text;
    return Transform(text.data(), text.size(), CopyWithoutCarriageReturns);
}

std::wstring CWhitespaceUtils::Preserve(const wchar_t* text, int length)
{
    return length > 0 ? Transform(text, static_cast<std::size_t>(length), CopyWithoutCarriageReturns) : std::wstring();
}

std::wstring CWhitespaceUtils::Replace(const std::wstring& text)
{
    // Most values hold no white space at all, and their copy is all there is to do.
    return HasWhiteSpace(text) ? Transform(text.data(), text.size(), CopyReplaced) : text;
}

std::wstring CWhitespaceUtils::Collapse(const std::wstring& text)
{
    return HasWhiteSpace(text) ? Transform(text.data(), text.size(), CopyCollapsed) : text;
}

} // namespace QvXmlLib9
