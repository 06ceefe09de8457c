// Any text as a value of each simple type, under the white space rule that the first byte picks, and back to text.

#include "fuzz/FuzzInput.h"

#include "quiver/values/Conversions.h"

using namespace QvXmlLib9;
using Rule = CWhitespaceUtils::WhitespaceRule;

namespace
{

/// Reads, prints, and for types whose printed form is exact reads again.
template <class TValue, class TPrint>
void Convert(TValue (*pfnRead)(const std::wstring&, Rule), TPrint Print, const std::wstring& strText, Rule eRule,
             bool bExact)
{
    std::wstring strPrinted;
    if (fuzz::Succeeds([&] { strPrinted = Print(pfnRead(strText, eRule)); }) && bExact)
        fuzz::Require(Print(pfnRead(strPrinted, eRule)) == strPrinted, "what was printed reads as it was");
}

template <class TValue>
std::wstring PrintNumber(std::wstring (*pfnPrint)(TValue, const wchar_t*), TValue value)
{
    return pfnPrint(value, nullptr) + pfnPrint(value, L"%.3f") + pfnPrint(value, L"%30.20e");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    using C = CConversions;
    if (nSize == 0)
        return 0;
    const auto eRule = static_cast<Rule>(pData[0] % 5);
    const std::wstring strText = fuzz::Text(pData + 1, nSize - 1);
    Convert(C::hexBinaryFromString, C::hexBinaryToString, strText, eRule, true);
    Convert(C::base64BinaryFromString, C::base64BinaryToString, strText, eRule, true);
    Convert(C::i1FromString, C::i1ToString, strText, eRule, true);
    Convert(C::i2FromString, C::i2ToString, strText, eRule, true);
    Convert(C::i4FromString, C::i4ToString, strText, eRule, true);
    Convert(C::i8FromString, C::i8ToString, strText, eRule, true);
    Convert(C::ui1FromString, C::ui1ToString, strText, eRule, true);
    Convert(C::ui2FromString, C::ui2ToString, strText, eRule, true);
    Convert(C::ui4FromString, C::ui4ToString, strText, eRule, true);
    Convert(C::ui8FromString, C::ui8ToString, strText, eRule, true);
    Convert(
        C::r4FromString, [](float f) { return PrintNumber(C::r4ToString, f); }, strText, eRule, false);
    Convert(
        C::r8FromString, [](double d) { return PrintNumber(C::r8ToString, d); }, strText, eRule, false);
    Convert(C::durationFromString, C::durationToString, strText, eRule, false);
    Convert(C::yearMonthFromString, C::yearMonthToString, strText, eRule, false);
    Convert(C::monthDayFromString, C::monthDayToString, strText, eRule, false);
    Convert(C::yearFromString, C::yearToString, strText, eRule, false);
    Convert(C::monthFromString, C::monthToString, strText, eRule, false);
    Convert(C::dayFromString, C::dayToString, strText, eRule, false);
    Convert(C::dateFromString, C::dateToString, strText, eRule, false);
    Convert(C::datetimeFromString, C::datetimeToString, strText, eRule, false);
    Convert(C::timeFromString, C::timeToString, strText, eRule, false);
    Convert(C::charFromString, C::charToString, strText, eRule, false);
    Convert(C::stringFromString, C::stringToString, strText, eRule, false);
    Convert(C::booleanFromString, C::booleanToString, strText, eRule, true);
    Convert(
        C::decimalFromString, [](const CDecimal& d) { return C::decimalToString(d, nullptr); }, strText, eRule, false);
    Convert(C::integerFromString, C::integerToString, strText, eRule, true);
    return 0;
}
