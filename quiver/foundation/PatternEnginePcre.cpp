#include "quiver/foundation/PatternEngine.h"

#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <pcre.h>

namespace QvXmlLib9
{

namespace
{

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
    // PCRE says how much a step takes. Where the compiler merges its functions, as MinGW's does, the answer is too small by far.
    constexpr int nLeastFrame = 496;
    static const auto s_nFrame = static_cast<std::size_t>(
        std::max(-pcre_exec(nullptr, nullptr, nullptr, -999, -999, 0, nullptr, 0), nLeastFrame) + 64);
    constexpr std::size_t nModestStack = 512 * 1024;
    const std::size_t nLeft = Platform::GetStackBytesLeft();
    return static_cast<unsigned long>((nLeft == SIZE_MAX ? nModestStack : nLeft) / 2 / s_nFrame);
}

} // namespace

struct CPatternEngine::SCompiled
{
    EResult Match(std::string_view subject, const pcre_extra* pExtra)
    {
        const int nResult = pcre_exec(pPattern.get(), pExtra, subject.data(), static_cast<int>(subject.size()), 0,
                                      PCRE_NO_UTF8_CHECK, offsets.data(), static_cast<int>(offsets.size()));
        switch (nResult)
        {
        case PCRE_ERROR_MATCHLIMIT:
            return EResult::TooManySteps;
        case PCRE_ERROR_RECURSIONLIMIT:
        case PCRE_ERROR_JIT_STACKLIMIT:
            return EResult::TooMuchMemory;
        default:
            const bool bWhole = nResult > 0 && offsets[0] == 0 && offsets[1] == static_cast<int>(subject.size());
            return bWhole ? EResult::Whole : EResult::None;
        }
    }

    std::unique_ptr<pcre, SFreePattern> pPattern;
    std::unique_ptr<pcre_extra, SFreeStudy> pStudy;
    std::vector<int> offsets;
};

CPatternEngine::CPatternEngine(const std::string& strPattern, std::string& strError)
    : m_pCompiled(std::make_unique<SCompiled>())
{
    const char* lpcError = nullptr;
    int nErrorAt = 0;
    // Anchored here and not at each match, where it would rule out machine code.
    m_pCompiled->pPattern.reset(
        pcre_compile(strPattern.c_str(), PCRE_UTF8 | PCRE_ANCHORED, &lpcError, &nErrorAt, nullptr));
    if (!m_pCompiled->pPattern)
    {
        strError = lpcError;
        return;
    }
    int nGroups = 0;
    pcre_fullinfo(m_pCompiled->pPattern.get(), nullptr, PCRE_INFO_CAPTURECOUNT, &nGroups);
    m_pCompiled->offsets.resize((static_cast<std::size_t>(nGroups) + 1) * 3);
}

CPatternEngine::CPatternEngine(CPatternEngine&&) noexcept = default;
CPatternEngine& CPatternEngine::operator=(CPatternEngine&&) noexcept = default;
CPatternEngine::~CPatternEngine() = default;

CPatternEngine::EResult CPatternEngine::Interpret(std::string_view subject, unsigned nSteps)
{
    pcre_extra extra = {};
    extra.flags = PCRE_EXTRA_MATCH_LIMIT_RECURSION;
    extra.match_limit_recursion = GetRecursionLimit();
    if (nSteps != 0)
    {
        extra.flags |= PCRE_EXTRA_MATCH_LIMIT;
        extra.match_limit = nSteps;
    }
    return m_pCompiled->Match(subject, &extra);
}

bool CPatternEngine::MakeMachineCode()
{
    const char* lpcError = nullptr;
    m_pCompiled->pStudy.reset(pcre_study(m_pCompiled->pPattern.get(), PCRE_STUDY_JIT_COMPILE, &lpcError));
    int nMachineCode = 0;
    pcre_fullinfo(m_pCompiled->pPattern.get(), m_pCompiled->pStudy.get(), PCRE_INFO_JIT, &nMachineCode);
    return nMachineCode != 0;
}

CPatternEngine::EResult CPatternEngine::Execute(std::string_view subject, bool bOwnMemory)
{
    pcre_extra* const pStudy = m_pCompiled->pStudy.get();
    if (!bOwnMemory)
        return m_pCompiled->Match(subject, pStudy);
    constexpr int nFirst = 32 * 1024;
    const std::unique_ptr<pcre_jit_stack, SFreeMatchStack> pStack(
        pcre_jit_stack_alloc(nFirst, static_cast<int>(s_nMostMemory)));
    if (!pStack)
        return EResult::TooMuchMemory;
    pcre_assign_jit_stack(pStudy, nullptr, pStack.get());
    const EResult eResult = m_pCompiled->Match(subject, pStudy);
    pcre_assign_jit_stack(pStudy, nullptr, nullptr);
    return eResult;
}

} // namespace QvXmlLib9
