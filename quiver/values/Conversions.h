#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Export.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/Decimal.h"
#include "quiver/values/WhitespaceUtils.h"

#include <string>

namespace QvXmlLib9
{

/// The lexical forms of the simple values: what the library writes for a value, and what it accepts for one.
///
///     const long nCount = CConversions::i4FromString(L" 42 ", CWhitespaceUtils::WhitespaceRule_Collapse);
///     const std::wstring strCount = CConversions::i4ToString(nCount); // "42"
///
/// Every `...FromString` applies the white space rule of the schema type to the text first. Every failure is a
/// `CQvInvalidValueException` that quotes the text; those of the value classes come through unchanged, and an unknown
/// rule fails as in CWhitespaceUtils::ApplyRule. The forms are those of XML Schema Part 2 unless an operation says
/// otherwise. All functions are stateless, may be called on any thread, and depend on no locale.
///
/// Integers and floating point numbers are read up to a zero element of the text, as C text ends there; what stands
/// behind it is ignored.
class QVXMLLIB_API CConversions
{
public:
    CConversions() = delete;

    /// Upper-case hexadecimal, two digits a byte.
    static std::wstring hexBinaryToString(const CBinaryData& value);
    /// Fails like CBinaryData::SetAsHexString.
    static CBinaryData hexBinaryFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    /// Base64 without line breaks.
    static std::wstring base64BinaryToString(const CBinaryData& value);
    /// Text that is no Base64 gives an empty result and no failure (docs/compatibility.md: Base64 that is none); see
    /// CBinaryData::SetAsBase64.
    static CBinaryData base64BinaryFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    /// @name Signed integers
    /// Decimal digits with at most one sign. Blanks in front are accepted under every rule, and an empty text is 0
    /// (docs/compatibility.md: Empty texts of numbers).
    /// A number that does not fit fails with "The value [%s] is to large to fit in a i4" at both ends of the range,
    /// anything behind the digits with "The value [%s] can not be converted to a i4". The narrow types are read as an
    /// i4 first, so what does not fit 32 bits fails with the words for i4.
    /// @{
    static std::wstring i1ToString(char value);
    static char i1FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring i2ToString(short value);
    static short i2FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// The low 32 bits of `value` are printed.
    static std::wstring i4ToString(long value);
    /// -2147483648 to 2147483647, whatever the width of `long`.
    static long i4FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring i8ToString(__int64 value);
    static __int64 i8FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// @}

    /// @name Unsigned integers
    /// As the signed ones; the narrow types are read as an ui4 first. A minus sign is accepted and wraps around:
    /// "-1" is 4294967295 for an ui4 (docs/compatibility.md: Unsigned numbers with a minus).
    /// @{
    static std::wstring ui1ToString(unsigned char value);
    static unsigned char ui1FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring ui2ToString(unsigned short value);
    static unsigned short ui2FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// The low 32 bits of `value` are printed.
    static std::wstring ui4ToString(unsigned long value);
    /// 0 to 4294967295, whatever the width of `long`.
    static unsigned long ui4FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring ui8ToString(unsigned __int64 value);
    static unsigned __int64 ui8FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// @}

    /// @name Floating point numbers
    /// "NaN", "INF" and "-INF" stand for the special values; the case counts. An empty text, "1.#QNAN" and "-NAN" also
    /// read as NaN. Other text is a decimal number with an optional exponent; hexadecimal forms are no numbers. A
    /// number that is too large becomes an infinity, one that is too small 0, neither with a failure. Anything behind
    /// the number fails with "The value [%s] can not be converted to a r4" (or "r8").
    ///
    /// `format` is a `printf` format for one `double`, for instance L"%.2f"; null means L"%.7g" for r4 and L"%.16g" for
    /// r8. NaN and the infinities ignore it. At most 31 characters are printed for r4 and 47 for r8; the rest is cut
    /// off. A format that asks for anything but one floating point number (conversions `e E f F g G`) acts as null; one
    /// without a conversion prints as it stands.
    /// @{
    static std::wstring r4ToString(float value, const wchar_t* format);
    static float r4FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring r8ToString(double value, const wchar_t* format);
    static double r8FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// @}

    static std::wstring durationToString(const CDateTimeSpan& value);
    static CDateTimeSpan durationFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    /// @name Dates and times
    /// The text alone decides the kind of the result: `dateFromString` of L"2001" gives a `dt_gYear`
    /// (docs/compatibility.md: The text decides the kind).
    /// @{
    static std::wstring yearMonthToString(const CDateTime& value);
    static CDateTime yearMonthFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring monthDayToString(const CDateTime& value);
    static CDateTime monthDayFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring dateToString(const CDateTime& value);
    static CDateTime dateFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring datetimeToString(const CDateTime& value);
    static CDateTime datetimeFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring timeToString(const CDateTime& value);
    static CDateTime timeFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// @}

    /// @name Year, month and day as bare numbers
    /// Only the text has the form of a gYear, gMonth ("--07") or gDay ("---07"). Any date that has the field is
    /// accepted: the year of L"2001-05" is 2001. One that lacks it fails with the `CQvInvalidStateException` of
    /// CDateTime. A zone in the text is dropped, and a year before our era wraps around.
    /// @{
    static std::wstring yearToString(unsigned short value);
    static unsigned short yearFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring monthToString(unsigned char value);
    static unsigned char monthFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    static std::wstring dayToString(unsigned char value);
    static unsigned char dayFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
    /// @}

    /// A text of one UTF-16 code unit. A whole code point above 0xFFFF leaves as its surrogate pair.
    static std::wstring charToString(wchar_t value);
    /// The text must be exactly one UTF-16 code unit long.
    static wchar_t charFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    /// A copy.
    static std::wstring stringToString(const std::wstring& value);
    /// What the rule makes of the text.
    static std::wstring stringFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    /// "true" or "false".
    static std::wstring booleanToString(bool value);
    /// "true", "false", "1" or "0" in any case (docs/compatibility.md: Booleans in any case).
    static bool booleanFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    /// @param format null, or the number of fraction digits as decimal text, for instance L"2"; no `printf` format.
    static std::wstring decimalToString(const CDecimal& value, const wchar_t* format);
    static CDecimal decimalFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);

    static std::wstring integerToString(const CBigInteger& value);
    static CBigInteger integerFromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule);
};

} // namespace QvXmlLib9
