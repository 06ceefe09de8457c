#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/values/ItemType.h"
#include "quiver/values/WhitespaceUtils.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CSimpleType;

/// Gives a simple type: what generated code passes around instead of an object, so that no order of initialisation
/// matters.
using PfnSimpleType = const CSimpleType& (*)();

/// A simple type of a schema (XML Schema Part 2): its lexical form, its white space and its facets, by name.
///
///     const CSimpleType& SSku::Type()
///     {
///         static constexpr auto s_type = CSimpleType(xs::String::s_type).Pattern(L"[A-Z]{2}").MaxLength(6);
///         return s_type;
///     }
///
/// An object is a constant without a destructor: it can be used before `main` and after it, by any number of threads.
/// It keeps pointers to the texts it is given, which are literals.
///
/// The checks are those of the schema and not those of CConversions: an empty text is no number, a number without a
/// sign has none, lengths count characters.
class QVXMLLIB_API CSimpleType
{
    // Ahead of the constants that are made with it: a compiler may need it while it still reads the class.
    template <class T>
    constexpr CSimpleType With(T CSimpleType::*pField, T value) const
    {
        CSimpleType type = *this;
        type.*pField = value;
        return type;
    }

public:
    /// The lexical form of an atomic value, or how the type is made of others.
    enum EForm : unsigned char
    {
        Form_Text,
        Form_Boolean,
        Form_Integer,
        Form_Decimal,
        Form_Float,
        Form_DateTime,
        Form_Date,
        Form_Time,
        Form_YearMonth,
        Form_Year,
        Form_MonthDay,
        Form_Day,
        Form_Month,
        Form_Duration,
        Form_HexBinary,
        Form_Base64Binary,
        Form_Name,
        Form_NCName,
        Form_NmToken,
        Form_Language,
        Form_QName,
        Form_List,
        Form_Union
    };

    /// A built-in type.
    /// @param lpctName its name, for messages: L"xs:int".
    constexpr CSimpleType(const wchar_t* lpctName, EForm eForm, ItemType eItemType,
                          CWhitespaceUtils::WhitespaceRule eWhiteSpace = CWhitespaceUtils::WhitespaceRule_Collapse)
        : m_lpctName(lpctName)
        , m_eForm(eForm)
        , m_eItemType(eItemType)
        , m_eWhiteSpace(eWhiteSpace)
    {
    }

    /// A list of values separated by white space. Length facets count its items.
    static constexpr CSimpleType ListOf(PfnSimpleType pfnItem)
    {
        CSimpleType type(L"a list", Form_List, ItemType_string);
        type.m_pfnItem = pfnItem;
        return type;
    }

    /// The same for a type that is no constant. It has to stay where it is.
    static CSimpleType ListOf(const CSimpleType& item)
    {
        CSimpleType type = ListOf(nullptr);
        type.m_pItem = &item;
        return type;
    }

    /// A value of one of several types, which are tried in order. White space belongs to them.
    template <std::size_t nCount>
    static constexpr CSimpleType UnionOf(const PfnSimpleType (&members)[nCount])
    {
        CSimpleType type(L"a union", Form_Union, ItemType_string, CWhitespaceUtils::WhitespaceRule_None);
        type.m_pMembers = members;
        type.m_nMembers = nCount;
        return type;
    }

    /// The same for types that are no constants. They have to stay where they are, and so does the list of them.
    static CSimpleType UnionOf(const CSimpleType* const* ppMembers, std::size_t nCount)
    {
        CSimpleType type(L"a union", Form_Union, ItemType_string, CWhitespaceUtils::WhitespaceRule_None);
        type.m_ppMembers = ppMembers;
        type.m_nMembers = nCount;
        return type;
    }

    /// @name Facets (XML Schema Part 2, 4.3). Each gives a type that has one more.
    /// @{

    /// @param lpctPattern an expression in the dialect of XML Schema that has to match the whole value. Of several
    ///        alternatives the first that fits the beginning counts, so an expression with alternatives ends in `\z`.
    constexpr CSimpleType Pattern(const wchar_t* lpctPattern) const
    {
        return With(&CSimpleType::m_lpctPattern, lpctPattern);
    }
    /// In characters; in octets for binary types; in items for lists.
    constexpr CSimpleType Length(long long n) const { return MinLength(n).MaxLength(n); }
    constexpr CSimpleType MinLength(long long n) const { return With(&CSimpleType::m_nMinLength, n); }
    constexpr CSimpleType MaxLength(long long n) const { return With(&CSimpleType::m_nMaxLength, n); }
    constexpr CSimpleType TotalDigits(long long n) const { return With(&CSimpleType::m_nTotalDigits, n); }
    constexpr CSimpleType FractionDigits(long long n) const { return With(&CSimpleType::m_nFractionDigits, n); }
    /// @param lpctBound the bound in the type's lexical form.
    constexpr CSimpleType MinInclusive(const wchar_t* lpctBound) const
    {
        return With(&CSimpleType::m_lpctMinInclusive, lpctBound);
    }
    constexpr CSimpleType MaxInclusive(const wchar_t* lpctBound) const
    {
        return With(&CSimpleType::m_lpctMaxInclusive, lpctBound);
    }
    constexpr CSimpleType MinExclusive(const wchar_t* lpctBound) const
    {
        return With(&CSimpleType::m_lpctMinExclusive, lpctBound);
    }
    constexpr CSimpleType MaxExclusive(const wchar_t* lpctBound) const
    {
        return With(&CSimpleType::m_lpctMaxExclusive, lpctBound);
    }
    constexpr CSimpleType WhiteSpace(CWhitespaceUtils::WhitespaceRule eRule) const
    {
        return With(&CSimpleType::m_eWhiteSpace, eRule);
    }
    /// The enumeration: the texts of the values, white space removed, in the order of the enumerators of the C++
    /// enumeration if there is one. Names say their namespaces: `{urn:a}name`.
    template <std::size_t nCount>
    constexpr CSimpleType Values(const wchar_t* const (&values)[nCount]) const
    {
        return Values(values, nCount);
    }
    constexpr CSimpleType Values(const wchar_t* const* ppValues, std::size_t nCount) const
    {
        CSimpleType type = *this;
        type.m_ppValues = ppValues;
        type.m_nValues = nCount;
        return type;
    }
    /// @}

    EForm GetForm() const { return m_eForm; }
    /// The kind that a value has on its way to a writer; ItemType_string for what the runtime has no kind for.
    ItemType GetItemType() const { return m_eItemType; }
    /// Type of a list's items.
    const CSimpleType& GetItem() const { return m_pItem != nullptr ? *m_pItem : m_pfnItem(); }

    /// Whether it is an enumeration.
    bool HasValues() const { return m_nValues > 0; }

    /// Text of an enumerator.
    /// @param nIndex its place, from 0.
    /// @throws CQvInvalidParamException if there is no such value.
    const wchar_t* GetValueText(std::size_t nIndex) const;

    /// Whether values are names with prefixes, or may be, which take declarations to be understood.
    bool HasPrefixes() const;

    /// Place of a value in the enumeration.
    /// @param strText the value, normalised.
    /// @return -1 if it is none of them.
    int FindValue(const std::wstring& strText) const;

    /// FindValue for the text of a document whose white space is not treated yet, in UTF-8.
    /// @return -1 for none, and where it takes a longer look.
    int FindUtf8Value(std::string_view svUtf8) const;

    /// Whether a text in UTF-8 is a string of this type as it stands: white space is as Normalize leaves it, and Check
    /// would pass.
    /// @return false for none, and where it takes a longer look.
    bool TakesUtf8(std::string_view svUtf8) const;

    /// Whether a value of the type is right if it lies within the bounds and has the lexical form.
    bool HasBoundsAtMost() const { return m_lpctPattern == nullptr && m_nValues == 0 && HasNoLengths(); }

    /// @name Bounds as they are written, null for none
    /// @{
    const wchar_t* GetMinInclusive() const { return m_lpctMinInclusive; }
    const wchar_t* GetMaxInclusive() const { return m_lpctMaxInclusive; }
    const wchar_t* GetMinExclusive() const { return m_lpctMinExclusive; }
    const wchar_t* GetMaxExclusive() const { return m_lpctMaxExclusive; }
    bool HasBounds() const;
    /// @}

    /// Treats white space as the type says (XML Schema Part 2, 4.3.6).
    std::wstring Normalize(std::wstring strText) const;

    /// Whether a value that has the right C++ type can still be wrong.
    bool HasChecks() const;

    /// Checks a text in full: lexical form and facets.
    /// @param strText the text, normalised.
    /// @param lpctName name of the element or attribute, for the message.
    /// @throws CQvInvalidValueException "Invalid Value for %s [%s]" with the name and the text; its inner exception
    ///         says what is wrong.
    void Check(const std::wstring& strText, const wchar_t* lpctName) const;

    /// Whether Check passes.
    bool IsValid(const std::wstring& strText) const;

    /// Whether two texts that Check passes stand for the same value.
    bool IsSame(const std::wstring& strText, const wchar_t* lpctOther) const { return IsSameValue(strText, lpctOther); }

private:
    /// A type of a union.
    const CSimpleType& GetMember(std::size_t n) const
    {
        return m_ppMembers != nullptr ? *m_ppMembers[n] : m_pMembers[n]();
    }
    bool IsSameValue(const std::wstring& strText, const wchar_t* lpctOther) const;
    const CSimpleType* FindMember(const std::wstring& strText) const;
    std::wstring FindFault(const std::wstring& strText) const;
    std::wstring FindLengthFault(const std::wstring& strText) const;
    std::wstring FindDigitsFault(const std::wstring& strText) const;
    std::wstring FindBoundsFault(const std::wstring& strText) const;
    bool IsNormalized(std::string_view svUtf8) const;
    bool HasNoDigits() const { return m_nTotalDigits < 0 && m_nFractionDigits < 0; }
    bool HasNoLengths() const { return m_nMinLength < 0 && m_nMaxLength < 0 && HasNoDigits(); }

    const wchar_t* m_lpctName;
    EForm m_eForm;
    ItemType m_eItemType;
    CWhitespaceUtils::WhitespaceRule m_eWhiteSpace;
    PfnSimpleType m_pfnItem = nullptr;
    const CSimpleType* m_pItem = nullptr;
    const PfnSimpleType* m_pMembers = nullptr;
    const CSimpleType* const* m_ppMembers = nullptr;
    std::size_t m_nMembers = 0;
    const wchar_t* const* m_ppValues = nullptr;
    std::size_t m_nValues = 0;
    const wchar_t* m_lpctPattern = nullptr;
    const wchar_t* m_lpctMinInclusive = nullptr;
    const wchar_t* m_lpctMaxInclusive = nullptr;
    const wchar_t* m_lpctMinExclusive = nullptr;
    const wchar_t* m_lpctMaxExclusive = nullptr;
    long long m_nMinLength = -1;
    long long m_nMaxLength = -1;
    long long m_nTotalDigits = -1;
    long long m_nFractionDigits = -1;
};

} // namespace QvXmlLib9
