// Arithmetic with two numbers, one in each line, against the laws that hold for exact numbers.

#include "fuzz/FuzzInput.h"

#include "quiver/values/BigInteger.h"
#include "quiver/values/Decimal.h"

using namespace QvXmlLib9;

namespace
{

/// Multiplying takes the product of the lengths, and a few characters with an exponent make thousands of digits.
const std::size_t s_nMaxDigits = 400;

void CheckIntegers(const std::wstring& strA, const std::wstring& strB)
{
    const CBigInteger a(strA.c_str());
    const CBigInteger b(strB.c_str());
    if (a.ToString().size() > s_nMaxDigits || b.ToString().size() > s_nMaxDigits)
        return;
    fuzz::Require(CBigInteger(a.ToString().c_str()) == a, "an integer reads as it was printed");
    fuzz::Require(a + b - b == a, "a + b - b is a");
    fuzz::Require(a * b == b * a && (a + b) * (a + b) == a * a + a * b + a * b + b * b, "products add up");
    fuzz::Require((a < b) + (a > b) + (a == b) >= 1 && (a <= b) == !(a > b), "the order is total");
    if (b > CBigInteger(0))
        fuzz::Require(a / b * b + a % b == a, "quotient and remainder give the number");
    if (a > CBigInteger(0))
        fuzz::Require(a.SquareRoot() * a.SquareRoot() <= a, "a root is not too large");
}

void CheckDecimals(const std::wstring& strA, const std::wstring& strB)
{
    CDecimal a(strA.c_str());
    CDecimal b(strB.c_str());
    const std::wstring strPrinted[] = {a.ToString(), b.ToString(), a.ToString(0), a.ToString(3)};
    if (strPrinted[0].size() > s_nMaxDigits || strPrinted[1].size() > s_nMaxDigits)
        return;
    // A value that was rounded to a whole unit of its last place keeps that unit in the fraction, on purpose.
    if (CDecimal(strPrinted[0].c_str()) != a || CDecimal(strPrinted[1].c_str()) != b)
        return;
    fuzz::Require(a + b - b == a && a + b == b + a, "sums are exact");
    fuzz::Require(a * b == b * a, "a product does not depend on the order");
    fuzz::Require(a.GetNegative() + a == CDecimal(), "a number and its negative are nothing");
    fuzz::Succeeds([&] { (a / b).ToString(); });
    fuzz::Succeeds([&] { a.ToDouble(); });
    fuzz::Succeeds([&] { a.ToLongLong(); });
    fuzz::Require(b.ToBigInteger() == CBigInteger(b), "a decimal rounds to an integer in one way");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::vector<std::wstring> lines = fuzz::Lines(fuzz::Text(pData, nSize), 2);
    fuzz::Succeeds([&] { CheckIntegers(lines[0], lines[1]); });
    fuzz::Succeeds([&] { CheckDecimals(lines[0], lines[1]); });
    return 0;
}
