#pragma once

#include "quiver/collections/XmlCollection.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Export.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/Decimal.h"
#include "quiver/values/ItemType.h"
#include "quiver/values/PrimitiveRestrictions.h"
#include "quiver/values/WhitespaceUtils.h"

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

/// @file
/// Repeated elements of simple types: one class for each kind of value, which holds plain values and tests each one
/// against the facets of the schema at the moment it is added, also when it is read.
///
///     // <quantity> of xs:int, 1 to 10 times, each at least 1
///     CSmartPtr<Ci4Col> spQuantities =
///         new Ci4Col(L"quantity", L"urn:order", 1, 10, L"", -1, -1, L"1", L"", L"", L"", -1,
///                    CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
///     spQuantities->Add(5);
///     spQuantities->Add(0); // throws CQvException "Invalid Value for quantity [0]"
///     for (long lQuantity : *spQuantities)
///         ...
///
/// Every class is constructed with the same arguments:
/// - `lpctElementName`, `lpctNamespace`, `nMinOccurs`, `nMaxOccurs`: see CXmlCollectionBase;
/// - `lpctPattern`, `nMinLength`, `nMaxLength`, `lpctMinInclusive`, `lpctMaxInclusive`, `lpctMinExclusive`,
///   `lpctMaxExclusive`, `nLength`: the facets, see CPrimitiveRestrictions;
/// - `eWhitespaceRule`: what is done to the text of an element before it is converted;
/// - `lpctFormat`: format for `r4ToString`, `r8ToString` or `decimalToString` of CConversions, or null; other classes
///   do not look at it. The pointer is kept: pass a string of static lifetime.
///
/// All of them share these operations, told in CXmlVectorCollection and CXmlTypeCollectionOf: `Add`, `AddAt`, `Item`,
/// `Remove`, `Clear`, `GetCount`, `begin`, `end`.

namespace QvXmlLib9
{

/// The arguments of the constructors of all collections of simple values, as they hand them down.
struct STypeCollectionParameters
{
    const wchar_t* lpctElementName;
    const wchar_t* lpctNamespace;
    int nMinOccurs;
    int nMaxOccurs;
    const wchar_t* lpctPattern;
    int nMinLength;
    int nMaxLength;
    const wchar_t* lpctMinInclusive;
    const wchar_t* lpctMaxInclusive;
    const wchar_t* lpctMinExclusive;
    const wchar_t* lpctMaxExclusive;
    int nLength;
    CWhitespaceUtils::WhitespaceRule eWhitespaceRule;
    const wchar_t* lpctFormat;
};

/// What all collections of simple values share: the facets, and how they are read.
///
/// Reading takes elements as long as they have the collection's name and namespace (the name alone where the context
/// ignores namespaces), and leaves the first other one to whoever comes next. The count is not tested then. Writing
/// tests the count first, and gives every item an element in the collection's own namespace.
class QVXMLLIB_API CXmlTypeCollection : public CXmlCollectionBase
{
protected:
    CXmlTypeCollection(ItemType eItemType, const STypeCollectionParameters& parameters);
    ~CXmlTypeCollection() override;

    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    /// Converts a text and adds the value.
    /// @throws CQvInvalidValueException for a text that is no such value, and what `Add` throws.
    virtual void AddFromString(std::wstring strText) = 0;

    template <class TIterator, class TAppendText>
    void WriteItems(CXmlWriter* pWriter, const CXmlSerializationContext& context, ItemType eItemType, TIterator itBegin,
                    TIterator itEnd, TAppendText AppendText) const;

    const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }
    ItemType GetItemType() const { return m_eItemType; }
    const wchar_t* GetFormat() const { return m_pszFormat; }
    CWhitespaceUtils::WhitespaceRule GetWhitespaceRule() const { return m_eWhitespaceRule; }

private:
    CPrimitiveRestrictions m_restrictions;
    ItemType m_eItemType;
    const wchar_t* m_pszFormat;
    CWhitespaceUtils::WhitespaceRule m_eWhitespaceRule;
};

/// The vector behind a collection of simple values.
///
/// Events carry the address of the value as data, and the position at removals. An event that announces a change comes
/// ahead of all tests, so a change that fails has been announced. Destruction fires no events.
/// @tparam TItem type of the values.
/// @tparam TArgument how they are passed to `Add` and `AddAt`.
template <class TItem, class TArgument>
class CXmlVectorCollection : public CXmlTypeCollection
{
public:
    using iterator = typename std::vector<TItem>::iterator;
    using const_iterator = typename std::vector<TItem>::const_iterator;

    int GetCount() const override;
    void Clear() override;
    void Remove(int nIndex) override;

    // Values that are changed through an iterator are not tested. Iterators are valid until the next change of the
    // collection.

    iterator begin() { return m_vecItems.begin() + static_cast<std::ptrdiff_t>(m_nRemovedAhead); }
    iterator end() { return m_vecItems.end(); }
    const_iterator begin() const { return m_vecItems.begin() + static_cast<std::ptrdiff_t>(m_nRemovedAhead); }
    const_iterator end() const { return m_vecItems.end(); }

protected:
    using CXmlTypeCollection::CXmlTypeCollection;
    ~CXmlVectorCollection() override;

    /// Tests a value against facets; null for no test.
    using PfnCheck = void (*)(const wchar_t* lpctName, std::conditional_t<std::is_class_v<TItem>, const TItem&, TItem>,
                              const CPrimitiveRestrictions& restrictions);

    /// Announces the value, tests position and facets, inserts, and reports.
    void InsertItem(int nIndex, TArgument value, PfnCheck pfnCheck);

    /// A copy of the value at a position.
    TItem CopyOfItem(int nIndex) const;

private:
    void Erase(int nIndex);

    /// The items, behind some places whose items were removed from the front and which are given up together, so that
    /// emptying a collection from the front takes linear time.
    std::vector<TItem> m_vecItems;
    std::size_t m_nRemovedAhead = 0;
};

/// The operations of an ordinary collection of simple values.
/// @tparam t_eItemType kind of the values.
/// @tparam TItem, TArgument see CXmlVectorCollection.
template <ItemType t_eItemType, class TItem, class TArgument = TItem>
class CXmlTypeCollectionOf : public CXmlVectorCollection<TItem, TArgument>
{
public:
    /// Adds a last value.
    /// @throws CQvException "Invalid Value for %s [%s]" if it breaks a facet.
    void Add(TArgument value);

    /// Adds a value so that it gets a position.
    /// @param nIndex 0 to GetCount().
    /// @throws CQvInvalidParamException "Index out of range"; CQvException "Invalid Value for %s [%s]" if the value
    ///         breaks a facet. Nothing has been added then, though the addition has been announced.
    void AddAt(int nIndex, TArgument value);

    /// A copy of the value at a position.
    /// @param nIndex 0 to GetCount() - 1.
    /// @throws CQvInvalidParamException "Index %d is out of range, use 0 - %d" with GetCount() as the second number
    ///         (docs/compatibility.md: Ranges in messages).
    TItem Item(int nIndex) const;

protected:
    CXmlTypeCollectionOf(const STypeCollectionParameters& parameters);
    ~CXmlTypeCollectionOf() override;

    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;
    void AddFromString(std::wstring strText) override;
};

extern template class QVXMLLIB_API CXmlVectorCollection<CDateTime, const CDateTime&>;
extern template class QVXMLLIB_API CXmlVectorCollection<CBinaryData, const CBinaryData&>;
extern template class QVXMLLIB_API CXmlVectorCollection<char, char>;
extern template class QVXMLLIB_API CXmlVectorCollection<short, short>;
extern template class QVXMLLIB_API CXmlVectorCollection<long, long>;
extern template class QVXMLLIB_API CXmlVectorCollection<__int64, __int64>;
extern template class QVXMLLIB_API CXmlVectorCollection<unsigned char, unsigned char>;
extern template class QVXMLLIB_API CXmlVectorCollection<unsigned short, unsigned short>;
extern template class QVXMLLIB_API CXmlVectorCollection<unsigned long, unsigned long>;
extern template class QVXMLLIB_API CXmlVectorCollection<unsigned __int64, unsigned __int64>;
extern template class QVXMLLIB_API CXmlVectorCollection<float, float>;
extern template class QVXMLLIB_API CXmlVectorCollection<double, double>;
extern template class QVXMLLIB_API CXmlVectorCollection<CDateTimeSpan, const CDateTimeSpan&>;
extern template class QVXMLLIB_API CXmlVectorCollection<std::wstring, std::wstring>;
extern template class QVXMLLIB_API CXmlVectorCollection<bool, bool>;
extern template class QVXMLLIB_API CXmlVectorCollection<CDecimal, const CDecimal&>;
extern template class QVXMLLIB_API CXmlVectorCollection<CBigInteger, const CBigInteger&>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_hexBinary, CBinaryData, const CBinaryData&>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_base64Binary, CBinaryData, const CBinaryData&>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_i1, char>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_i2, short>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_i4, long>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_i8, __int64>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_ui1, unsigned char>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_ui2, unsigned short>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_ui4, unsigned long>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_ui8, unsigned __int64>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_r4, float>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_r8, double>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_duration, CDateTimeSpan, const CDateTimeSpan&>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_year, unsigned short>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_month, unsigned char>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_day, unsigned char>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_string, std::wstring>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_boolean, bool>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_decimal, CDecimal, const CDecimal&>;
extern template class QVXMLLIB_API CXmlTypeCollectionOf<ItemType_integer, CBigInteger, const CBigInteger&>;

/// Repeated `xs:hexBinary`. Facets: lengths, in bytes.
class QVXMLLIB_API ChexBinaryCol : public CXmlTypeCollectionOf<ItemType_hexBinary, CBinaryData, const CBinaryData&>
{
public:
    ChexBinaryCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                  const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                  const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                  int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~ChexBinaryCol() override;
};

/// Repeated `xs:base64Binary`. Facets: lengths, in bytes.
class QVXMLLIB_API Cbase64BinaryCol
    : public CXmlTypeCollectionOf<ItemType_base64Binary, CBinaryData, const CBinaryData&>
{
public:
    Cbase64BinaryCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                     const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                     const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                     int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cbase64BinaryCol() override;
};

/// Repeated `xs:byte`, signed 8 bits. Facets: bounds.
class QVXMLLIB_API Ci1Col : public CXmlTypeCollectionOf<ItemType_i1, char>
{
public:
    Ci1Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
           int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Ci1Col() override;
};

/// Repeated `xs:short`, signed 16 bits. Facets: bounds.
class QVXMLLIB_API Ci2Col : public CXmlTypeCollectionOf<ItemType_i2, short>
{
public:
    Ci2Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
           int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Ci2Col() override;
};

/// Repeated `xs:int`, signed 32 bits, whatever the width of `long`. Facets: bounds.
class QVXMLLIB_API Ci4Col : public CXmlTypeCollectionOf<ItemType_i4, long>
{
public:
    Ci4Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
           int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Ci4Col() override;
};

/// Repeated `xs:long`, signed 64 bits. Facets: bounds.
class QVXMLLIB_API Ci8Col : public CXmlTypeCollectionOf<ItemType_i8, __int64>
{
public:
    Ci8Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
           int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Ci8Col() override;
};

/// Repeated `xs:unsignedByte`, 8 bits. Facets: bounds.
class QVXMLLIB_API Cui1Col : public CXmlTypeCollectionOf<ItemType_ui1, unsigned char>
{
public:
    Cui1Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
            const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
            const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
            int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cui1Col() override;
};

/// Repeated `xs:unsignedShort`, 16 bits. Facets: bounds.
class QVXMLLIB_API Cui2Col : public CXmlTypeCollectionOf<ItemType_ui2, unsigned short>
{
public:
    Cui2Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
            const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
            const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
            int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cui2Col() override;
};

/// Repeated `xs:unsignedInt`, 32 bits, whatever the width of `long`. Facets: bounds.
class QVXMLLIB_API Cui4Col : public CXmlTypeCollectionOf<ItemType_ui4, unsigned long>
{
public:
    Cui4Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
            const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
            const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
            int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cui4Col() override;
};

/// Repeated `xs:unsignedLong`, 64 bits. Facets: bounds.
class QVXMLLIB_API Cui8Col : public CXmlTypeCollectionOf<ItemType_ui8, unsigned __int64>
{
public:
    Cui8Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
            const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
            const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
            int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cui8Col() override;
};

/// Repeated `xs:float`, written with the format. Facets: bounds, which NaN never meets.
class QVXMLLIB_API Cr4Col : public CXmlTypeCollectionOf<ItemType_r4, float>
{
public:
    Cr4Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
           int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cr4Col() override;
};

/// Repeated `xs:double`, written with the format. Facets: bounds, which NaN never meets.
class QVXMLLIB_API Cr8Col : public CXmlTypeCollectionOf<ItemType_r8, double>
{
public:
    Cr8Col(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
           const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
           const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
           int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~Cr8Col() override;
};

/// Repeated `xs:duration`. Facets: bounds; a value that cannot be compared with one passes it.
class QVXMLLIB_API CdurationCol : public CXmlTypeCollectionOf<ItemType_duration, CDateTimeSpan, const CDateTimeSpan&>
{
public:
    CdurationCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CdurationCol() override;
};

/// Repeated `xs:gYear`, the bare number. Facets: bounds.
class QVXMLLIB_API CyearCol : public CXmlTypeCollectionOf<ItemType_year, unsigned short>
{
public:
    CyearCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
             const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
             const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
             int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CyearCol() override;
};

/// Repeated `xs:gMonth`, the bare number. Facets: bounds.
class QVXMLLIB_API CmonthCol : public CXmlTypeCollectionOf<ItemType_month, unsigned char>
{
public:
    CmonthCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
              const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
              const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
              int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CmonthCol() override;
};

/// Repeated `xs:gDay`, the bare number. Facets: bounds.
class QVXMLLIB_API CdayCol : public CXmlTypeCollectionOf<ItemType_day, unsigned char>
{
public:
    CdayCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
            const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
            const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
            int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CdayCol() override;
};

/// Repeated `xs:string` and its kin. Facets: lengths, in UTF-16 code units, and the pattern.
class QVXMLLIB_API CstringCol : public CXmlTypeCollectionOf<ItemType_string, std::wstring>
{
public:
    CstringCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
               const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
               const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
               int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CstringCol() override;
};

/// Repeated `xs:boolean`, bit by bit: `begin` and `end` give bit iterators. No facets: every value passes.
class QVXMLLIB_API CbooleanCol : public CXmlTypeCollectionOf<ItemType_boolean, bool>
{
public:
    CbooleanCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CbooleanCol() override;
};

/// Repeated `xs:decimal`, written with the format. Facets: bounds.
class QVXMLLIB_API CdecimalCol : public CXmlTypeCollectionOf<ItemType_decimal, CDecimal, const CDecimal&>
{
public:
    CdecimalCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CdecimalCol() override;
};

/// Repeated `xs:integer` of any length. Facets: bounds.
class QVXMLLIB_API CintegerCol : public CXmlTypeCollectionOf<ItemType_integer, CBigInteger, const CBigInteger&>
{
public:
    CintegerCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CintegerCol() override;
};

/// What the five collections of CDateTime share. A value must be of the date kind of the class; that and the facets are
/// tested before the addition is announced.
///
/// The writer is told that the items are date-times, whichever of the five kinds they are, which decides what a Fast
/// Infoset document holds (docs/compatibility.md: Dates of a collection).
class QVXMLLIB_API CdatetimeBaseCol : public CXmlVectorCollection<CDateTime, const CDateTime&>
{
public:
    /// Adds a last value.
    /// @throws CQvInvalidParamException "Dates added to this collection must be of type ..." if it is of another kind;
    ///         CQvException "Invalid Value for %s [%s]" if it breaks a facet.
    virtual void Add(const CDateTime& value);

    /// Adds a value so that it gets a position.
    /// @param nIndex 0 to GetCount().
    /// @throws CQvInvalidParamException "Index out of range", though the addition has been announced; and what Add
    ///         throws.
    virtual void AddAt(int nIndex, const CDateTime& value) = 0;

    /// A copy of the value at a position.
    /// @throws CQvInvalidParamException as Remove does.
    virtual CDateTime Item(int nIndex) const;

protected:
    using CXmlVectorCollection::CXmlVectorCollection;
    ~CdatetimeBaseCol() override;

    /// The lexical form of a value.
    virtual std::wstring ItemToString(const CDateTime& value) const = 0;

    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// AddAt without a test of kind and facets.
    void BaseAddAt(int nIndex, const CDateTime& value);
};

/// The operations of a collection of dates of one kind.
/// @tparam t_eItemType kind of the values.
template <ItemType t_eItemType>
class CXmlDateCollectionOf : public CdatetimeBaseCol
{
public:
    void AddAt(int nIndex, const CDateTime& value) override;

protected:
    CXmlDateCollectionOf(const STypeCollectionParameters& parameters);
    ~CXmlDateCollectionOf() override;

    void AddFromString(std::wstring strText) override;
    std::wstring ItemToString(const CDateTime& value) const override;
};

extern template class QVXMLLIB_API CXmlDateCollectionOf<ItemType_yearMonth>;
extern template class QVXMLLIB_API CXmlDateCollectionOf<ItemType_monthDay>;
extern template class QVXMLLIB_API CXmlDateCollectionOf<ItemType_date>;
extern template class QVXMLLIB_API CXmlDateCollectionOf<ItemType_datetime>;
extern template class QVXMLLIB_API CXmlDateCollectionOf<ItemType_time>;

/// Repeated `xs:gYearMonth`. Its values are of the kind `dt_gYearMonth`. Facets: bounds; a value that cannot be
/// compared with one passes it.
class QVXMLLIB_API CyearMonthCol : public CXmlDateCollectionOf<ItemType_yearMonth>
{
public:
    CyearMonthCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                  const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                  const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                  int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CyearMonthCol() override;
};

/// Repeated `xs:gMonthDay`. Its values are of the kind `dt_gMonthDay`. Facets: bounds; a value that cannot be compared
/// with one passes it.
class QVXMLLIB_API CmonthDayCol : public CXmlDateCollectionOf<ItemType_monthDay>
{
public:
    CmonthDayCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CmonthDayCol() override;
};

/// Repeated `xs:date`. Its values are of the kind `dt_date`. Facets: bounds; a value that cannot be compared with one
/// passes it.
class QVXMLLIB_API CdateCol : public CXmlDateCollectionOf<ItemType_date>
{
public:
    CdateCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
             const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
             const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
             int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CdateCol() override;
};

/// Repeated `xs:dateTime`. Its values are of the kind `dt_dateTime`. Facets: bounds; a value that cannot be compared
/// with one passes it.
class QVXMLLIB_API CdatetimeCol : public CXmlDateCollectionOf<ItemType_datetime>
{
public:
    CdatetimeCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
                 const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
                 const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
                 int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CdatetimeCol() override;
};

/// Repeated `xs:time`. Its values are of the kind `dt_time`. Facets: bounds; a value that cannot be compared with one
/// passes it.
class QVXMLLIB_API CtimeCol : public CXmlDateCollectionOf<ItemType_time>
{
public:
    CtimeCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs,
             const wchar_t* lpctPattern, int nMinLength, int nMaxLength, const wchar_t* lpctMinInclusive,
             const wchar_t* lpctMaxInclusive, const wchar_t* lpctMinExclusive, const wchar_t* lpctMaxExclusive,
             int nLength, CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const wchar_t* lpctFormat);
    ~CtimeCol() override;
};

} // namespace QvXmlLib9
