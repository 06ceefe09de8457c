#include "fuzz/Values.h"

#include "fuzz/FuzzInput.h"

#include <cmath>

using namespace QvXmlLib9;

namespace fuzz
{

namespace
{

// What stands outside of XML is not here: a writer's caller has to keep it away.
const wchar_t* const s_texts[] = {
    L"",
    L" ",
    L"a",
    L" a  b\nc ",
    L"\n",
    L"\t",
    L"]]>",
    L"<![CDATA[x]]>",
    L"<&>\"'",
    L"&amp;",
    L"&#10;",
    L"\x7F\x80\x85\x9F\xA0",
    L"\x7FF\x800\x2028\x3000",
    L"\xD7FF\xE000\xFFFD\xFEFF",
    L"\xD800\xDC00",
    L"a\xDBFF\xDFFD",
    L"\xD83D\xDE00\xD83D\xDE00",
    L"xs:int",
    L"p:name",
    L"name",
    L"_a.b-c",
    L":",
    L"a:b:c",
    L"en-GB",
    L"AB-1234",
    L"123-AB",
    L"1234-56",
    L"DE1234567890",
    L"AT611904300234573201",
    L"************1234",
    L"a.b.c",
    L"1.1",
    L"true",
    L"-2147483648",
    L"0",
    L"2000-02-29",
    L"http://example.com/?a=b&c=d#e f",
    L"--",
    L"?>",
    L"e\x301\x20DD",
};

const wchar_t* const s_names[] = {
    L"a",     L"name",      L"xs:int",       L"_",  L"a.b-c_d", L"\xE4\x6F1", L"\x4E00", L"p:q",   L"xml:lang", L"en",
    L"de-AT", L"x-klingon", L"\xD800\xDC00", L"1a", L"a b",     L"",          L" a ",    L"xmlns", L"a\x301",
};

const wchar_t* const s_numbers[] = {
    L"0",
    L"-0",
    L"+1",
    L"1",
    L"-1",
    L"0.5",
    L".5",
    L"5.",
    L"-0.0",
    L"1e3",
    L"1E-30",
    L"007",
    L"100.000",
    L"INF",
    L"NaN",
    L"4999999999",
    L"5000000000",
    L"4294967295",
    L"4294967296",
    L"2147483648",
    L"-2147483648",
    L"-2147483649",
    L"9223372036854775807",
    L"9223372036854775808",
    L"-9223372036854775808",
    L"-9223372036854775809",
    L"18446744073709551615",
    L"18446744073709551616",
    L"-340282366920938463463374607431768211456",
    L"79228162514264337593543950335.5",
    L"0.0000000000000000000000000001",
    L"0.999999999999999999999999999999",
    L"0.9999999999999999999999999999999",
    L"123456789012345678901234567890.123456789012345678901234567890",
    L"90",
    L"-90",
    L"179.9999999",
    L"180",
    L"-180",
};

const wchar_t* const s_durations[] = {
    L"P0D",
    L"PT0S",
    L"-P0D",
    L"P1Y",
    L"-P1Y2M3DT4H5M6.7S",
    L"P65535Y11M30DT23H59M59.999S",
    L"P65536Y",
    L"PT4294967295H",
    L"PT4294967296H",
    L"PT18446744073709551615S",
    L"PT0.000000001S",
    L"PT0.999999999S",
    L"PT15M",
    L"PT14M59.999S",
    L"P",
    L"PT",
    L"P1M",
    L"P400D",
    L"PT0.001001001S",
    L"-PT0.000000001S",
};

const wchar_t* const s_dates[] = {
    L"0001-01-01",
    L"9999-12-31",
    L"-0001-01-01",
    L"-9999-12-31",
    L"2000-02-29",
    L"1900-02-28",
    L"2000-02-29Z",
    L"2000-02-29+14:00",
    L"2000-02-29-14:00",
    L"2000-02-29+00:00",
    L"2000-02-29-00:30",
    L"2001-02-29",
    L"0000-01-01",
    L"0001-01",
    L"9999-12-14:00",
    L"-0001-12Z",
    L"0001",
    L"9999+14:00",
    L"-9999",
    L"--01-01",
    L"--02-29",
    L"--12-31-14:00",
    L"---01",
    L"---31Z",
    L"---45",
    L"--01",
    L"--12+14:00",
    L"--12--",
};

const wchar_t* const s_times[] = {
    L"00:00:00",   L"23:59:59",           L"23:59:59.999999999", L"00:00:00.000000001Z",
    L"23:59:60",   L"24:00:00",           L"12:00:00+14:00",     L"12:00:00-14:00",
    L"12:00:00.1", L"12:00:00.120-00:01", L"00:00:00.001001001",
};

const std::size_t s_lengths[] = {2, 5, 6, 60, 61, 64, 65, 80, 81, 320, 321, 2000, 9000};

const float s_floats[] = {
    0.0F,
    -0.0F,
    1.0F,
    0.1F,
    std::numeric_limits<float>::max(),
    std::numeric_limits<float>::lowest(),
    std::numeric_limits<float>::min(),
    std::numeric_limits<float>::denorm_min(),
    std::numeric_limits<float>::infinity(),
    -std::numeric_limits<float>::infinity(),
    std::numeric_limits<float>::quiet_NaN(),
    16777216.0F,
    999999.5F,
    1e-5F,
};

const double s_doubles[] = {
    0.0,
    -0.0,
    1.0,
    0.1,
    std::numeric_limits<double>::max(),
    std::numeric_limits<double>::lowest(),
    std::numeric_limits<double>::min(),
    std::numeric_limits<double>::denorm_min(),
    std::numeric_limits<double>::infinity(),
    -std::numeric_limits<double>::infinity(),
    std::numeric_limits<double>::quiet_NaN(),
    9007199254740993.0,
    999999999999999.5,
    1e-5,
    4294967296.0,
};

/// Units of the input's, of which those are left out that no document can hold.
std::wstring MakeUnits(CDecisions& decisions)
{
    std::string strBytes = decisions.Bytes(1 + decisions.Below(24));
    std::wstring strText = Text(reinterpret_cast<const std::uint8_t*>(strBytes.data()), strBytes.size());
    std::wstring strKept;
    for (const wchar_t c : strText)
        if ((c >= 0x20 || c == L'\t' || c == L'\n') && c < 0xFFFE)
            strKept += c;
    return strKept;
}

std::wstring MakeDigits(CDecisions& decisions)
{
    std::wstring strDigits = decisions.Bool() ? L"-" : L"";
    const std::size_t nDigits = 1 + decisions.Below(40);
    for (std::size_t n = 0; n < nDigits; ++n)
        strDigits += static_cast<wchar_t>(L'0' + decisions.Below(10));
    return strDigits;
}

} // namespace

std::wstring MakeText(CDecisions& decisions)
{
    switch (decisions.Below(8))
    {
    case 0:
        return MakeUnits(decisions);
    case 1:
        return std::wstring(decisions.OneOf(s_lengths), static_cast<wchar_t>(L'a' + decisions.Below(26)));
    case 2:
    {
        const std::wstring strFirst = decisions.OneOf(s_texts);
        return strFirst + decisions.OneOf(s_texts);
    }
    default:
        return decisions.OneOf(s_texts);
    }
}

std::wstring MakeName(CDecisions& decisions)
{
    return decisions.Below(8) == 0 ? MakeText(decisions) : decisions.OneOf(s_names);
}

std::wstring MakeQName(CDecisions& decisions)
{
    const wchar_t* const names[] = {L"a",     L"p:q", L"xs:int", L"\xE4",  L"p:\x4E00",
                                    L" p:q ", L"p:",  L"1",      L"p:q:r", L"xs:a-b.c"};
    return decisions.OneOf(names);
}

std::vector<std::wstring> MakeNames(CDecisions& decisions)
{
    std::vector<std::wstring> names(decisions.Below(4));
    for (std::wstring& strName : names)
        strName = MakeName(decisions);
    return names;
}

bool MakeBool(CDecisions& decisions)
{
    return decisions.Bool();
}

float MakeFloat(CDecisions& decisions)
{
    return decisions.Below(4) == 0 ? decisions.Bits<float>() : decisions.OneOf(s_floats);
}

double MakeDouble(CDecisions& decisions)
{
    return decisions.Below(4) == 0 ? decisions.Bits<double>() : decisions.OneOf(s_doubles);
}

std::vector<double> MakeDoubles(CDecisions& decisions)
{
    std::vector<double> doubles(decisions.Below(4));
    for (double& d : doubles)
        d = MakeDouble(decisions);
    return doubles;
}

CDecimal MakeDecimal(CDecisions& decisions)
{
    std::wstring strText;
    switch (decisions.Below(4))
    {
    case 0:
        strText = MakeDigits(decisions);
        break;
    case 1:
    {
        strText = MakeDigits(decisions);
        const std::wstring strFraction = MakeDigits(decisions);
        strText += L'.' + strFraction.substr(strFraction[0] == L'-' ? 1 : 0);
        break;
    }
    default:
        strText = decisions.OneOf(s_numbers);
        break;
    }
    // A number that was rounded may end in zeros, which reading drops.
    return CDecimal(CDecimal(strText.c_str()).ToString().c_str());
}

CBigInteger MakeBigInteger(CDecisions& decisions)
{
    return decisions.Below(4) == 0 ? CBigInteger(MakeDigits(decisions).c_str())
                                   : CBigInteger(decisions.OneOf(s_numbers));
}

CDateTimeSpan MakeDuration(CDecisions& decisions)
{
    CDateTimeSpan span;
    if (decisions.Below(4) != 0)
    {
        span.ParseXSDDuration(decisions.OneOf(s_durations));
        return span;
    }
    span.SetYears(MakeInteger<unsigned short>(decisions));
    span.SetMonths(MakeInteger<std::uint32_t>(decisions));
    span.SetDays(MakeInteger<std::uint32_t>(decisions));
    span.SetHours(MakeInteger<std::uint32_t>(decisions));
    span.SetMinutes(MakeInteger<std::uint64_t>(decisions));
    span.SetSeconds(MakeInteger<std::uint64_t>(decisions));
    span.SetMilliSeconds(static_cast<unsigned short>(decisions.Below(1000)));
    span.SetMicroSeconds(static_cast<unsigned short>(decisions.Below(1000)));
    span.SetNanoSeconds(static_cast<unsigned short>(decisions.Below(1000)));
    if (decisions.Bool())
        span.Negate();
    return span;
}

CDateTime MakeDate(CDecisions& decisions)
{
    CDateTime date;
    switch (decisions.Below(8))
    {
    case 0:
        date.SetDateTime(MakeInteger<short>(decisions), decisions.Byte(), decisions.Byte(), decisions.Byte(),
                         decisions.Byte(), decisions.Byte());
        break;
    case 1:
        date = CDateTime(static_cast<short>(1 + decisions.Below(9999)),
                         static_cast<unsigned char>(1 + decisions.Below(12)),
                         static_cast<unsigned char>(1 + decisions.Below(31)));
        break;
    case 2:
        break;
    case 3:
    case 4:
        date.ParseXSDTime(decisions.OneOf(s_times));
        break;
    case 5:
        date.ParseXSDDate(decisions.OneOf(s_dates));
        break;
    default:
        // The first ones are whole dates.
        date.ParseXSDDateTime((std::wstring(s_dates[decisions.Below(7)]) + L'T' + decisions.OneOf(s_times)).c_str());
        break;
    }
    return date;
}

CBinaryData MakeBinary(CDecisions& decisions)
{
    std::string strBytes = decisions.Below(8) == 0
                               ? std::string(decisions.OneOf(s_lengths), static_cast<char>(decisions.Byte()))
                               : decisions.Bytes(decisions.Below(12));
    CBinaryData data;
    data.Append(reinterpret_cast<const unsigned char*>(strBytes.data()), static_cast<unsigned long>(strBytes.size()));
    return data;
}

} // namespace fuzz
