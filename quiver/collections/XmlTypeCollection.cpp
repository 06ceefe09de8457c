#include "quiver/collections/XmlTypeCollection.h"

#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/ItemTraits.h"
#include "quiver/values/RestrictionCheck.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace QvXmlLib9
{

// --- CXmlTypeCollection ---------------------------------------------------------------------------------------------

CXmlTypeCollection::CXmlTypeCollection(ItemType eItemType, const STypeCollectionParameters& parameters)
    : CXmlCollectionBase(parameters.lpctElementName, parameters.lpctNamespace, parameters.nMinOccurs,
                         parameters.nMaxOccurs)
    , m_restrictions(parameters.lpctPattern, parameters.nMinLength, parameters.nMaxLength, parameters.lpctMinInclusive,
                     parameters.lpctMaxInclusive, parameters.lpctMinExclusive, parameters.lpctMaxExclusive,
                     parameters.nLength)
    , m_eItemType(eItemType)
    , m_pszFormat(parameters.lpctFormat)
    , m_eWhitespaceRule(parameters.eWhitespaceRule)
{
}

CXmlTypeCollection::~CXmlTypeCollection() = default;

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement* /*pElement*/, CXmlElement* pFirstChild,
                                             const CXmlSerializationContext& context, bool /*bOptionalChoice*/)
{
    CXmlElement* pCurrent = pFirstChild;
    std::wstring strBuffer;
    while (pCurrent != nullptr &&
           DoesElementNameMatch(context, pCurrent, ElementName().c_str(), ItemNamespace().c_str()))
    {
        AddFromString(pCurrent->GetText(strBuffer));
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

/// Writes each item as an element of its own. `AppendText` appends the text of an item to the buffer given.
template <class TIterator, class TAppendText>
void CXmlTypeCollection::WriteItems(CXmlWriter* pWriter, const CXmlSerializationContext& context, ItemType eItemType,
                                    TIterator itBegin, TIterator itEnd, TAppendText AppendText) const
{
    ValidateCount(context);
    const std::wstring_view svName = ElementName().View();
    const std::wstring& strNamespace = ItemNamespace().Get();
    std::wstring strText;
    for (TIterator it = itBegin; it != itEnd; ++it)
    {
        pWriter->StartElement(svName, strNamespace);
        strText.clear();
        AppendText(strText, *it);
        pWriter->WriteText(strText, eItemType);
        pWriter->EndElement();
    }
}

// --- CXmlVectorCollection -------------------------------------------------------------------------------------------

namespace
{

/// What the listeners get as data: where the value stands.
template <class TItem>
void* AddressOf(const TItem& value)
{
    return const_cast<void*>(static_cast<const void*>(std::addressof(value)));
}

} // namespace

template <class TItem, class TArgument>
CXmlVectorCollection<TItem, TArgument>::~CXmlVectorCollection() = default;

template <class TItem, class TArgument>
int CXmlVectorCollection<TItem, TArgument>::GetCount() const
{
    return static_cast<int>(m_vecItems.size() - m_nRemovedAhead);
}

template <class TItem, class TArgument>
void CXmlVectorCollection<TItem, TArgument>::Clear()
{
    while (m_vecItems.size() > m_nRemovedAhead)
        Remove(0);
}

template <class TItem, class TArgument>
void CXmlVectorCollection<TItem, TArgument>::Remove(int nIndex)
{
    FireOnCollectionRemove(nIndex);
    Throw_IfIndexIsOutOfRange(nIndex);
    Erase(nIndex);
    FireOnCollectionRemoveComplete(nIndex);
    FireOnCollectionChange();
}

template <class TItem, class TArgument>
void CXmlVectorCollection<TItem, TArgument>::InsertItem(int nIndex, TArgument value, PfnCheck pfnCheck)
{
    if constexpr (std::is_reference_v<TArgument>)
    {
        // A value of the collection itself would move while it is added.
        const std::less<const TItem*> IsAhead;
        const TItem* const pFirst = m_vecItems.data();
        if (!IsAhead(&value, pFirst) && IsAhead(&value, pFirst + m_vecItems.size()))
            return InsertItem(nIndex, TItem(value), pfnCheck);
    }
    FireOnCollectionAdd(AddressOf<TItem>(value));
    if (nIndex < 0 || nIndex > GetCount())
        throw CQvInvalidParamException(L"Index out of range");
    if (pfnCheck != nullptr)
        pfnCheck(ElementName().c_str(), value, GetRestrictions());
    m_vecItems.insert(begin() + nIndex, value);
    FireOnCollectionAddComplete(AddressOf<TItem>(value));
    FireOnCollectionChange();
}

template <class TItem, class TArgument>
TItem CXmlVectorCollection<TItem, TArgument>::CopyOfItem(int nIndex) const
{
    Throw_IfIndexIsOutOfRange(nIndex);
    return *(begin() + nIndex);
}

template <class TItem, class TArgument>
void CXmlVectorCollection<TItem, TArgument>::Erase(int nIndex)
{
    if (nIndex != 0)
    {
        m_vecItems.erase(begin() + nIndex);
        return;
    }
    *begin() = TItem();
    ++m_nRemovedAhead;
    if (m_nRemovedAhead > m_vecItems.size() / 2)
    {
        m_vecItems.erase(m_vecItems.begin(), begin());
        m_nRemovedAhead = 0;
    }
}

// --- CXmlTypeCollectionOf -------------------------------------------------------------------------------------------

// The virtual base is constructed by the most derived class, whose name it gets; the one given here is never used.
template <ItemType t_eItemType, class TItem, class TArgument>
CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::CXmlTypeCollectionOf(const STypeCollectionParameters& parameters)
    : CInstanceMonitor(L"CXmlTypeCollection")
    , CXmlVectorCollection<TItem, TArgument>(t_eItemType, parameters)
{
    static_assert(std::is_same_v<TItem, typename SItemTraits<t_eItemType>::Value>);
}

template <ItemType t_eItemType, class TItem, class TArgument>
CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::~CXmlTypeCollectionOf() = default;

template <ItemType t_eItemType, class TItem, class TArgument>
void CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::Add(TArgument value)
{
    AddAt(this->GetCount(), std::forward<TArgument>(value));
}

template <ItemType t_eItemType, class TItem, class TArgument>
void CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::AddAt(int nIndex, TArgument value)
{
    // The two kinds whose type may be wider than they are.
    if constexpr (t_eItemType == ItemType_i4)
        value = static_cast<std::int32_t>(value);
    else if constexpr (t_eItemType == ItemType_ui4)
        value = static_cast<std::uint32_t>(value);
    else if constexpr (t_eItemType == ItemType_string)
        value = ToUtf16Units(std::move(value));
    this->InsertItem(nIndex, std::forward<TArgument>(value), &CheckRestriction<t_eItemType>);
}

template <ItemType t_eItemType, class TItem, class TArgument>
TItem CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::Item(int nIndex) const
{
    return this->CopyOfItem(nIndex);
}

template <ItemType t_eItemType, class TItem, class TArgument>
void CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::ToXml_Int(CXmlWriter* pWriter, bool /*bIsRoot*/,
                                                                    const wchar_t* /*lpctNamespaceUri*/,
                                                                    const CXmlSerializationContext& context,
                                                                    bool /*bOptionalChoice*/) const
{
    this->WriteItems(pWriter, context, t_eItemType, this->begin(), this->end(),
                     [this](std::wstring& strText, typename SItemTraits<t_eItemType>::Argument value)
                     { AppendItemText<t_eItemType>(strText, value, this->GetFormat()); });
}

template <ItemType t_eItemType, class TItem, class TArgument>
void CXmlTypeCollectionOf<t_eItemType, TItem, TArgument>::AddFromString(std::wstring strText)
{
    Add(SItemTraits<t_eItemType>::FromString(strText, this->GetWhitespaceRule()));
}

// --- CdatetimeBaseCol -----------------------------------------------------------------------------------------------

CdatetimeBaseCol::~CdatetimeBaseCol() = default;

void CdatetimeBaseCol::Add(const CDateTime& value)
{
    AddAt(GetCount(), value);
}

CDateTime CdatetimeBaseCol::Item(int nIndex) const
{
    return CopyOfItem(nIndex);
}

void CdatetimeBaseCol::BaseAddAt(int nIndex, const CDateTime& value)
{
    InsertItem(nIndex, value, nullptr);
}

void CdatetimeBaseCol::ToXml_Int(CXmlWriter* pWriter, bool /*bIsRoot*/, const wchar_t* /*lpctNamespaceUri*/,
                                 const CXmlSerializationContext& context, bool /*bOptionalChoice*/) const
{
    WriteItems(pWriter, context, ItemType_datetime, begin(), end(),
               [this](std::wstring& strText, const CDateTime& value) { strText = ItemToString(value); });
}

// --- CXmlDateCollectionOf -------------------------------------------------------------------------------------------

namespace
{

/// The kind of date that each collection takes, and what it says to others.
template <ItemType t_eItemType>
struct SDateKind;
template <>
struct SDateKind<ItemType_yearMonth>
{
    static constexpr CDateTime::DTType s_eType = CDateTime::dt_gYearMonth;
    static constexpr const wchar_t* s_lpctWrongKind = L"Dates added to this collection must be of type dt_gYearMonth";
};
template <>
struct SDateKind<ItemType_monthDay>
{
    static constexpr CDateTime::DTType s_eType = CDateTime::dt_gMonthDay;
    static constexpr const wchar_t* s_lpctWrongKind = L"Dates added to this collection must be of type dt_gMonthDay";
};
template <>
struct SDateKind<ItemType_date>
{
    static constexpr CDateTime::DTType s_eType = CDateTime::dt_date;
    static constexpr const wchar_t* s_lpctWrongKind = L"Dates added to this collection must be of type dt_date";
};
template <>
struct SDateKind<ItemType_datetime>
{
    static constexpr CDateTime::DTType s_eType = CDateTime::dt_dateTime;
    static constexpr const wchar_t* s_lpctWrongKind = L"Dates added to this collection must be of type dt_dateTime";
};
template <>
struct SDateKind<ItemType_time>
{
    static constexpr CDateTime::DTType s_eType = CDateTime::dt_time;
    static constexpr const wchar_t* s_lpctWrongKind = L"Dates added to this collection must be of type dt_time";
};

} // namespace

template <ItemType t_eItemType>
CXmlDateCollectionOf<t_eItemType>::CXmlDateCollectionOf(const STypeCollectionParameters& parameters)
    : CInstanceMonitor(L"CdatetimeBaseCol")
    , CdatetimeBaseCol(t_eItemType, parameters)
{
}

template <ItemType t_eItemType>
CXmlDateCollectionOf<t_eItemType>::~CXmlDateCollectionOf() = default;

template <ItemType t_eItemType>
void CXmlDateCollectionOf<t_eItemType>::AddAt(int nIndex, const CDateTime& value)
{
    if (value.GetType() != SDateKind<t_eItemType>::s_eType)
        throw CQvInvalidParamException(SDateKind<t_eItemType>::s_lpctWrongKind);
    CheckRestriction<t_eItemType>(ElementName().c_str(), value, GetRestrictions());
    BaseAddAt(nIndex, value);
}

template <ItemType t_eItemType>
void CXmlDateCollectionOf<t_eItemType>::AddFromString(std::wstring strText)
{
    Add(SItemTraits<t_eItemType>::FromString(strText, GetWhitespaceRule()));
}

template <ItemType t_eItemType>
std::wstring CXmlDateCollectionOf<t_eItemType>::ItemToString(const CDateTime& value) const
{
    return SItemTraits<t_eItemType>::ToString(value, GetFormat());
}

// --- The classes ----------------------------------------------------------------------------------------------------

template class CXmlVectorCollection<CDateTime, const CDateTime&>;
template class CXmlVectorCollection<CBinaryData, const CBinaryData&>;
template class CXmlVectorCollection<char, char>;
template class CXmlVectorCollection<short, short>;
template class CXmlVectorCollection<long, long>;
template class CXmlVectorCollection<__int64, __int64>;
template class CXmlVectorCollection<unsigned char, unsigned char>;
template class CXmlVectorCollection<unsigned short, unsigned short>;
template class CXmlVectorCollection<unsigned long, unsigned long>;
template class CXmlVectorCollection<unsigned __int64, unsigned __int64>;
template class CXmlVectorCollection<float, float>;
template class CXmlVectorCollection<double, double>;
template class CXmlVectorCollection<CDateTimeSpan, const CDateTimeSpan&>;
template class CXmlVectorCollection<std::wstring, std::wstring>;
template class CXmlVectorCollection<bool, bool>;
template class CXmlVectorCollection<CDecimal, const CDecimal&>;
template class CXmlVectorCollection<CBigInteger, const CBigInteger&>;
template class CXmlTypeCollectionOf<ItemType_hexBinary, CBinaryData, const CBinaryData&>;
template class CXmlTypeCollectionOf<ItemType_base64Binary, CBinaryData, const CBinaryData&>;
template class CXmlTypeCollectionOf<ItemType_i1, char>;
template class CXmlTypeCollectionOf<ItemType_i2, short>;
template class CXmlTypeCollectionOf<ItemType_i4, long>;
template class CXmlTypeCollectionOf<ItemType_i8, __int64>;
template class CXmlTypeCollectionOf<ItemType_ui1, unsigned char>;
template class CXmlTypeCollectionOf<ItemType_ui2, unsigned short>;
template class CXmlTypeCollectionOf<ItemType_ui4, unsigned long>;
template class CXmlTypeCollectionOf<ItemType_ui8, unsigned __int64>;
template class CXmlTypeCollectionOf<ItemType_r4, float>;
template class CXmlTypeCollectionOf<ItemType_r8, double>;
template class CXmlTypeCollectionOf<ItemType_duration, CDateTimeSpan, const CDateTimeSpan&>;
template class CXmlTypeCollectionOf<ItemType_year, unsigned short>;
template class CXmlTypeCollectionOf<ItemType_month, unsigned char>;
template class CXmlTypeCollectionOf<ItemType_day, unsigned char>;
template class CXmlTypeCollectionOf<ItemType_string, std::wstring>;
template class CXmlTypeCollectionOf<ItemType_boolean, bool>;
template class CXmlTypeCollectionOf<ItemType_decimal, CDecimal, const CDecimal&>;
template class CXmlTypeCollectionOf<ItemType_integer, CBigInteger, const CBigInteger&>;
template class CXmlDateCollectionOf<ItemType_yearMonth>;
template class CXmlDateCollectionOf<ItemType_monthDay>;
template class CXmlDateCollectionOf<ItemType_date>;
template class CXmlDateCollectionOf<ItemType_datetime>;
template class CXmlDateCollectionOf<ItemType_time>;

ChexBinaryCol::ChexBinaryCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs,
                             int nMaxOccurs, const wchar_t* lpctPattern, int nMinLength, int nMaxLength,
                             const wchar_t* lpctMinInclusive, const wchar_t* lpctMaxInclusive,
                             const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive, int nLength,
                             CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"ChexBinaryCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

ChexBinaryCol::~ChexBinaryCol() = default;

Cbase64BinaryCol::Cbase64BinaryCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs,
                                   int nMaxOccurs, const wchar_t* lpctPattern, int nMinLength, int nMaxLength,
                                   const wchar_t* lpctMinInclusive, const wchar_t* lpctMaxInclusive,
                                   const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive, int nLength,
                                   CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cbase64BinaryCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cbase64BinaryCol::~Cbase64BinaryCol() = default;

Ci1Col::Ci1Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Ci1Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Ci1Col::~Ci1Col() = default;

Ci2Col::Ci2Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Ci2Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Ci2Col::~Ci2Col() = default;

Ci4Col::Ci4Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Ci4Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Ci4Col::~Ci4Col() = default;

Ci8Col::Ci8Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Ci8Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Ci8Col::~Ci8Col() = default;

Cui1Col::Cui1Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cui1Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cui1Col::~Cui1Col() = default;

Cui2Col::Cui2Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cui2Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cui2Col::~Cui2Col() = default;

Cui4Col::Cui4Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cui4Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cui4Col::~Cui4Col() = default;

Cui8Col::Cui8Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cui8Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cui8Col::~Cui8Col() = default;

Cr4Col::Cr4Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cr4Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cr4Col::~Cr4Col() = default;

Cr8Col::Cr8Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"Cr8Col")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

Cr8Col::~Cr8Col() = default;

CdurationCol::CdurationCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                           const wchar_t* lpctMaxExclusive, int nLength,
                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CdurationCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CdurationCol::~CdurationCol() = default;

CyearCol::CyearCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                   const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                   const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                   int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CyearCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CyearCol::~CyearCol() = default;

CmonthCol::CmonthCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                     const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                     const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                     int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CmonthCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CmonthCol::~CmonthCol() = default;

CdayCol::CdayCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CdayCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CdayCol::~CdayCol() = default;

CstringCol::CstringCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                       const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                       const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                       const wchar_t* lpctMaxExclusive, int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                       const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CstringCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CstringCol::~CstringCol() = default;

CbooleanCol::CbooleanCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                         const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                         const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                         const wchar_t* lpctMaxExclusive, int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                         const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CbooleanCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CbooleanCol::~CbooleanCol() = default;

CdecimalCol::CdecimalCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                         const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                         const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                         const wchar_t* lpctMaxExclusive, int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                         const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CdecimalCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CdecimalCol::~CdecimalCol() = default;

CintegerCol::CintegerCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                         const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                         const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                         const wchar_t* lpctMaxExclusive, int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                         const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CintegerCol")
    , CXmlTypeCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CintegerCol::~CintegerCol() = default;

CyearMonthCol::CyearMonthCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs,
                             int nMaxOccurs, const wchar_t* lpctPattern, int nMinLength, int nMaxLength,
                             const wchar_t* lpctMinInclusive, const wchar_t* lpctMaxInclusive,
                             const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive, int nLength,
                             CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CyearMonthCol")
    , CXmlDateCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CyearMonthCol::~CyearMonthCol() = default;

CmonthDayCol::CmonthDayCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                           const wchar_t* lpctMaxExclusive, int nLength,
                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CmonthDayCol")
    , CXmlDateCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CmonthDayCol::~CmonthDayCol() = default;

CdateCol::CdateCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                   const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                   const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                   int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CdateCol")
    , CXmlDateCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CdateCol::~CdateCol() = default;

CdatetimeCol::CdatetimeCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive,
                           const wchar_t* lpctMaxExclusive, int nLength,
                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CdatetimeCol")
    , CXmlDateCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CdatetimeCol::~CdatetimeCol() = default;

CtimeCol::CtimeCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                   const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                   const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                   int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat)
    : CInstanceMonitor(L"CtimeCol")
    , CXmlDateCollectionOf({lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs, lpctPattern, nMinLength, nMaxLength,
                            lpctMinInclusive, lpctMaxInclusive, lpctMinExclusive, lpctMaxExclusive, nLength,
                            eWhitespaceRule, lpctFormat})
{
}

CtimeCol::~CtimeCol() = default;

} // namespace QvXmlLib9
