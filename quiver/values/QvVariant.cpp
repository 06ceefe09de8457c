#include "quiver/values/QvVariant.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/ItemTraits.h"

#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
#include <type_traits>
#include <utility>

namespace QvXmlLib9
{

namespace
{

template <class TMember>
struct SObjectOf;
template <class T>
struct SObjectOf<T * QvVariant::*>
{
    using Type = T;
};
/// The class that a pointer in the union points to.
template <class TMember>
using ObjectOf = typename SObjectOf<TMember>::Type;

template <class T>
constexpr bool s_bIsCounted = std::is_same_v<T, CXmlObjectBase> || std::is_same_v<T, CXmlCollectionBase>;

/// Calls `visitor` with the member of the union that holds the object of a kind; does nothing for the other kinds.
template <class TVisitor>
void VisitObjectMember(ItemType eType, TVisitor&& visitor)
{
    switch (eType)
    {
    case ItemType_hexBinary:
    case ItemType_base64Binary:
        return visitor(&QvVariant::m_pBinaryData);
    case ItemType_duration:
        return visitor(&QvVariant::m_pDateTimeSpan);
    case ItemType_yearMonth:
    case ItemType_monthDay:
    case ItemType_date:
    case ItemType_datetime:
    case ItemType_time:
        return visitor(&QvVariant::m_pDateTime);
    case ItemType_string:
        return visitor(&QvVariant::m_pString);
    case ItemType_decimal:
        return visitor(&QvVariant::m_pDecimal);
    case ItemType_integer:
        return visitor(&QvVariant::m_pBigInteger);
    case ItemType_XmlObjectBase:
        return visitor(&QvVariant::m_pXmlObject);
    case ItemType_XmlCollection:
        return visitor(&QvVariant::m_pXmlCol);
    case ItemType_Invalid:
    case ItemType_i1:
    case ItemType_i2:
    case ItemType_i4:
    case ItemType_i8:
    case ItemType_ui1:
    case ItemType_ui2:
    case ItemType_ui4:
    case ItemType_ui8:
    case ItemType_r4:
    case ItemType_r8:
    case ItemType_year:
    case ItemType_month:
    case ItemType_day:
    case ItemType_char:
    case ItemType_boolean:
        break;
    }
}

/// The member of the union for the objects of a class.
template <class T>
constexpr T* QvVariant::*s_pMemberFor = nullptr;
template <>
constexpr CBinaryData* QvVariant::*s_pMemberFor<CBinaryData> = &QvVariant::m_pBinaryData;
template <>
constexpr CDateTimeSpan* QvVariant::*s_pMemberFor<CDateTimeSpan> = &QvVariant::m_pDateTimeSpan;
template <>
constexpr CDateTime* QvVariant::*s_pMemberFor<CDateTime> = &QvVariant::m_pDateTime;
template <>
constexpr std::wstring* QvVariant::*s_pMemberFor<std::wstring> = &QvVariant::m_pString;
template <>
constexpr CDecimal* QvVariant::*s_pMemberFor<CDecimal> = &QvVariant::m_pDecimal;
template <>
constexpr CBigInteger* QvVariant::*s_pMemberFor<CBigInteger> = &QvVariant::m_pBigInteger;

constexpr const wchar_t* s_typeNames[] = {
    nullptr, L"hexBinary", L"base64Binary", L"i1",   L"i2",       L"i4",        L"i8",       L"ui1",     L"ui2",
    L"ui4",  L"ui8",       L"r4",           L"r8",   L"duration", L"yearMonth", L"monthDay", L"year",    L"month",
    L"day",  L"date",      L"datetime",     L"time", L"char",     L"string",    L"boolean",  L"decimal", L"integer"};
static_assert(std::size(s_typeNames) == ItemType_integer + 1);

[[noreturn]] void ThrowNoText(ItemType eType)
{
    throw CQvException(FormatString(L"Invalid Type %d to convert to string", static_cast<int>(eType)));
}

} // namespace

/// Takes the value by value, as it may be the very object that Clear destroys.
template <class T>
void QvVariant::Hold(ItemType eType, T* QvVariant::*pMember, T value)
{
    Clear();
    this->*pMember = ::new (static_cast<void*>(&m_storage)) T(std::move(value));
    m_type = eType;
}

template <class T>
void QvVariant::HoldCounted(ItemType eType, T* QvVariant::*pMember, T* pObject)
{
    // The reference comes first: the object may live by this variant alone.
    if (pObject != nullptr)
        pObject->AddRef();
    Clear();
    this->*pMember = pObject;
    m_type = eType;
}

template <class T>
void QvVariant::HoldBits(ItemType eType, T QvVariant::*pMember, T value)
{
    Clear();
    this->*pMember = value;
    m_type = eType;
}

template <class T>
T QvVariant::Bits(ItemType eType, T QvVariant::*pMember) const
{
    return m_type == eType ? this->*pMember : T();
}

template <class T>
const T& QvVariant::Object(ItemType eType, T* QvVariant::*pMember) const
{
    if (m_type == eType && this->*pMember != nullptr)
        return *(this->*pMember);
    // Never destroyed: static objects may read values while they die.
    static const T& s_empty = *new const T;
    return s_empty;
}

const QvVariant& QvVariant::operator=(const QvVariant& source)
{
    Clear();
    const ItemType eType = source.m_type;
    if (static_cast<unsigned int>(eType) > ItemType_XmlCollection)
        throw CQvException(L"Unknown Type");
    std::memcpy(&m_i8, &source.m_i8, sizeof(m_i8));
    VisitObjectMember(eType,
                      [&](auto pMember)
                      {
                          using T = ObjectOf<decltype(pMember)>;
                          if (source.*pMember == nullptr)
                              return;
                          if constexpr (s_bIsCounted<T>)
                              (source.*pMember)->AddRef();
                          else
                              this->*pMember = ::new (static_cast<void*>(&m_storage)) T(*(source.*pMember));
                      });
    m_type = eType;
    return *this;
}

void QvVariant::Take(QvVariant& source) noexcept
{
    std::memcpy(&m_i8, &source.m_i8, sizeof(m_i8));
    m_type = source.m_type;
    if (OwnsObject())
    {
        VisitObjectMember(m_type,
                          [&](auto pMember)
                          {
                              using T = ObjectOf<decltype(pMember)>;
                              if constexpr (!s_bIsCounted<T>)
                              {
                                  if (!source.IsInside(source.*pMember))
                                      return;
                                  this->*pMember =
                                      ::new (static_cast<void*>(&m_storage)) T(std::move(*(source.*pMember)));
                                  (source.*pMember)->T::~T();
                              }
                          });
    }
    source.m_type = ItemType_Invalid;
}

void QvVariant::Release() noexcept
{
    VisitObjectMember(m_type,
                      [&](auto pMember)
                      {
                          using T = ObjectOf<decltype(pMember)>;
                          T* const pObject = std::exchange(this->*pMember, nullptr);
                          if (pObject == nullptr)
                              return;
                          if constexpr (s_bIsCounted<T>)
                              pObject->Release();
                          else if (IsInside(pObject))
                              pObject->T::~T();
                          else
                              delete pObject;
                      });
}

std::wstring QvVariant::GetType() const
{
    if (m_type < ItemType_hexBinary || m_type > ItemType_integer)
        throw CQvException(FormatString(L"Invalid Type %d", static_cast<int>(m_type)));
    return s_typeNames[m_type];
}

void QvVariant::SetHexBinary(const CBinaryData& value)
{
    Hold(ItemType_hexBinary, s_pMemberFor<CBinaryData>, value);
}

CBinaryData QvVariant::GetHexBinary() const
{
    return HexBinaryRef();
}

void QvVariant::SetBase64Binary(const CBinaryData& value)
{
    Hold(ItemType_base64Binary, s_pMemberFor<CBinaryData>, value);
}

CBinaryData QvVariant::GetBase64Binary() const
{
    return Base64BinaryRef();
}

void QvVariant::SetI1(char value)
{
    HoldBits(ItemType_i1, &QvVariant::m_i1, value);
}

char QvVariant::GetI1() const
{
    QV_ASSERT(m_type == ItemType_i1);
    return Bits(ItemType_i1, &QvVariant::m_i1);
}

void QvVariant::SetI2(short value)
{
    HoldBits(ItemType_i2, &QvVariant::m_i2, value);
}

short QvVariant::GetI2() const
{
    QV_ASSERT(m_type == ItemType_i2);
    return Bits(ItemType_i2, &QvVariant::m_i2);
}

void QvVariant::SetI4(long value)
{
    HoldBits(ItemType_i4, &QvVariant::m_i4, static_cast<long>(static_cast<std::int32_t>(value)));
}

long QvVariant::GetI4() const
{
    QV_ASSERT(m_type == ItemType_i4);
    return Bits(ItemType_i4, &QvVariant::m_i4);
}

void QvVariant::SetI8(__int64 value)
{
    HoldBits(ItemType_i8, &QvVariant::m_i8, value);
}

__int64 QvVariant::GetI8() const
{
    QV_ASSERT(m_type == ItemType_i8);
    return Bits(ItemType_i8, &QvVariant::m_i8);
}

void QvVariant::SetUI1(unsigned char value)
{
    HoldBits(ItemType_ui1, &QvVariant::m_ui1, value);
}

unsigned char QvVariant::GetUI1() const
{
    QV_ASSERT(m_type == ItemType_ui1);
    return Bits(ItemType_ui1, &QvVariant::m_ui1);
}

void QvVariant::SetUI2(unsigned short value)
{
    HoldBits(ItemType_ui2, &QvVariant::m_ui2, value);
}

unsigned short QvVariant::GetUI2() const
{
    QV_ASSERT(m_type == ItemType_ui2);
    return Bits(ItemType_ui2, &QvVariant::m_ui2);
}

void QvVariant::SetUI4(unsigned long value)
{
    HoldBits(ItemType_ui4, &QvVariant::m_ui4, static_cast<unsigned long>(static_cast<std::uint32_t>(value)));
}

unsigned long QvVariant::GetUI4() const
{
    QV_ASSERT(m_type == ItemType_ui4);
    return Bits(ItemType_ui4, &QvVariant::m_ui4);
}

void QvVariant::SetUI8(unsigned __int64 value)
{
    HoldBits(ItemType_ui8, &QvVariant::m_ui8, value);
}

unsigned __int64 QvVariant::GetUI8() const
{
    QV_ASSERT(m_type == ItemType_ui8);
    return Bits(ItemType_ui8, &QvVariant::m_ui8);
}

void QvVariant::SetR4(float value)
{
    HoldBits(ItemType_r4, &QvVariant::m_r4, value);
}

float QvVariant::GetR4() const
{
    QV_ASSERT(m_type == ItemType_r4);
    return Bits(ItemType_r4, &QvVariant::m_r4);
}

void QvVariant::SetR8(double value)
{
    HoldBits(ItemType_r8, &QvVariant::m_r8, value);
}

double QvVariant::GetR8() const
{
    QV_ASSERT(m_type == ItemType_r8);
    return Bits(ItemType_r8, &QvVariant::m_r8);
}

void QvVariant::SetDuration(const CDateTimeSpan& value)
{
    Hold(ItemType_duration, s_pMemberFor<CDateTimeSpan>, value);
}

CDateTimeSpan QvVariant::GetDuration() const
{
    QV_ASSERT(m_type == ItemType_duration);
    return Object(ItemType_duration, &QvVariant::m_pDateTimeSpan);
}

void QvVariant::SetYearMonth(const CDateTime& value)
{
    Hold(ItemType_yearMonth, s_pMemberFor<CDateTime>, value);
}

CDateTime QvVariant::GetYearMonth() const
{
    QV_ASSERT(m_type == ItemType_yearMonth);
    return Object(ItemType_yearMonth, &QvVariant::m_pDateTime);
}

void QvVariant::SetMonthDay(const CDateTime& value)
{
    Hold(ItemType_monthDay, s_pMemberFor<CDateTime>, value);
}

CDateTime QvVariant::GetMonthDay() const
{
    QV_ASSERT(m_type == ItemType_monthDay);
    return Object(ItemType_monthDay, &QvVariant::m_pDateTime);
}

void QvVariant::SetYear(unsigned short value)
{
    HoldBits(ItemType_year, &QvVariant::m_year, value);
}

unsigned short QvVariant::GetYear() const
{
    QV_ASSERT(m_type == ItemType_year);
    return Bits(ItemType_year, &QvVariant::m_year);
}

void QvVariant::SetMonth(unsigned char value)
{
    HoldBits(ItemType_month, &QvVariant::m_month, value);
}

unsigned char QvVariant::GetMonth() const
{
    QV_ASSERT(m_type == ItemType_month);
    return Bits(ItemType_month, &QvVariant::m_month);
}

void QvVariant::SetDay(unsigned char value)
{
    HoldBits(ItemType_day, &QvVariant::m_day, value);
}

unsigned char QvVariant::GetDay() const
{
    QV_ASSERT(m_type == ItemType_day);
    return Bits(ItemType_day, &QvVariant::m_day);
}

void QvVariant::SetDate(const CDateTime& value)
{
    Hold(ItemType_date, s_pMemberFor<CDateTime>, value);
}

CDateTime QvVariant::GetDate() const
{
    QV_ASSERT(m_type == ItemType_date);
    return Object(ItemType_date, &QvVariant::m_pDateTime);
}

void QvVariant::SetDateTime(const CDateTime& value)
{
    Hold(ItemType_datetime, s_pMemberFor<CDateTime>, value);
}

CDateTime QvVariant::GetDateTime() const
{
    QV_ASSERT(m_type == ItemType_datetime);
    return Object(ItemType_datetime, &QvVariant::m_pDateTime);
}

void QvVariant::SetTime(const CDateTime& value)
{
    Hold(ItemType_time, s_pMemberFor<CDateTime>, value);
}

CDateTime QvVariant::GetTime() const
{
    QV_ASSERT(m_type == ItemType_time);
    return Object(ItemType_time, &QvVariant::m_pDateTime);
}

void QvVariant::SetChar(wchar_t value)
{
    HoldBits(ItemType_char, &QvVariant::m_char, value);
}

wchar_t QvVariant::GetChar() const
{
    QV_ASSERT(m_type == ItemType_char);
    return Bits(ItemType_char, &QvVariant::m_char);
}

void QvVariant::SetString(std::wstring value)
{
    Hold(ItemType_string, s_pMemberFor<std::wstring>, ToUtf16Units(std::move(value)));
}

std::wstring QvVariant::GetString() const
{
    return StringRef();
}

std::wstring QvVariant::TakeString()
{
    std::wstring strValue;
    QV_ASSERT_MSG(m_type == ItemType_string && m_pString != nullptr, "m_type == ItemType_string && m_pString != NULL");
    if (m_type == ItemType_string && m_pString != nullptr)
        strValue = std::move(*m_pString);
    Clear();
    return strValue;
}

void QvVariant::SetBoolean(bool value)
{
    HoldBits(ItemType_boolean, &QvVariant::m_boolean, value);
}

bool QvVariant::GetBoolean() const
{
    QV_ASSERT(m_type == ItemType_boolean);
    return Bits(ItemType_boolean, &QvVariant::m_boolean);
}

void QvVariant::SetDecimal(const CDecimal& value)
{
    Hold(ItemType_decimal, s_pMemberFor<CDecimal>, value);
}

CDecimal QvVariant::GetDecimal() const
{
    return DecimalRef();
}

void QvVariant::SetInteger(const CBigInteger& value)
{
    Hold(ItemType_integer, s_pMemberFor<CBigInteger>, value);
}

CBigInteger QvVariant::GetInteger() const
{
    return IntegerRef();
}

void QvVariant::SetXmlObject(CXmlObjectBase* pObject)
{
    HoldCounted(ItemType_XmlObjectBase, &QvVariant::m_pXmlObject, pObject);
}

CSmartPtr<CXmlObjectBase> QvVariant::GetXmlObject() const
{
    return XmlObjectPtr();
}

void QvVariant::SetXmlCollection(CXmlCollectionBase* pCollection)
{
    HoldCounted(ItemType_XmlCollection, &QvVariant::m_pXmlCol, pCollection);
}

CSmartPtr<CXmlCollectionBase> QvVariant::GetXmlCollection() const
{
    return XmlCollectionPtr();
}

std::wstring QvVariant::ToString(const wchar_t* format) const
{
    std::wstring strText;
    AppendText(strText, format);
    return strText;
}

void QvVariant::FromString(const std::wstring& value, ItemType type, CWhitespaceUtils::WhitespaceRule rule)
{
    const bool bHasText = VisitItemType(type,
                                        [&](auto traits)
                                        {
                                            using Traits = decltype(traits);
                                            using Value = typename Traits::Value;
                                            // The setters of objects would copy them.
                                            if constexpr (std::is_class_v<Value>)
                                                Hold<Value>(type, s_pMemberFor<Value>, Traits::FromString(value, rule));
                                            else
                                                Traits::Set(*this, Traits::FromString(value, rule));
                                        });
    if (!bHasText)
        ThrowNoText(type);
}

void QvVariant::AppendText(std::wstring& strOut, const wchar_t* format) const
{
    const bool bHasText = VisitItemType(m_type,
                                        [&](auto traits)
                                        {
                                            using Traits = decltype(traits);
                                            AppendItemText<Traits::s_eType>(strOut, Traits::Get(*this), format);
                                        });
    if (!bHasText)
        ThrowNoText(m_type);
}

const CBinaryData& QvVariant::HexBinaryRef() const
{
    QV_ASSERT(m_type == ItemType_hexBinary);
    return Object(ItemType_hexBinary, &QvVariant::m_pBinaryData);
}

const CBinaryData& QvVariant::Base64BinaryRef() const
{
    QV_ASSERT(m_type == ItemType_base64Binary);
    return Object(ItemType_base64Binary, &QvVariant::m_pBinaryData);
}

const std::wstring& QvVariant::StringRef() const
{
    QV_ASSERT_MSG(m_type == ItemType_string && m_pString != nullptr, "m_type == ItemType_string && m_pString != NULL");
    return Object(ItemType_string, &QvVariant::m_pString);
}

const CDecimal& QvVariant::DecimalRef() const
{
    QV_ASSERT_MSG(m_type == ItemType_decimal && m_pDecimal != nullptr,
                  "m_type == ItemType_decimal && m_pDecimal != NULL");
    return Object(ItemType_decimal, &QvVariant::m_pDecimal);
}

const CBigInteger& QvVariant::IntegerRef() const
{
    QV_ASSERT_MSG(m_type == ItemType_integer && m_pBigInteger != nullptr,
                  "m_type == ItemType_integer && m_pBigInteger != NULL");
    return Object(ItemType_integer, &QvVariant::m_pBigInteger);
}

CXmlObjectBase* QvVariant::XmlObjectPtr() const
{
    QV_ASSERT_MSG(m_type == ItemType_XmlObjectBase || m_type == ItemType_XmlCollection,
                  "m_type == ItemType_XmlObjectBase");
    if (m_type == ItemType_XmlCollection)
        return m_pXmlCol;
    return m_type == ItemType_XmlObjectBase ? m_pXmlObject : nullptr;
}

CXmlCollectionBase* QvVariant::XmlCollectionPtr() const
{
    QV_ASSERT_MSG(m_type == ItemType_XmlCollection && m_pXmlCol != nullptr,
                  "m_type == ItemType_XmlCollection && m_pXmlCol != NULL");
    return m_type == ItemType_XmlCollection ? m_pXmlCol : nullptr;
}

} // namespace QvXmlLib9
