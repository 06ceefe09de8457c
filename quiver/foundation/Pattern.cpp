#include "quiver/foundation/Pattern.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/PatternEngine.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

namespace
{

/// Translates an expression from the dialect of XML Schema to that of PCRE, by replacements in this order. An escaped
/// backslash is sheltered first, so that what follows it is no class, and put back last. The name classes of XML are
/// only approximated. The range of LatinExtended-B is one that PCRE refuses
/// (docs/compatibility.md: Patterns that are refused).
std::string Translate(std::string strPattern)
{
    struct SReplacement
    {
        const char* lpcNeedle;
        const char* lpcReplacement;
    };
    static constexpr SReplacement s_replacements[] = {
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
        ReplaceAll(strPattern, replacement.lpcNeedle, replacement.lpcReplacement);
    return strPattern;
}

/// Machine code begins with 32 KiB of the thread's own stack. Where less than this is left, it gets other memory.
constexpr std::size_t s_nLeastStack = 128 * 1024;

/// Steps of the interpreter for an expression's first value. What takes more is left to the machine code, which counts
/// its steps in another way: were both to work up to the library's own limit, a value could match at one time and not
/// at another. This few steps are far from that limit however they are counted.
constexpr unsigned s_nFirstSteps = 1000;

/// An expression of XML Schema, compiled.
class CCompiledPattern
{
    using EResult = CPatternEngine::EResult;

public:
    CCompiledPattern() = default;

    /// @param strValue goes into the message of a failure.
    CCompiledPattern(const std::string& strSource, const std::wstring& strValue)
        : m_strSource(strSource)
    {
        std::string strError;
        m_engine.emplace(Translate(strSource), strError);
        if (!strError.empty())
            throw CQvException(
                FormatString(L"Invalid Regular Expression: %s Error: '%S'", strValue.c_str(), strError.c_str()));
    }

    bool IsFor(const std::string& strSource) const { return m_engine && m_strSource == strSource; }

    bool Match(std::string_view subject)
    {
        EResult eResult = EResult::TooManySteps;
        // Turning an expression into machine code pays from the second value on.
        if (!std::exchange(m_bUsed, true))
            eResult = m_engine->Interpret(subject, s_nFirstSteps);
        if (eResult == EResult::TooManySteps || eResult == EResult::TooMuchMemory)
        {
            if (!m_bHasMachineCode)
                m_bHasMachineCode = m_engine->MakeMachineCode();
            eResult = *m_bHasMachineCode ? Execute(subject) : m_engine->Interpret(subject, 0);
        }
        if (eResult == EResult::TooMuchMemory)
            throw CQvException(L"The value is too long to be matched against its pattern");
        return eResult == EResult::Whole;
    }

private:
    EResult Execute(std::string_view subject)
    {
        EResult eResult = EResult::TooMuchMemory;
        if (Platform::GetStackBytesLeft() >= s_nLeastStack)
            eResult = m_engine->Execute(subject, false);
        return eResult == EResult::TooMuchMemory ? m_engine->Execute(subject, true) : eResult;
    }

    std::string m_strSource;
    std::optional<CPatternEngine> m_engine;
    bool m_bUsed = false;
    /// Not known before the second value. What cannot be made stays with the interpreter for good.
    std::optional<bool> m_bHasMachineCode;
};

/// Expressions that have been compiled, for one thread at a time. A document tests the same few over and over; each has
/// four places that it can be remembered in, which bounds the memory and the search.
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

    /// The same for a literal, by its address. Another text may come to stand there when a module goes, so the text is
    /// compared too.
    CCompiledPattern& Get(const wchar_t* lpctSource, std::string_view svValue)
    {
        SLiteral& literal =
            m_literals[reinterpret_cast<std::uintptr_t>(lpctSource) / sizeof(wchar_t) % m_literals.size()];
        if (literal.lpctSource != lpctSource || literal.strSource != lpctSource)
        {
            std::string strPattern;
            AppendUtf8(strPattern, lpctSource);
            std::wstring strValue;
            AppendUtf8AsUtf16(strValue, svValue);
            literal.lpctSource = nullptr;
            literal.pattern = CCompiledPattern(strPattern, strValue);
            literal.strSource = lpctSource;
            literal.lpctSource = lpctSource;
        }
        return literal.pattern;
    }

private:
    struct SSet
    {
        std::array<CCompiledPattern, 4> patterns;
        std::size_t nOldest = 0;
    };

    struct SLiteral
    {
        const wchar_t* lpctSource = nullptr;
        std::wstring strSource;
        CCompiledPattern pattern;
    };

    std::array<SSet, 32> m_sets;
    std::array<SLiteral, 61> m_literals;
};

/// One of the process's collections of expressions. There are as many as threads have matched at once; none is ever
/// destroyed, because objects in static storage and those of a thread test patterns while they die.
struct SSharedPatterns
{
    CCompiledPatterns patterns;
    std::atomic<bool> bTaken{true};
    SSharedPatterns* pNext = nullptr;
};

std::atomic<SSharedPatterns*> s_pSharedPatterns{nullptr};

/// The collection that the thread used last, which mostly is free and knows the thread's expressions.
thread_local SSharedPatterns* t_pLastPatterns = nullptr;

/// Holds a collection for as long as it lives.
class CTakenPatterns
{
public:
    CTakenPatterns()
    {
        if (t_pLastPatterns == nullptr || t_pLastPatterns->bTaken.exchange(true, std::memory_order_acquire))
            t_pLastPatterns = TakeAny();
        m_pTaken = t_pLastPatterns;
    }
    ~CTakenPatterns() { m_pTaken->bTaken.store(false, std::memory_order_release); }
    CTakenPatterns(const CTakenPatterns&) = delete;
    CTakenPatterns& operator=(const CTakenPatterns&) = delete;

    CCompiledPatterns& Get() { return m_pTaken->patterns; }

private:
    static SSharedPatterns* TakeAny()
    {
        SSharedPatterns* const pFirst = s_pSharedPatterns.load(std::memory_order_acquire);
        for (SSharedPatterns* p = pFirst; p != nullptr; p = p->pNext)
        {
            if (!p->bTaken.load(std::memory_order_relaxed) && !p->bTaken.exchange(true, std::memory_order_acquire))
                return p;
        }
        auto* const pNew = new SSharedPatterns;
        pNew->pNext = pFirst;
        while (!s_pSharedPatterns.compare_exchange_weak(pNew->pNext, pNew, std::memory_order_acq_rel))
        {
        }
        return pNew;
    }

    SSharedPatterns* m_pTaken;
};

} // namespace

bool PatternMatch(const std::string& strPattern, const std::wstring& strValue)
{
    CTakenPatterns taken;
    CCompiledPattern& pattern = taken.Get().Get(strPattern, strValue);
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

bool PatternMatch(const wchar_t* lpctPattern, std::string_view svValue)
{
    CTakenPatterns taken;
    CCompiledPattern& pattern = taken.Get().Get(lpctPattern, svValue);
    svValue = svValue.substr(0, svValue.find('\0'));
    if (svValue.size() > INT_MAX)
        throw CQvException(L"The value is too long to be matched against its pattern");
    return pattern.Match(svValue);
}

} // namespace QvXmlLib9
