#include "quiver/generated/SimpleType.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Pattern.h"
#include "quiver/generated/LexicalForm.h"
#include "quiver/generated/Prefixes.h"
#include "quiver/generated/Value.h"
#include "quiver/values/Conversions.h"

#include <algorithm>
#include <cmath>

namespace QvXmlLib9
{

namespace
{

bool IsDecimalForm(CSimpleType::EForm eForm)
{
    return eForm == CSimpleType::Form_Integer || eForm == CSimpleType::Form_Decimal;
}

ValueOrder OrderOf(int nComparison)
{
    return nComparison < 0 ? ValueOrder::Below : nComparison > 0 ? ValueOrder::Above : ValueOrder::Equal;
}

ValueOrder CompareNumbers(const std::wstring& strValue, const wchar_t* lpctOther)
{
    const double dValue = CConversions::r8FromString(strValue, CWhitespaceUtils::WhitespaceRule_None);
    const double dOther = CConversions::r8FromString(lpctOther, CWhitespaceUtils::WhitespaceRule_None);
    if (std::isnan(dValue) || std::isnan(dOther))
        return std::isnan(dValue) && std::isnan(dOther) ? ValueOrder::Equal : ValueOrder::None;
    return OrderOf(dValue < dOther ? -1 : dValue > dOther ? 1 : 0);
}

/// Whether values of a form are compared as such, and not by their texts.
bool HasOrder(CSimpleType::EForm eForm)
{
    return IsDecimalForm(eForm) || IsDateForm(eForm) || eForm == CSimpleType::Form_Float ||
           eForm == CSimpleType::Form_Duration;
}

ValueOrder CompareDurationTexts(std::wstring_view value, std::wstring_view other)
{
    SDurationFields fields;
    SDurationFields otherFields;
    if (!ReadDurationFields(value, fields) || !ReadDurationFields(other, otherFields))
        return ValueOrder::None;
    return CompareDurations(fields, otherFields);
}

ValueOrder CompareDateTexts(CSimpleType::EForm eForm, std::wstring_view value, std::wstring_view other)
{
    SDateFields fields;
    SDateFields otherFields;
    if (!ReadDateFields(eForm, value, fields) || !ReadDateFields(eForm, other, otherFields))
        return ValueOrder::None;
    return CompareDates(fields, otherFields);
}

/// Both texts have the form.
ValueOrder Compare(CSimpleType::EForm eForm, const std::wstring& strValue, const wchar_t* lpctOther)
{
    if (IsDecimalForm(eForm))
        return OrderOf(CompareDecimals(strValue, lpctOther));
    if (eForm == CSimpleType::Form_Float)
        return CompareNumbers(strValue, lpctOther);
    return eForm == CSimpleType::Form_Duration ? CompareDurationTexts(strValue, lpctOther)
                                               : CompareDateTexts(eForm, strValue, lpctOther);
}

bool IsTrue(std::wstring_view text)
{
    return text == L"true" || text == L"1";
}

bool AreEqualHex(std::wstring_view a, std::wstring_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t c, wchar_t d) { return (c | 0x20) == (d | 0x20); });
}

/// Equality of two atomic values.
bool AreEqual(CSimpleType::EForm eForm, const std::wstring& strValue, const wchar_t* lpctOther)
{
    if (HasOrder(eForm))
        return Compare(eForm, strValue, lpctOther) == ValueOrder::Equal;
    switch (eForm)
    {
    case CSimpleType::Form_Boolean:
        return IsTrue(strValue) == IsTrue(lpctOther);
    case CSimpleType::Form_HexBinary:
        return AreEqualHex(strValue, lpctOther);
    case CSimpleType::Form_Base64Binary:
        return AreEqualBase64(strValue, lpctOther);
    case CSimpleType::Form_QName:
        return CNameScope::IsSame(strValue, lpctOther);
    default:
        return strValue == lpctOther;
    }
}

std::string ToUtf8Text(std::wstring_view text)
{
    std::string strOut;
    AppendUtf8(strOut, text);
    return strOut;
}

std::wstring Quoted(const wchar_t* lpctFormat, const wchar_t* lpctText)
{
    return FormatString(lpctFormat, lpctText);
}

std::wstring Numbered(const wchar_t* lpctFormat, long long nNumber)
{
    return FormatString(lpctFormat, std::to_wstring(nNumber).c_str());
}

/// XML Schema Part 2, 4.3.6: unlike CWhitespaceUtils this keeps a carriage return apart from what is around it.
void ReplaceWhiteSpace(std::wstring& strText)
{
    std::replace_if(strText.begin(), strText.end(), CWhitespaceUtils::IsWhiteSpace, L' ');
}

void CollapseWhiteSpace(std::wstring& strText)
{
    if (std::none_of(strText.begin(), strText.end(), CWhitespaceUtils::IsWhiteSpace))
        return;
    ReplaceWhiteSpace(strText);
    const auto itEnd =
        std::unique(strText.begin(), strText.end(), [](wchar_t a, wchar_t b) { return a == L' ' && b == L' '; });
    strText.erase(itEnd, strText.end());
    if (!strText.empty() && strText.back() == L' ')
        strText.pop_back();
    if (!strText.empty() && strText.front() == L' ')
        strText.erase(0, 1);
}

} // namespace

const wchar_t* CSimpleType::GetValueText(std::size_t nIndex) const
{
    if (nIndex >= m_nValues)
        throw CQvInvalidParamException(
            FormatString(L"The enumeration has no value %s", std::to_wstring(nIndex).c_str()));
    return m_ppValues[nIndex];
}

bool CSimpleType::HasPrefixes() const
{
    // The names of an enumeration say their namespaces, unless an earlier generator wrote them.
    if (m_nValues > 0 && *m_ppValues[0] != L'{')
        return false;
    if (m_eForm == Form_List)
        return GetItem().HasPrefixes();
    bool bPrefixes = m_eForm == Form_QName;
    for (std::size_t n = 0; n < m_nMembers && !bPrefixes; ++n)
        bPrefixes = GetMember(n).HasPrefixes();
    return bPrefixes;
}

int CSimpleType::FindValue(const std::wstring& strText) const
{
    for (std::size_t n = 0; n < m_nValues; ++n)
    {
        if (IsSameValue(strText, m_ppValues[n]))
            return static_cast<int>(n);
    }
    return -1;
}

/// Equality of two values that the type has: 1 and 01 are one number, and one item of a list of numbers.
bool CSimpleType::IsSameValue(const std::wstring& strText, const wchar_t* lpctOther) const
{
    if (m_eForm == Form_List)
    {
        const std::vector<std::wstring_view> items = SplitList(strText);
        const std::vector<std::wstring_view> others = SplitList(lpctOther);
        return std::equal(items.begin(), items.end(), others.begin(), others.end(),
                          [this](std::wstring_view item, std::wstring_view other)
                          { return GetItem().IsSameValue(std::wstring(item), std::wstring(other).c_str()); });
    }
    if (m_eForm != Form_Union)
        return AreEqual(m_eForm, strText, lpctOther);
    const CSimpleType* const pMember = FindMember(strText);
    return pMember != nullptr && pMember == FindMember(lpctOther) &&
           pMember->IsSameValue(pMember->Normalize(strText), pMember->Normalize(lpctOther).c_str());
}

/// The type of a union that a value has: the first that takes it, null for none.
const CSimpleType* CSimpleType::FindMember(const std::wstring& strText) const
{
    for (std::size_t n = 0; n < m_nMembers; ++n)
    {
        const CSimpleType& member = GetMember(n);
        if (member.IsValid(member.Normalize(strText)))
            return &member;
    }
    return nullptr;
}

bool CSimpleType::IsNormalized(std::string_view svUtf8) const
{
    if (m_eWhiteSpace == CWhitespaceUtils::WhitespaceRule_None)
        return true;
    const auto IsLineOrTab = [](char c)
    {
        return c == '\t' || c == '\n' || c == '\r';
    };
    if (std::any_of(svUtf8.begin(), svUtf8.end(), IsLineOrTab))
        return false;
    return m_eWhiteSpace != CWhitespaceUtils::WhitespaceRule_Collapse || svUtf8.empty() ||
           (svUtf8.front() != ' ' && svUtf8.back() != ' ' && svUtf8.find("  ") == std::string_view::npos);
}

int CSimpleType::FindUtf8Value(std::string_view svUtf8) const
{
    if (m_eForm != Form_Text || m_lpctPattern != nullptr || !HasNoLengths() || HasBounds() || !IsNormalized(svUtf8))
        return -1;
    const auto IsSame = [svUtf8](std::wstring_view svValue)
    {
        // Texts beyond ASCII never compare equal here, and take the longer look.
        return svValue.size() == svUtf8.size() &&
               std::equal(svUtf8.begin(), svUtf8.end(), svValue.begin(),
                          [](char c, wchar_t cValue)
                          { return static_cast<unsigned char>(c) < 0x80 && static_cast<wchar_t>(c) == cValue; });
    };
    const wchar_t* const* const ppEnd = m_ppValues + m_nValues;
    const wchar_t* const* const ppFound = std::find_if(m_ppValues, ppEnd, IsSame);
    return ppFound == ppEnd ? -1 : static_cast<int>(ppFound - m_ppValues);
}

bool CSimpleType::TakesUtf8(std::string_view svUtf8) const
{
    if (m_eForm != Form_Text || m_nValues > 0 || !HasNoDigits() || HasBounds() || !IsNormalized(svUtf8))
        return false;
    if (m_nMinLength >= 0 || m_nMaxLength >= 0)
    {
        const auto nLength = std::count_if(svUtf8.begin(), svUtf8.end(),
                                           [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
        if (nLength < m_nMinLength || (m_nMaxLength >= 0 && nLength > m_nMaxLength))
            return false;
    }
    return m_lpctPattern == nullptr || PatternMatch(m_lpctPattern, svUtf8);
}

std::wstring CSimpleType::Normalize(std::wstring strText) const
{
    if (m_eWhiteSpace == CWhitespaceUtils::WhitespaceRule_Collapse)
        CollapseWhiteSpace(strText);
    else if (m_eWhiteSpace == CWhitespaceUtils::WhitespaceRule_Replace)
        ReplaceWhiteSpace(strText);
    return strText;
}

bool CSimpleType::HasBounds() const
{
    return m_lpctMinInclusive != nullptr || m_lpctMaxInclusive != nullptr || m_lpctMinExclusive != nullptr ||
           m_lpctMaxExclusive != nullptr;
}

bool CSimpleType::HasChecks() const
{
    const bool bTextForm = m_eForm >= Form_Name || IsDateForm(m_eForm) || m_eForm == Form_Duration;
    return bTextForm || m_eWhiteSpace == CWhitespaceUtils::WhitespaceRule_Replace || m_nValues > 0 ||
           m_lpctPattern != nullptr || m_nMinLength >= 0 || m_nMaxLength >= 0 || m_nTotalDigits >= 0 ||
           m_nFractionDigits >= 0 || HasBounds();
}

void CSimpleType::Check(const std::wstring& strText, const wchar_t* lpctName) const
{
    const std::wstring strFault = FindFault(strText);
    if (!strFault.empty())
        throw CQvInvalidValueException(FormatString(L"Invalid Value for %s [%s]", lpctName, strText.c_str()),
                                       CQvException(strFault));
}

bool CSimpleType::IsValid(const std::wstring& strText) const
{
    return FindFault(strText).empty();
}

/// What is wrong with a text, empty for nothing.
std::wstring CSimpleType::FindFault(const std::wstring& strText) const
{
    if (m_eForm == Form_Union)
    {
        if (FindMember(strText) == nullptr)
            return L"The value is of none of the types that it may have";
    }
    else if (m_eForm == Form_List)
    {
        for (const std::wstring_view item : SplitList(strText))
        {
            const std::wstring strItem(item);
            const std::wstring strFault = GetItem().FindFault(strItem);
            if (!strFault.empty())
                return FormatString(L"Item [%s]: %s", strItem.c_str(), strFault.c_str());
        }
    }
    else if (!(m_eForm == Form_QName && CNameScope::IsExpanded(strText)) &&
             (!HasForm(m_eForm, strText) || !IsInValueSpace(*this, strText)))
        return Quoted(L"The value is no %s", m_lpctName);

    if (m_nValues > 0 && FindValue(strText) < 0)
        return L"The value is none of the enumeration";
    std::wstring strFault = FindLengthFault(strText);
    if (strFault.empty())
        strFault = FindDigitsFault(strText);
    if (strFault.empty() && HasBounds())
        strFault = FindBoundsFault(strText);
    if (strFault.empty() && m_lpctPattern != nullptr && !PatternMatch(ToUtf8Text(m_lpctPattern), strText))
        strFault = Quoted(L"The value does not match the pattern %s", m_lpctPattern);
    return strFault;
}

std::wstring CSimpleType::FindLengthFault(const std::wstring& strText) const
{
    if (m_nMinLength < 0 && m_nMaxLength < 0)
        return std::wstring();
    const std::size_t nLength = m_eForm == Form_List           ? SplitList(strText).size()
                                : m_eForm == Form_HexBinary    ? strText.size() / 2
                                : m_eForm == Form_Base64Binary ? CountBase64Octets(strText)
                                                               : CountCharacters(strText);
    if (m_nMinLength >= 0 && nLength < static_cast<unsigned long long>(m_nMinLength))
        return Numbered(L"The value is shorter than %s", m_nMinLength);
    if (m_nMaxLength >= 0 && nLength > static_cast<unsigned long long>(m_nMaxLength))
        return Numbered(L"The value is longer than %s", m_nMaxLength);
    return std::wstring();
}

std::wstring CSimpleType::FindDigitsFault(const std::wstring& strText) const
{
    if (m_nTotalDigits < 0 && m_nFractionDigits < 0)
        return std::wstring();
    const SDigits digits = CountDigits(strText);
    if (m_nTotalDigits >= 0 && digits.nTotal > static_cast<unsigned long long>(m_nTotalDigits))
        return Numbered(L"The value has more digits than %s", m_nTotalDigits);
    if (m_nFractionDigits >= 0 && digits.nFraction > static_cast<unsigned long long>(m_nFractionDigits))
        return Numbered(L"The value has more fraction digits than %s", m_nFractionDigits);
    return std::wstring();
}

std::wstring CSimpleType::FindBoundsFault(const std::wstring& strText) const
{
    struct SBound
    {
        const wchar_t* lpctBound;
        bool bMinimum;
        bool bInclusive;
        const wchar_t* lpctFault;
    };
    const SBound bounds[] = {{m_lpctMinInclusive, true, true, L"The value is below %s"},
                             {m_lpctMaxInclusive, false, true, L"The value is above %s"},
                             {m_lpctMinExclusive, true, false, L"The value is not above %s"},
                             {m_lpctMaxExclusive, false, false, L"The value is not below %s"}};
    for (const SBound& bound : bounds)
    {
        if (bound.lpctBound == nullptr)
            continue;
        const ValueOrder eOrder = Compare(m_eForm, strText, bound.lpctBound);
        // A value that has no order to the bound is on neither side of it, so it does not pass.
        const bool bPasses = (bound.bInclusive && eOrder == ValueOrder::Equal) ||
                             eOrder == (bound.bMinimum ? ValueOrder::Above : ValueOrder::Below);
        if (!bPasses)
            return Quoted(bound.lpctFault, bound.lpctBound);
    }
    return std::wstring();
}

} // namespace QvXmlLib9
