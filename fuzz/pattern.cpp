// Any expression against any value: the expression stands in the first line, the value behind it.

#include "fuzz/FuzzInput.h"

#include "quiver/foundation/Pattern.h"

using namespace QvXmlLib9;

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    // Patterns come from a schema and not from a document, so it is enough that short ones are safe; how long a match
    // may take is a matter of PCRE's limits, tested elsewhere.
    const std::size_t nMaxPattern = 40;
    const std::size_t nMaxValue = 200;

    const std::vector<std::wstring> lines = fuzz::Lines(fuzz::Text(pData, nSize), 2);
    if (lines[0].size() > nMaxPattern || lines[1].size() > nMaxValue)
        return 0;
    std::string strPattern;
    AppendUtf8(strPattern, lines[0]);
    bool bFirst = false;
    bool bSecond = false;
    const bool bUsable = fuzz::Succeeds([&] { bFirst = PatternMatch(strPattern, lines[1]); });
    fuzz::Require(fuzz::Succeeds([&] { bSecond = PatternMatch(strPattern, lines[1]); }) == bUsable,
                  "a remembered expression is as usable as a new one");
    fuzz::Require(bFirst == bSecond, "a remembered expression matches like a new one");
    return 0;
}
