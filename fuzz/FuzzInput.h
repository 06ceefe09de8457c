#pragma once

// What the fuzz targets share. Each target is one file that defines LLVMFuzzerTestOneInput; fuzz/corpus/<target> has
// its seeds, <target>.dict its words.

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize);

namespace fuzz
{

/// Whether an element of a wide string is one unit of UTF-16, as where it has 32 bits.
inline bool IsUtf16(char32_t c)
{
    return c <= 0xFFFF;
}

/// The input as text of the library, up to the first byte that is no UTF-8.
inline std::wstring Text(const std::uint8_t* pData, std::size_t nSize)
{
    std::wstring strText;
    QvXmlLib9::AppendUtf8AsUtf16(strText, std::string_view(reinterpret_cast<const char*>(pData), nSize));
    return strText;
}

/// The first `nCount` lines of an input of several texts; the last one takes the rest. Missing ones are empty.
inline std::vector<std::wstring> Lines(const std::wstring& strText, std::size_t nCount)
{
    std::vector<std::wstring> lines(nCount);
    std::size_t nStart = 0;
    for (std::size_t n = 0; n < nCount && nStart <= strText.size(); ++n)
    {
        const std::size_t nEnd =
            n + 1 == nCount ? strText.size() : std::min(strText.find(L'\n', nStart), strText.size());
        lines[n] = strText.substr(nStart, nEnd - nStart);
        nStart = nEnd + 1;
    }
    return lines;
}

/// Stops the fuzzer at the input that broke a promise.
inline void Require(bool bKept, const char* lpcPromise)
{
    if (bKept)
        return;
    std::fprintf(stderr, "fuzz: broken promise: %s\n", lpcPromise);
    std::abort();
}

/// As Require, for texts that should be the same, which are shown from a little before the first difference on.
inline void RequireSame(const std::wstring& strLeft, const std::wstring& strRight, const char* lpcPromise)
{
    if (strLeft == strRight)
        return;
    const auto nSame = static_cast<std::size_t>(
        std::mismatch(strLeft.begin(), strLeft.end(), strRight.begin(), strRight.end()).first - strLeft.begin());
    const std::size_t nFrom = nSame - std::min<std::size_t>(nSame, 200);
    std::string strShown;
    QvXmlLib9::AppendUtf8(strShown, strLeft.substr(nFrom, 600));
    strShown += "\n";
    QvXmlLib9::AppendUtf8(strShown, strRight.substr(nFrom, 600));
    std::fprintf(stderr, "fuzz: these differ:\n%s\n", strShown.c_str());
    Require(false, lpcPromise);
}

/// Runs `action`. Whatever the input, the exceptions of the library are the only failures allowed.
/// @return whether there was none.
template <class TAction>
bool Succeeds(TAction&& action)
{
    try
    {
        action();
        return true;
    }
    catch (const QvXmlLib9::CQvException&)
    {
        return false;
    }
}

/// Runs `action`.
/// @return the messages of the library's exception, empty if there was none.
template <class TAction>
std::wstring Failure(TAction&& action)
{
    try
    {
        action();
        return {};
    }
    catch (const QvXmlLib9::CQvException& exception)
    {
        return L"refused: " + exception.GetFullMessage();
    }
}

/// Whether text follows an element: Fast Infoset gives it to that element, on purpose.
inline bool IsMixed(const std::wstring& strXml)
{
    for (std::size_t n = strXml.find(L'>'); n + 1 < strXml.size() && n != std::wstring::npos;
         n = strXml.find(L'>', n + 1))
    {
        const bool bEnds = strXml[n - 1] == L'/' || strXml.compare(strXml.rfind(L'<', n), 2, L"</") == 0;
        if (bEnds && strXml[n + 1] != L'<')
            return true;
    }
    return false;
}

} // namespace fuzz
