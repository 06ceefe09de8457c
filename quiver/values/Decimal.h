#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/values/BigInteger.h"

#include <string>
#include <vector>

/// @file
/// Exact decimal numbers: the value of XML Schema `decimal`.
///
///     CDecimal price(L"19.99");
///     CDecimal total = price * CDecimal(3);
///     std::wstring strText = total.ToString();   // "59.97"

namespace QvXmlLib9
{

/// A fixed-point number: a whole part of any size, and a fraction whose digits are bounded by a process-wide maximum of
/// decimal places.
///
/// The rounding rules differ between operations (docs/compatibility.md: Rounding of decimals):
/// - A parsed text, a product and a quotient that has more places than the maximum is rounded to it, a half toward
///   zero. A quotient is cut two places behind the maximum before it is rounded.
/// - A sum or a difference keeps all places of its operands.
/// - Rounding never carries into the whole part: "0.999" with a maximum of two places is 0 and 100 hundredths, and
///   prints as "0.100".
/// - `ToString(int)` rounds a half away from zero, `ToLong` toward zero, and `ToLongLong` cuts.
///
/// Zero may carry a sign, in the whole part and in the fraction. A zero with a sign equals "0" and is `<` it. It is
/// `>=` "0" only as long as its fraction has no sign, as in "-0.00", a double of -0.0 and what arithmetic gives; "-0"
/// and "-0.0" have one in both parts. `ToString` does not show the sign.
///
/// Texts that cannot be read and divisions by zero end in `CQvInvalidValueException`, conversions that do not fit in
/// `CQvOverFlowException`, and running out of memory in `std::bad_alloc`. An object is used by one thread at a time,
/// unless all of them only read. An object that was moved from may be assigned to or destroyed.
class QVXMLLIB_API CDecimal
{
public:
    /// The largest positive exponent of a text whose digits are not all 0. A text of a few characters would otherwise
    /// ask for gigabytes of digits; this is far above what any number of a document needs.
    static constexpr int MAX_EXPONENT = 10000;

    /// The most decimal places that are kept, whatever `SetMaxDecimalPlaces` was given.
    static constexpr int MAX_DECIMAL_PLACES = 10000;

    /// Zero.
    CDecimal();

    CDecimal(int nValue);
    /// Takes all bits, where `long` has more than 32 too.
    CDecimal(long nValue);
    CDecimal(__int64 nValue);

    /// The value with 13 decimal places, as "%.13f" prints it; what lies behind them is lost.
    /// @throws CQvInvalidValueException as for a text, if `dValue` is infinite or not a number.
    CDecimal(double dValue);

    /// The value of a text: digits with an optional point, and an optional exponent behind "e" or "E".
    ///
    /// White space (blank, tab, line feed, carriage return) is passed over except among and behind the digits of the
    /// exponent. Signs may stand anywhere before the point, the last one counts: "5-" is -5. Either part may be empty,
    /// as may be the exponent's digits; an empty text or a null pointer is zero. An exponent multiplies or divides by a
    /// power of ten, with the operators of this class.
    ///
    /// @throws CQvInvalidValueException "The string representing a Decimal, contained an invalid char at position %d
    /// [%s]", with the position of the first character that cannot be read, counted from 0, and the whole text. That is
    /// also the failure at the 513th digit of the whole part or of the fraction, at the 33rd digit of the exponent, and
    /// at the digit with which a positive exponent passes MAX_EXPONENT, unless all digits ahead of it are 0.
    CDecimal(const wchar_t* lpctValue);

    CDecimal(const CBigInteger& value);

    CDecimal(const CDecimal& source);
    CDecimal(CDecimal&& source) noexcept;
    CDecimal& operator=(const CDecimal& source);
    CDecimal& operator=(CDecimal&& source) noexcept;
    virtual ~CDecimal();

    // The binary operators leave their operands unchanged, although their signature does not say so of the left one.

    CDecimal operator+(const CDecimal& other);
    CDecimal operator-(const CDecimal& other);
    CDecimal operator*(const CDecimal& other);

    /// @throws CQvInvalidValueException "ERROR: Overflow in operator/." if `other` is zero.
    CDecimal operator/(const CDecimal& other);

    CDecimal& operator+=(const CDecimal& other);
    CDecimal& operator-=(const CDecimal& other);
    CDecimal& operator*=(const CDecimal& other);

    /// @throws CQvInvalidValueException "ERROR: Overflow in operator/." if `other` is zero.
    CDecimal& operator/=(const CDecimal& other);

    CDecimal& operator++();
    CDecimal operator++(int);
    CDecimal& operator--();
    CDecimal operator--(int);

    bool operator==(const CDecimal& other) const;
    bool operator!=(const CDecimal& other) const;
    bool operator<(const CDecimal& other) const;
    bool operator<=(const CDecimal& other) const;
    bool operator>(const CDecimal& other) const;
    bool operator>=(const CDecimal& other) const;

    /// Flips the sign, that of zero too.
    void Negate();

    CDecimal GetNegative() const;

    /// The shortest text: no point behind a whole number, no zeros at the end of a fraction but those that rounding to
    /// the maximum of decimal places left there. The text of a number with a fraction is cut after 1024 characters, that
    /// of a whole number is not.
    std::wstring ToString() const;

    /// The number with `nPlaces` decimal places, a half rounded away from zero
    /// (docs/compatibility.md: Printed places of decimals):
    /// - 0 places leave the point, as in "3."; a negative number of places works like 0;
    /// - zeros at the end of the rounded fraction are not printed beyond the first, so 0.995 with two places is "1.0";
    /// - nothing is rounded if `nPlaces` is not below the maximum of decimal places.
    std::wstring ToString(int nPlaces) const;

    /// The whole part; the fraction is cut.
    /// @throws CQvOverFlowException "The Decimal value if to large to fit into a LONGLONG".
    __int64 ToLongLong() const;

    /// The value rounded to a whole number of 32 bits, a half toward zero.
    /// @throws CQvOverFlowException "The Decimal value if to large to fit into a LONG".
    long ToLong() const;

    /// The nearest double. A value too small for one gives a zero with the sign of the value.
    /// @throws CQvOverFlowException "The Decimal value if to large to fit into a Double" if the whole part lies beyond
    ///         `CBigInteger::MIN_DOUBLE` or `CBigInteger::MAX_DOUBLE`.
    double ToDouble() const;

    /// The value rounded to a whole number, a half toward zero.
    CBigInteger ToBigInteger() const;

    /// The maximum number of decimal places that a parsed value, a product or a quotient keeps: 30, or what
    /// `SetMaxDecimalPlaces` was given last.
    static int GetMaxDecimalPlaces();

    /// Sets the maximum for the whole process; values that exist stay as they are. Call it before other threads use
    /// decimals. With 0 results are rounded to whole numbers, with a negative number they are cut to them, and more
    /// than MAX_DECIMAL_PLACES works like MAX_DECIMAL_PLACES.
    static void SetMaxDecimalPlaces(int nPlaces);

private:
    CDecimal(const CBigInteger& whole, const CBigInteger& fraction, int nDivider);

    void Parse(const wchar_t* lpctValue);
    void Rationalise();
    void ChangeFractionalDivider(int nDivider);
    static int Normalize(CDecimal& a, CDecimal& b);

    /// The maximum of decimal places within its bounds; -1 for every negative one.
    static int GetWorkingPlaces();
    void LimitPlaces();
    /// Whole part and fraction in one magnitude, as a multiple of the last decimal place.
    std::vector<wchar_t> GetMantissa() const;
    static CDecimal FromMantissa(int nSign, const std::vector<wchar_t>& mantissa, int nDivider);
    CDecimal SumWith(CDecimal addend) const;
    /// Brings the fraction of a sum below one and its sign in line with that of the whole part.
    void SettleFraction(int nDivider);
    bool IsZeroValue() const;
    /// -1, 0 or 1 as this number stands below, at or above `other`; of two zeros not both.
    int Order(const CDecimal& other) const;
    /// Whether this number stands below `other`, or at it if that counts too.
    bool IsBelow(const CDecimal& other, bool bOrEqual) const;
    void AppendFraction(std::wstring& strText) const;

    /// The integer part, with the sign of the number; zero keeps it too.
    CBigInteger m_whole;
    /// The digits of the fraction read as an integer, with the sign of the number; zero keeps it too.
    CBigInteger m_fraction;
    /// How many decimal places m_fraction stands for.
    int m_divider;

    static int m_maxDivider;
};

} // namespace QvXmlLib9
