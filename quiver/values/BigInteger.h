#pragma once

#include "quiver/foundation/Export.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Whole numbers of any size: the value of XML Schema `integer`, and the two halves of `CDecimal`.
///
///     CBigInteger total(L"123456789012345678901234567890");
///     total += CBigInteger(1);
///     std::wstring strText = total.ToString();

namespace QvXmlLib9
{

class CDecimal;

/// A sign and decimal digits. Values live in documents as decimal text and powers of ten are what `CDecimal` works
/// with, so the base is ten: parsing, printing and comparing take time linear in the digits, multiplying and dividing
/// the product of the two lengths.
///
/// Numbers of C++ take part in operators as objects, as in `value < CBigInteger(10)`: there are conversions in both
/// directions, so a bare 10 would be ambiguous.
///
/// Zero may carry a sign (`CDecimal` needs it to keep the sign of -0.5). `==` takes both zeros for equal; the order
/// puts the negative zero below the positive one.
///
/// There is no limit on the size but memory; running out of it passes as `std::bad_alloc`. All other failures are
/// `CQvInvalidValueException`. An object is used by one thread at a time, unless all of them only read. An object that
/// was moved from may be assigned to or destroyed.
class QVXMLLIB_API CBigInteger
{
public:
    /// 2147483647
    static const CBigInteger MAX_LONG;
    /// -2147483648
    static const CBigInteger MIN_LONG;
    /// 9223372036854775807
    static const CBigInteger MAX_LONGLONG;
    /// -9223372036854775808
    static const CBigInteger MIN_LONGLONG;
    /// 17 followed by 307 zeros: the bound of `CDecimal::ToDouble`. The true limit of a double lies a little above it.
    static const CBigInteger MAX_DOUBLE;
    /// MAX_DOUBLE with a minus sign.
    static const CBigInteger MIN_DOUBLE;

    /// Zero.
    CBigInteger();

    CBigInteger(int nValue);

    CBigInteger(__int64 nValue);

    /// The nearest whole number; a half is rounded toward zero, so 2.5 gives 2 and 2.51 gives 3. Digits are those of
    /// repeated division by 10.0 in floating point, hence inexact from 2 to the power of 52 on. A value that is not a
    /// number gives zero.
    /// @throws CQvInvalidValueException with the words of `CDecimal(double)` if `dValue` is infinite.
    CBigInteger(double dValue);

    /// The value of `value` rounded to a whole number, a half toward zero.
    CBigInteger(const CDecimal& value);

    /// Parses, see `Parse`.
    CBigInteger(const wchar_t* lpctValue);

    CBigInteger(const CBigInteger& source);
    CBigInteger(CBigInteger&& source) noexcept;
    CBigInteger& operator=(const CBigInteger& source);
    CBigInteger& operator=(CBigInteger&& source) noexcept;
    virtual ~CBigInteger();

    /// Takes the value of a text.
    ///
    /// A text of digits, signs and white space (blank, tab, line feed, carriage return) is read as an integer of any
    /// length: blanks at both ends are cut, a leading "-" is the sign, and the value is the run of digits at the end of
    /// the text. What stands before that run is ignored ("+12" is 12, "12 34" is 34, "1-2" is 2), and without such a
    /// run the value is zero ("", "-", "12\n").
    ///
    /// Any other text is read by `CDecimal`, within its limits, and rounded to a whole number, a half toward zero:
    /// "2.5" is 2, "2.6" is 3, "1E3" is 1000.
    ///
    /// A null pointer counts as an empty text. On failure this object keeps its value.
    /// @throws CQvInvalidValueException with the words of `CDecimal(const wchar_t*)`.
    void Parse(const wchar_t* lpctValue);

    /// The digits without leading zeros, with "-" in front of a negative number. Zero is "0", whatever its sign.
    std::wstring ToString() const;

    bool operator==(const CBigInteger& other) const;
    bool operator!=(const CBigInteger& other) const;
    bool operator<(const CBigInteger& other) const;
    bool operator<=(const CBigInteger& other) const;
    bool operator>(const CBigInteger& other) const;
    bool operator>=(const CBigInteger& other) const;

    CBigInteger operator+(const CBigInteger& other) const;
    CBigInteger operator-(const CBigInteger& other) const;
    CBigInteger operator*(const CBigInteger& other) const;

    /// The quotient, cut toward zero: -7 / 2 is -3.
    /// @throws CQvInvalidValueException "ERROR: Overflow in operator/." if `other` is zero.
    CBigInteger operator/(const CBigInteger& other) const;

    /// The remainder, with the sign of this number: -7 % 2 is -1. Zero for a number that is zero.
    /// @throws CQvInvalidValueException "ERROR: Overflow in operator%." if `other` is negative, or zero and this number
    ///         is not.
    CBigInteger operator%(const CBigInteger& other) const;

    CBigInteger& operator+=(const CBigInteger& other);
    CBigInteger& operator-=(const CBigInteger& other);
    CBigInteger& operator*=(const CBigInteger& other);

    /// The quotient, cut toward zero. Other than `/` it refuses a negative divisor.
    /// @throws CQvInvalidValueException "ERROR: Overflow in operator /=." if `other` is negative, or zero and this
    ///         number is not.
    CBigInteger& operator/=(const CBigInteger& other);

    /// The remainder, as `%` gives it.
    /// @throws CQvInvalidValueException "ERROR: Overflow in operator%=." if `other` is negative, or zero and this
    ///         number is not.
    CBigInteger& operator%=(const CBigInteger& other);

    /// Negates this object in place and returns it; use GetNegative where this object must keep its value.
    CBigInteger& operator-();

    /// Flips the sign, that of zero too.
    void Negate();

    /// Makes the sign positive.
    void Abs();

    CBigInteger GetNegative() const;
    CBigInteger GetAbs() const;

    /// @throws CQvInvalidValueException "ERROR: Value out of bound of int." beyond MIN_LONG or MAX_LONG.
    operator int() const;

    /// Exact for magnitudes up to 4999999999 only: powers of ten and their products are held in 32 bits and wrap
    /// (docs/compatibility.md: Big integers as 64 bits). Use `CDecimal::ToLongLong` for the whole range.
    /// @throws CQvInvalidValueException "ERROR: Value out of bound of LONGLONG." beyond MIN_LONGLONG or MAX_LONGLONG.
    operator __int64() const;

    /// The largest whole number whose square does not exceed this number.
    /// @throws CQvInvalidValueException "ERROR: Negative Number in function SquareRoot()." if this number is negative,
    /// and "ERROR: Overflow in operator/." if it is zero.
    CBigInteger SquareRoot() const;

    /// 10 to the power of `nExponent`.
    static CBigInteger Pow10(unsigned int nExponent);

protected:
    /// Magnitudes are vectors of digit values 0 to 9, the least significant first, without zeros at the high end; zero
    /// is the single digit 0. An empty vector counts as zero.
    CBigInteger(int nSign, const std::vector<wchar_t>& digits);

    static void Build(unsigned int nValue, std::vector<wchar_t>& digits);
    static void BuildDWORDLONG(unsigned __int64 nValue, std::vector<wchar_t>& digits);
    /// `dValue` is not negative and finite.
    static void BuildDouble(double dValue, std::vector<wchar_t>& digits);
    /// The run of digits at the end of the text; zero if there is none.
    static void Build(const std::wstring& strValue, std::vector<wchar_t>& digits);

    /// Removes zeros from the high end, and makes zero a single digit.
    static void Clean(std::vector<wchar_t>& digits);

    /// 1, 0 or -1 as `a` is larger than, equal to or smaller than `b`.
    static int Compare(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b);

    /// The results of these may replace an operand: `out` may be `a` or `b`.
    static void Add(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& out);
    /// `a` is not smaller than `b`.
    static void Subtract(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& out);
    static void Multiply(const std::vector<wchar_t>& a, wchar_t cDigit, std::vector<wchar_t>& out);
    static void Multiply(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& out);

    /// Inserts `nCount` zeros at the low end.
    static void ShiftLeft(std::vector<wchar_t>& digits, int nCount);

    /// The number of digits, at least 1.
    static int Position(const std::vector<wchar_t>& digits);

    /// 10 to the power of `nExponent`.
    static void Pow10(unsigned int nExponent, std::vector<wchar_t>& out);

    /// Quotient and remainder of `a` by `b`; 0 and `a` if `b` is zero. `quotient` and `remainder` are distinct, and may
    /// replace the operands.
    static void Divide(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& quotient,
                       std::vector<wchar_t>& remainder);

private:
    friend class CDecimal;

    CBigInteger(int nSign, std::vector<wchar_t>&& digits);

    static void BuildFromEnd(std::wstring_view text, std::vector<wchar_t>& digits);
    /// The value of `nCount` digits of a text; zero has no digit.
    static void BuildDigits(const wchar_t* pFirst, std::size_t nCount, std::vector<wchar_t>& digits);
    void AppendDigits(std::wstring& strText) const;
    bool IsZeroValue() const;
    /// -1, 0 or 1 as this number stands below, at or above `other` in the order, in which the two zeros differ.
    int Order(const CBigInteger& other) const;
    /// Adds `other` as if its sign were `nSign`.
    void Accumulate(const CBigInteger& other, int nSign);
    void Throw_IfNoDivisor(const CBigInteger& divisor, const wchar_t* lpctMessage) const;
    CBigInteger Quotient(const CBigInteger& divisor) const;
    CBigInteger Remainder(const CBigInteger& divisor) const;
    /// Whether the value fits a signed integer type with this maximum.
    bool FitsInteger(unsigned __int64 nMaximum) const;
    /// The value, which fits.
    __int64 ToInteger() const;

    /// 1 or -1.
    int m_sign;
    std::vector<wchar_t> m_digits;
};

} // namespace QvXmlLib9
