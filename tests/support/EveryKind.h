#pragma once

#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "quiver/values/ItemTraits.h"
#include "tests/support/Dates.h"
#include "tests/support/Expect.h"
#include "tests/support/FlexClass.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

/// @file
/// One object with a value of every kind at its extremes, each as an attribute and as an element, for the tests that
/// send it through the forms of a document. Single characters are left out: no record takes them.
///
///     const CEveryKindShape shape;
///     CFlexClass object(shape);
///     FillEveryKind(object);
///     // ...written, and read into `again`
///     CheckEveryKind(again);

namespace QvTest
{

/// A value and its text.
struct SExtreme
{
    QvXmlLib9::QvVariant value;
    std::wstring strText;
};

template <class TArgument, class TValue>
SExtreme MakeExtreme(void (QvXmlLib9::QvVariant::*pfnSet)(TArgument), const TValue& value, const std::wstring& strText)
{
    SExtreme extreme;
    (extreme.value.*pfnSet)(static_cast<std::remove_const_t<std::remove_reference_t<TArgument>>>(value));
    extreme.strText = strText;
    return extreme;
}

/// The texts are written out, so that a mistake that writing and reading have in common shows as well.
inline std::vector<SExtreme> MakeExtremes()
{
    using QvXmlLib9::CBigInteger;
    using QvXmlLib9::CBinaryData;
    using QvXmlLib9::CDecimal;
    using V = QvXmlLib9::QvVariant;
    using F = std::numeric_limits<float>;
    using D = std::numeric_limits<double>;
    CBinaryData none;
    none.SetAsHexString(L"");
    CBinaryData three;
    three.SetAsHexString(L"00FF80");
    const auto text = [](const wchar_t* lpctText)
    {
        return MakeExtreme(&V::SetString, std::wstring(lpctText), lpctText);
    };
    return {
        MakeExtreme(&V::SetHexBinary, none, L""),
        MakeExtreme(&V::SetHexBinary, three, L"00FF80"),
        MakeExtreme(&V::SetBase64Binary, none, L""),
        MakeExtreme(&V::SetBase64Binary, three, L"AP+A"),
        MakeExtreme(&V::SetI1, -128, L"-128"),
        MakeExtreme(&V::SetI1, 127, L"127"),
        MakeExtreme(&V::SetI2, -32768, L"-32768"),
        MakeExtreme(&V::SetI2, 32767, L"32767"),
        MakeExtreme(&V::SetI4, -2147483647L - 1, L"-2147483648"),
        MakeExtreme(&V::SetI4, 2147483647L, L"2147483647"),
        MakeExtreme(&V::SetI8, std::numeric_limits<long long>::min(), L"-9223372036854775808"),
        MakeExtreme(&V::SetI8, std::numeric_limits<long long>::max(), L"9223372036854775807"),
        MakeExtreme(&V::SetUI1, 0, L"0"),
        MakeExtreme(&V::SetUI1, 255, L"255"),
        MakeExtreme(&V::SetUI2, 0, L"0"),
        MakeExtreme(&V::SetUI2, 65535, L"65535"),
        MakeExtreme(&V::SetUI4, 0UL, L"0"),
        MakeExtreme(&V::SetUI4, 4294967295UL, L"4294967295"),
        MakeExtreme(&V::SetUI8, 0ULL, L"0"),
        MakeExtreme(&V::SetUI8, std::numeric_limits<unsigned long long>::max(), L"18446744073709551615"),
        MakeExtreme(&V::SetR4, 3.402823e+38F, L"3.402823e+38"),
        MakeExtreme(&V::SetR4, 1.175495e-38F, L"1.175495e-38"),
        MakeExtreme(&V::SetR4, -F::infinity(), L"-INF"),
        MakeExtreme(&V::SetR4, F::quiet_NaN(), L"NaN"),
        MakeExtreme(&V::SetR8, -1.797693134862315e+308, L"-1.797693134862315e+308"),
        MakeExtreme(&V::SetR8, D::denorm_min(), L"4.940656458412465e-324"),
        MakeExtreme(&V::SetR8, D::infinity(), L"INF"),
        MakeExtreme(&V::SetR8, -0.0, L"-0"),
        MakeExtreme(&V::SetDuration, Span(L"P65535Y11M30DT23H59M59.999S"), L"P65535Y11M30DT23H59M59.999S"),
        MakeExtreme(&V::SetDuration, Span(L"-P1D"), L"-P1D"),
        MakeExtreme(&V::SetYearMonth, Date(L"0001-01"), L"0001-01"),
        MakeExtreme(&V::SetYearMonth, Date(L"9999-12"), L"9999-12"),
        MakeExtreme(&V::SetMonthDay, Date(L"--01-01"), L"--01-01"),
        MakeExtreme(&V::SetMonthDay, Date(L"--12-31"), L"--12-31"),
        MakeExtreme(&V::SetYear, 1000, L"1000"),
        MakeExtreme(&V::SetYear, 9999, L"9999"),
        MakeExtreme(&V::SetMonth, 1, L"--01"),
        MakeExtreme(&V::SetMonth, 12, L"--12"),
        MakeExtreme(&V::SetDay, 1, L"---01"),
        MakeExtreme(&V::SetDay, 31, L"---31"),
        MakeExtreme(&V::SetDate, Date(L"0001-01-01"), L"0001-01-01"),
        MakeExtreme(&V::SetDate, Date(L"9999-12-31+14:00"), L"9999-12-31+14:00"),
        MakeExtreme(&V::SetDateTime, DateTime(L"0001-01-01T00:00:00"), L"0001-01-01T00:00:00"),
        MakeExtreme(&V::SetDateTime, DateTime(L"9999-12-31T23:59:59.999999999Z"), L"9999-12-31T23:59:59.999999999Z"),
        MakeExtreme(&V::SetTime, Time(L"00:00:00"), L"00:00:00"),
        MakeExtreme(&V::SetTime, Time(L"23:59:59.999999999-14:00"), L"23:59:59.999999999-14:00"),
        text(L""),
        text(L"<&>\"']]>"),
        text(L" a  b\nc\n "),
        text(L"\x80\x85\x7FF\x800\x2028\xD7FF\xE000\xFFFD\xD800\xDC00\xDBFF\xDFFD"),
        text(std::wstring(64, L'x').c_str()),
        text(std::wstring(65, L'y').c_str()),
        text(std::wstring(321, L'z').c_str()),
        MakeExtreme(&V::SetBoolean, false, L"false"),
        MakeExtreme(&V::SetBoolean, true, L"true"),
        MakeExtreme(&V::SetDecimal, CDecimal(L"-79228162514264337593543950335.5"), L"-79228162514264337593543950335.5"),
        MakeExtreme(&V::SetDecimal, CDecimal(L"0.0000000000000000000000000001"), L"0.0000000000000000000000000001"),
        MakeExtreme(&V::SetInteger, CBigInteger(L"-340282366920938463463374607431768211456"),
                    L"-340282366920938463463374607431768211456"),
        MakeExtreme(&V::SetInteger, CBigInteger(L"0"), L"0"),
    };
}

/// They are made once for a program.
inline const std::vector<SExtreme>& Extremes()
{
    static const std::vector<SExtreme> s_extremes = MakeExtremes();
    return s_extremes;
}

inline constexpr wchar_t s_lpctEveryKindNamespace[] = L"urn:every-kind";

/// A class with two properties for each extreme: an attribute and an element, named by its kind and its number. A text
/// of any length follows, so that a document can be longer than whatever reads it in pieces takes at a time.
class CEveryKindShape : public CShape
{
public:
    CEveryKindShape()
        : CShape(QvXmlLib9Data::GroupType_Sequence, QvXmlLib9Data::ElementType_Element, L"everyKind",
                 s_lpctEveryKindNamespace)
    {
        m_names.reserve(Extremes().size()); // the records keep pointers into it
        for (std::size_t n = 0; n < Extremes().size(); ++n)
        {
            m_names.push_back(Extremes()[n].value.GetType() + std::to_wstring(n));
            AddBoth(m_names[n].c_str(), static_cast<int>(n), Extremes()[n].value.GetTypeAsEnum());
        }
        Add(new QvXmlLib9Data::CElementInfoSeqPrimMnd(L"padding", s_lpctEveryKindNamespace, PaddingProperty(),
                                                      QvXmlLib9::ItemType_string, nullptr, s_eRule, NoFacets()));
    }

    static int AttributeProperty(std::size_t n) { return static_cast<int>(n); }
    static int ElementProperty(std::size_t n) { return static_cast<int>(Extremes().size() + n); }
    static int PaddingProperty() { return static_cast<int>(2 * Extremes().size()); }

    const std::wstring& NameOf(std::size_t n) const { return m_names[n]; }

private:
    static constexpr auto s_eRule = QvXmlLib9::CWhitespaceUtils::WhitespaceRule_Preserve;

    static const QvXmlLib9::CPrimitiveRestrictions& NoFacets()
    {
        static const QvXmlLib9::CPrimitiveRestrictions s_noFacets(L"", -1, -1, L"", L"", L"", L"", -1);
        return s_noFacets;
    }

    void AddBoth(const wchar_t* lpctName, int n, QvXmlLib9::ItemType eType)
    {
        const auto nExtreme = static_cast<std::size_t>(n);
        Add(new QvXmlLib9Data::CAttributeInfoPrimitive(lpctName, L"", AttributeProperty(nExtreme), false, eType,
                                                       nullptr, s_eRule, NoFacets(), L""));
        Add(new QvXmlLib9Data::CElementInfoSeqPrimMnd(lpctName, s_lpctEveryKindNamespace, ElementProperty(nExtreme),
                                                      eType, nullptr, s_eRule, NoFacets()));
    }

    std::vector<std::wstring> m_names;
};

/// Gives every property its value.
inline void FillEveryKind(CFlexClass& object, std::size_t nPadding = 0)
{
    for (std::size_t n = 0; n < Extremes().size(); ++n)
    {
        object[CEveryKindShape::AttributeProperty(n)] = Extremes()[n].value;
        object[CEveryKindShape::ElementProperty(n)] = Extremes()[n].value;
    }
    object[CEveryKindShape::PaddingProperty()].SetString(std::wstring(nPadding, L'p'));
}

/// Whether two variants hold the same value of the same kind; NaN is the same as NaN, and 0 not the same as -0.
inline bool HoldTheSame(const QvXmlLib9::QvVariant& left, const QvXmlLib9::QvVariant& right)
{
    bool bSame = false;
    if (left.GetTypeAsEnum() != right.GetTypeAsEnum())
        return false;
    QvXmlLib9::VisitItemType(left.GetTypeAsEnum(),
                             [&](auto traits)
                             {
                                 const auto& a = std::invoke(decltype(traits)::s_kind.pfnGet, left);
                                 const auto& b = std::invoke(decltype(traits)::s_kind.pfnGet, right);
                                 if constexpr (std::is_floating_point_v<std::decay_t<decltype(a)>>)
                                     bSame = a != a ? b != b : a == b && std::signbit(a) == std::signbit(b);
                                 else
                                     bSame = a == b;
                             });
    return bSame;
}

inline void CheckExtreme(const SExtreme& expected, CFlexClass& object, int nProperty, const std::string& strPlace)
{
    EXPECT_TEXT(expected.strText, object.Text(nProperty)) << strPlace;
    EXPECT_TRUE(HoldTheSame(expected.value, object[nProperty]))
        << strPlace << " is not the same, its text is " << Show(object.Text(nProperty));
}

/// Expects every property to have the value that FillEveryKind gave it, of the same kind and with the same text.
inline void CheckEveryKind(CFlexClass& object, const CEveryKindShape& shape, std::size_t nPadding = 0)
{
    for (std::size_t n = 0; n < Extremes().size(); ++n)
    {
        const std::string strName = Show(shape.NameOf(n));
        CheckExtreme(Extremes()[n], object, CEveryKindShape::AttributeProperty(n), "attribute " + strName);
        CheckExtreme(Extremes()[n], object, CEveryKindShape::ElementProperty(n), "element " + strName);
    }
    EXPECT_TEXT(std::wstring(nPadding, L'p'), object.Text(CEveryKindShape::PaddingProperty()));
}

/// The suggested encodings, but text for the kinds of which some extreme does not fit: unsigned numbers beyond the signed
/// ones, and letters, fractions and plus signs that the alphabet of dates lacks.
inline void SuggestWhatFits(QvXmlLib9::CFastInfosetContext& context)
{
    using namespace QvXmlLib9;
    context.SetSuggestedValues();
    for (const ItemType eType : {ItemType_ui8, ItemType_duration, ItemType_date, ItemType_datetime, ItemType_time})
        context.SetEncoding(eType, {0, 0});
}

/// Agrees on the names of every other property and on a value of each place.
inline void AgreeOnVocabulary(QvXmlLib9::CFastInfosetContext& context, const CEveryKindShape& shape)
{
    QvXmlLib9::CFIVocabulary& vocabulary = *context.GetVocabulary();
    for (std::size_t n = 0; n < Extremes().size(); n += 2)
    {
        vocabulary.AddElement(L"", s_lpctEveryKindNamespace, shape.NameOf(n));
        vocabulary.AddAttribute(L"", L"", shape.NameOf(n));
    }
    vocabulary.AddElementValue(L"INF");
    vocabulary.AddAttributeValue(L"true");
    context.SetUseGeneratedVocabulary(true);
}

} // namespace QvTest
