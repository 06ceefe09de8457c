#include "quiver/foundation/Pattern.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include <pcre.h>

namespace QvXmlLib9
{

namespace
{

/// Translates an expression from the dialect of XML Schema to that of PCRE, by replacements in this order. An escaped
/// backslash is sheltered first, so that what follows it is no class, and put back last. The name classes of XML are
/// only approximated. The range of LatinExtended-B is one that PCRE refuses, and the refusal is what callers know.
std::string Translate(std::string strPattern)
{
    struct SReplacement
    {
        std::string strNeedle;
        std::string strReplacement;
    };
    static const SReplacement s_replacements[] = {
        {"\\\\", "\x01"},
        {"\\i", "([^\\W\\d]|:)"},
        {"\\I", "([\\W\\d])"},
        {"\\c", "(\\w|\\.|-|:)"},
        {"\\C", "([^\\w\\.\\-\\:])"},
        {"\\p{IsBasicLatin}", "[\\000-\\177]"},
        {"\\p{IsLatin-1Supplement}", "[\\200-\\377]"},
        {"\\p{IsLatinExtended-A}", "[\\400-\\577]"},
        {"\\p{IsLatinExtended-B}", "[\\600-\\1117]"},
        {"\x01", "\\\\"},
    };
    for (const SReplacement& replacement : s_replacements)
        ReplaceAll(strPattern, replacement.strNeedle, replacement.strReplacement);
    return strPattern;
}

/// Memory that a match may use for backtracking: some two million repetitions of a group.
constexpr int s_nMostMatchStack = 64 * 1024 * 1024;
constexpr int s_nFirstMatchStack = 32 * 1024;

struct SFreePattern
{
    void operator()(pcre* pPattern) const { pcre_free(pPattern); }
};

struct SFreeStudy
{
    void operator()(pcre_extra* pStudy) const { pcre_free_study(pStudy); }
};

struct SFreeMatchStack
{
    void operator()(pcre_jit_stack* pStack) const { pcre_jit_stack_free(pStack); }
};

/// PCRE's interpreter recurses once a step of backtracking; this is the depth that fits half of what is left of the
/// stack.
unsigned long GetRecursionLimit()
{
    static const std::size_t s_nFrame =
        static_cast<std::size_t>(-pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0)) + 64;
    constexpr std::size_t nModestStack = 512 * 1024;
    const std::size_t nLeft = Platform::GetStackBytesLeft();
    return static_cast<unsigned long>((nLeft == SIZE_MAX ? nModestStack : nLeft) / 2 / s_nFrame);
}

/// An expression of XML Schema, compiled.
class CCompiledPattern
{
public:
    CCompiledPattern() = default;

    /// @param strValue goes into the message of a failure.
    CCompiledPattern(const std::string& strSource, const std::wstring& strValue)
        : m_strSource(strSource)
    {
        const std::string strPattern = Translate(strSource);
        const char* lpcError = nullptr;
        int nErrorAt = 0;
        // Anchored here and not at each match, where it would rule out the compiled form of Study.
        m_pPattern.reset(pcre_compile(strPattern.c_str(), PCRE_UTF8 | PCRE_ANCHORED, &lpcError, &nErrorAt, nullptr));
        if (!m_pPattern)
            throw CQvException(FormatString(L"Invalid Regular Expression: %s Error: '%S'", strValue.c_str(), lpcError));
        int nGroups = 0;
        pcre_fullinfo(m_pPattern.get(), nullptr, PCRE_INFO_CAPTURECOUNT, &nGroups);
        m_offsets.resize((static_cast<std::size_t>(nGroups) + 1) * 3);
    }

    bool IsFor(const std::string& strSource) const { return m_pPattern && m_strSource == strSource; }

    bool Match(std::string_view subject)
    {
        // Turning an expression into machine code pays from the second value on.
        if (m_bUsed)
            Study();
        m_bUsed = true;
        int nResult = Execute(subject);
        if (nResult == PCRE_ERROR_RECURSIONLIMIT && Study())
            nResult = Execute(subject);
        if (nResult == PCRE_ERROR_JIT_STACKLIMIT)
            nResult = ExecuteWithLargeStack(subject);
        if (nResult == PCRE_ERROR_RECURSIONLIMIT || nResult == PCRE_ERROR_JIT_STACKLIMIT)
            throw CQvException(L"The value is too long to be matched against its pattern");
        return nResult > 0 && m_offsets[0] == 0 && m_offsets[1] == static_cast<int>(subject.size());
    }

private:
    /// Compiles to machine code, which needs a fraction of the time and keeps off the stack.
    /// @return whether that was news.
    bool Study()
    {
        if (m_bStudied)
            return false;
        m_bStudied = true;
        const char* lpcError = nullptr;
        m_pStudy.reset(pcre_study(m_pPattern.get(), PCRE_STUDY_JIT_COMPILE, &lpcError));
        return m_pStudy != nullptr;
    }

    int Execute(std::string_view subject)
    {
        pcre_extra extra = {};
        if (m_pStudy)
            extra = *m_pStudy;
        extra.flags |= PCRE_EXTRA_MATCH_LIMIT_RECURSION;
        extra.match_limit_recursion = GetRecursionLimit();
        return pcre_exec(m_pPattern.get(), &extra, subject.data(), static_cast<int>(subject.size()), 0,
                         PCRE_NO_UTF8_CHECK, m_offsets.data(), static_cast<int>(m_offsets.size()));
    }

    int ExecuteWithLargeStack(std::string_view subject)
    {
        const std::unique_ptr<pcre_jit_stack, SFreeMatchStack> pStack(
            pcre_jit_stack_alloc(s_nFirstMatchStack, s_nMostMatchStack));
        if (!pStack)
            return PCRE_ERROR_JIT_STACKLIMIT;
        pcre_assign_jit_stack(m_pStudy.get(), nullptr, pStack.get());
        const int nResult = Execute(subject);
        pcre_assign_jit_stack(m_pStudy.get(), nullptr, nullptr);
        return nResult;
    }

    std::string m_strSource;
    std::unique_ptr<pcre, SFreePattern> m_pPattern;
    std::unique_ptr<pcre_extra, SFreeStudy> m_pStudy;
    std::vector<int> m_offsets;
    bool m_bUsed = false;
    bool m_bStudied = false;
};

/// The expressions that a thread has compiled. A document tests the same few over and over; each has four places that
/// it can be remembered in, which bounds the memory and the search.
class CCompiledPatterns
{
public:
    /// @param strValue goes into the message of a failure.
    CCompiledPattern& Get(const std::string& strSource, const std::wstring& strValue)
    {
        SSet& set = m_sets[std::hash<std::string>()(strSource) % m_sets.size()];
        for (CCompiledPattern& pattern : set.patterns)
        {
            if (pattern.IsFor(strSource))
                return pattern;
        }
        CCompiledPattern& oldest = set.patterns[set.nOldest];
        oldest = CCompiledPattern(strSource, strValue);
        set.nOldest = (set.nOldest + 1) % set.patterns.size();
        return oldest;
    }

private:
    struct SSet
    {
        std::array<CCompiledPattern, 4> patterns;
        std::size_t nOldest = 0;
    };

    std::array<SSet, 32> m_sets;
};

} // namespace

bool PatternMatch(const std::string& strPattern, const std::wstring& strValue)
{
    thread_local CCompiledPatterns t_patterns;
    CCompiledPattern& pattern = t_patterns.Get(strPattern, strValue);
    // Up to the first zero, as all text.
    const std::wstring_view value(strValue.c_str());
    char szShort[512];
    if (value.size() * 4 <= sizeof(szShort))
        return pattern.Match({szShort, WriteUtf8(value, reinterpret_cast<unsigned char*>(szShort))});
    std::string strSubject;
    AppendUtf8(strSubject, value);
    if (strSubject.size() > INT_MAX)
        throw CQvException(L"The value is too long to be matched against its pattern");
    return pattern.Match(strSubject);
}

} // namespace QvXmlLib9
