#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// An expression as the matching library has it compiled: PatternEnginePcre.cpp for PCRE, PatternEnginePcre2.cpp for PCRE2.
/// One thread at a time.
class CPatternEngine
{
public:
    /// What became of a match at the start of a value.
    enum class EResult
    {
        /// The first match that was found reaches the end of the value.
        Whole,
        None,
        /// More steps than were allowed. What the library allows by itself ends as `None`.
        TooManySteps,
        /// More memory than a match may use.
        TooMuchMemory,
    };

    /// Memory that a match may use for backtracking: some two million repetitions of a group.
    static constexpr std::size_t s_nMostMemory = 64 * 1024 * 1024;

    /// @param strPattern in the library's own dialect and UTF-8; ends at its first zero.
    /// @param strError is given the reason why the expression cannot be compiled, and is left alone otherwise.
    CPatternEngine(const std::string& strPattern, std::string& strError);
    CPatternEngine(CPatternEngine&&) noexcept;
    CPatternEngine& operator=(CPatternEngine&&) noexcept;
    ~CPatternEngine();

    /// @param nSteps 0 for the library's own bound.
    EResult Interpret(std::string_view subject, unsigned nSteps);

    /// Compiles to machine code, which needs a fraction of the time and keeps off the stack. Not every expression can
    /// be, nor can any where the system forbids it.
    /// @return whether there is machine code now.
    bool MakeMachineCode();

    /// Only with machine code.
    /// @param bOwnMemory backtracking takes other memory than the first 32 KiB of the thread's own stack.
    EResult Execute(std::string_view subject, bool bOwnMemory);

private:
    struct SCompiled;
    std::unique_ptr<SCompiled> m_pCompiled;
};

} // namespace QvXmlLib9
