#include "quiver/foundation/PatternEngine.h"

#include <algorithm>
#include <cstdint>
#include <new>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace QvXmlLib9
{

namespace
{

struct SFree
{
    void operator()(pcre2_compile_context* p) const { pcre2_compile_context_free(p); }
    void operator()(pcre2_code* p) const { pcre2_code_free(p); }
    void operator()(pcre2_match_context* p) const { pcre2_match_context_free(p); }
    void operator()(pcre2_match_data* p) const { pcre2_match_data_free(p); }
    void operator()(pcre2_jit_stack* p) const { pcre2_jit_stack_free(p); }
};

template <class T>
using Owned = std::unique_ptr<T, SFree>;

template <class T>
Owned<T> Own(T* p)
{
    if (p == nullptr)
        throw std::bad_alloc();
    return Owned<T>(p);
}

/// The texts in which PCRE2 says what PCRE had other words for. Both builds give the same messages.
std::string GetErrorText(int nError)
{
    struct SText
    {
        int nError;
        const char* lpcText;
    };
    static constexpr SText s_texts[] = {
        {PCRE2_ERROR_ESCAPE_INVALID_IN_CLASS, "invalid escape sequence in character class"},
        {PCRE2_ERROR_QUANTIFIER_INVALID, "nothing to repeat"},
        {PCRE2_ERROR_MISSING_CLOSING_PARENTHESIS, "missing )"},
        {PCRE2_ERROR_MISSING_COMMENT_CLOSING, "missing ) after comment"},
        {PCRE2_ERROR_UNMATCHED_CLOSING_PARENTHESIS, "unmatched parentheses"},
        {PCRE2_ERROR_MISSING_CONDITION_CLOSING, "malformed number or name after (?("},
        {PCRE2_ERROR_TOO_MANY_CONDITION_BRANCHES, "conditional group contains more than two branches"},
        {PCRE2_ERROR_CODE_POINT_TOO_BIG, "character value in \\x{} or \\o{} is too large"},
        {PCRE2_ERROR_UNSUPPORTED_ESCAPE_SEQUENCE, "PCRE does not support \\L, \\l, \\N{name}, \\U, or \\u"},
        {PCRE2_ERROR_CALLOUT_NUMBER_TOO_BIG, "number after (?C is > 255"},
        {PCRE2_ERROR_MISSING_CALLOUT_CLOSING, "closing ) for (?C expected"},
        {PCRE2_ERROR_MISSING_NAME_TERMINATOR, "syntax error in subpattern name (missing terminator)"},
        {PCRE2_ERROR_DUPLICATE_SUBPATTERN_NAME, "two named subpatterns have the same name"},
        {PCRE2_ERROR_INVALID_SUBPATTERN_NAME, "group name must start with a non-digit"},
        {PCRE2_ERROR_UNKNOWN_UNICODE_PROPERTY, "unknown property name after \\P or \\p"},
        {PCRE2_ERROR_SUBPATTERN_NAME_TOO_LONG, "subpattern name is too long (maximum 32 characters)"},
        {PCRE2_ERROR_DEFINE_TOO_MANY_BRANCHES, "DEFINE group contains more than one branch"},
        {PCRE2_ERROR_BACKSLASH_O_MISSING_BRACE, "missing opening brace after \\o"},
        {PCRE2_ERROR_PARENS_QUERY_R_MISSING_CLOSING, "(?R or (?[+-]digits must be followed by )"},
        {PCRE2_ERROR_SUBPATTERN_NUMBER_TOO_BIG, "number is too big"},
    };
    if (nError < 0)
        return "invalid UTF-8 string";
    for (const SText& text : s_texts)
    {
        if (text.nError == nError)
            return text.lpcText;
    }
    char szText[256];
    pcre2_get_error_message(nError, reinterpret_cast<PCRE2_UCHAR*>(szText), sizeof(szText));
    return szText;
}

/// Where the backslash stands if an escape is all that PCRE2 objects to, and PCRE would have passed over the backslash.
/// @return npos for other errors.
std::size_t FindUnknownEscape(const std::string& strPattern, int nError, std::size_t nErrorAt)
{
    std::size_t nBehind = 1;
    if (nError == PCRE2_ERROR_UNSUPPORTED_ESCAPE_SEQUENCE)
        nBehind = 2;
    else if (nError != PCRE2_ERROR_UNKNOWN_ESCAPE && nError != PCRE2_ERROR_ESCAPE_INVALID_IN_CLASS)
        return std::string::npos;
    if (nErrorAt < nBehind || strPattern[nErrorAt - nBehind] != '\\')
        return std::string::npos;
    // Of those that PCRE2 knows without supporting them, this one alone was unknown to PCRE.
    return nBehind == 1 || strPattern[nErrorAt - 1] == 'F' ? nErrorAt - nBehind : std::string::npos;
}

/// As PCRE compiles it: an unknown escape is the character behind the backslash, and lines end in a line feed.
Owned<pcre2_code> Compile(std::string strPattern, std::string& strError)
{
    const Owned<pcre2_compile_context> pContext = Own(pcre2_compile_context_create(nullptr));
    pcre2_set_newline(pContext.get(), PCRE2_NEWLINE_LF);
    while (true)
    {
        int nError = 0;
        std::size_t nErrorAt = 0;
        Owned<pcre2_code> pPattern(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(strPattern.c_str()),
                                                 PCRE2_ZERO_TERMINATED, PCRE2_UTF | PCRE2_ANCHORED, &nError, &nErrorAt,
                                                 pContext.get()));
        if (pPattern)
            return pPattern;
        const std::size_t nBackslash = FindUnknownEscape(strPattern, nError, nErrorAt);
        if (nBackslash == std::string::npos)
        {
            strError = GetErrorText(nError);
            return pPattern;
        }
        strPattern.erase(nBackslash, 1);
    }
}

/// The bound of PCRE. PCRE2 may have been built with another one.
constexpr std::uint32_t s_nMostSteps = 10000000;

/// What the interpreter keeps for each step back: all groups of the expression.
std::size_t GetFrameSize(const pcre2_code* pPattern)
{
    std::size_t nFrame = 0;
    pcre2_pattern_info(pPattern, PCRE2_INFO_FRAMESIZE, &nFrame);
    return nFrame;
}

/// Memory of the interpreter in KiB: thousands of groups need more than a match has otherwise.
std::uint32_t GetHeapLimit(const pcre2_code* pPattern)
{
    constexpr std::size_t nFewestFrames = 4096;
    const std::size_t nFewest = nFewestFrames * GetFrameSize(pPattern);
    return static_cast<std::uint32_t>(std::max(CPatternEngine::s_nMostMemory, nFewest) / 1024);
}

/// Steps of the interpreter: fewer where each has thousands of groups to copy, so that the time stays the same.
std::uint32_t GetMostSteps(const pcre2_code* pPattern)
{
    return s_nMostSteps / static_cast<std::uint32_t>(GetFrameSize(pPattern) / 1024 + 1);
}

} // namespace

struct CPatternEngine::SCompiled
{
    EResult Match(std::string_view subject, std::uint32_t nOptions, std::uint32_t nSteps, pcre2_match_data* pUsed)
    {
        pcre2_set_match_limit(pContext.get(), nSteps);
        const int nResult = pcre2_match(pPattern.get(), reinterpret_cast<PCRE2_SPTR>(subject.data()), subject.size(), 0,
                                        PCRE2_NO_UTF_CHECK | nOptions, pUsed, pContext.get());
        switch (nResult)
        {
        case PCRE2_ERROR_MATCHLIMIT:
            return EResult::TooManySteps;
        case PCRE2_ERROR_HEAPLIMIT:
        case PCRE2_ERROR_DEPTHLIMIT:
        case PCRE2_ERROR_JIT_STACKLIMIT:
            return EResult::TooMuchMemory;
        case PCRE2_ERROR_NOMEMORY:
            throw std::bad_alloc();
        default:
            const PCRE2_SIZE* const pOffsets = pcre2_get_ovector_pointer(pUsed);
            const bool bWhole = nResult >= 0 && pOffsets[0] == 0 && pOffsets[1] == subject.size();
            return bWhole ? EResult::Whole : EResult::None;
        }
    }

    Owned<pcre2_code> pPattern;
    Owned<pcre2_match_context> pContext;
    /// Where the match begins and ends; the groups matter to nobody.
    Owned<pcre2_match_data> pData;
};

CPatternEngine::CPatternEngine(const std::string& strPattern, std::string& strError)
    : m_pCompiled(std::make_unique<SCompiled>())
{
    m_pCompiled->pPattern = Compile(strPattern, strError);
    if (!m_pCompiled->pPattern)
        return;
    m_pCompiled->pContext = Own(pcre2_match_context_create(nullptr));
    pcre2_set_heap_limit(m_pCompiled->pContext.get(), GetHeapLimit(m_pCompiled->pPattern.get()));
    m_pCompiled->pData = Own(pcre2_match_data_create(1, nullptr));
}

CPatternEngine::CPatternEngine(CPatternEngine&&) noexcept = default;
CPatternEngine& CPatternEngine::operator=(CPatternEngine&&) noexcept = default;
CPatternEngine::~CPatternEngine() = default;

CPatternEngine::EResult CPatternEngine::Interpret(std::string_view subject, unsigned nSteps)
{
    // The interpreter leaves what it has used for backtracking with the data of the match.
    const Owned<pcre2_match_data> pData = Own(pcre2_match_data_create(1, nullptr));
    return m_pCompiled->Match(subject, PCRE2_NO_JIT, nSteps == 0 ? GetMostSteps(m_pCompiled->pPattern.get()) : nSteps,
                              pData.get());
}

bool CPatternEngine::MakeMachineCode()
{
    return pcre2_jit_compile(m_pCompiled->pPattern.get(), PCRE2_JIT_COMPLETE) == 0;
}

CPatternEngine::EResult CPatternEngine::Execute(std::string_view subject, bool bOwnMemory)
{
    if (!bOwnMemory)
        return m_pCompiled->Match(subject, 0, s_nMostSteps, m_pCompiled->pData.get());
    constexpr std::size_t nFirst = 32 * 1024;
    const Owned<pcre2_jit_stack> pStack(pcre2_jit_stack_create(nFirst, s_nMostMemory, nullptr));
    if (!pStack)
        return EResult::TooMuchMemory;
    pcre2_jit_stack_assign(m_pCompiled->pContext.get(), nullptr, pStack.get());
    const EResult eResult = m_pCompiled->Match(subject, 0, s_nMostSteps, m_pCompiled->pData.get());
    pcre2_jit_stack_assign(m_pCompiled->pContext.get(), nullptr, nullptr);
    return eResult;
}

} // namespace QvXmlLib9
