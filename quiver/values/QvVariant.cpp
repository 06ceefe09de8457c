#include "quiver/values/QvVariant.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/ItemTraits.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace QvXmlLib9
{

namespace
{

bool IsCounted(ItemType eType)
{
    return eType == ItemType_XmlObjectBase || eType == ItemType_XmlCollection;
}

template <std::size_t... nIndex>
constexpr unsigned int GetObjectTypes(std::index_sequence<nIndex...>)
{
    constexpr unsigned int nCounted = 1U << ItemType_XmlObjectBase | 1U << ItemType_XmlCollection;
    return ((SItemTraits<static_cast<ItemType>(nIndex + 1)>::s_bIsObject ? 2U << nIndex : 0U) | ...) | nCounted;
}

/// Calls `visitor` with the member of the union that holds the object of a kind, if the kind has one that the variant
/// owns by itself.
template <class TVisitor>
void VisitObjectMember(ItemType eType, TVisitor&& visitor)
{
    VisitItemType(eType,
                  [&](auto traits)
                  {
                      if constexpr (decltype(traits)::s_bIsObject)
                          visitor(traits.s_pHeld);
                      else
                          static_cast<void>(traits);
                  });
}

template <class T>
const T& EmptyOf()
{
    // Never destroyed: static objects may read values while they die.
    static const T& s_empty = *new const T;
    return s_empty;
}

/// What the pointer to the string shows as long as the text is UTF-8 elsewhere. Nobody reads it.
alignas(std::wstring) unsigned char s_utf8Mark[sizeof(std::wstring)];

std::wstring* GetUtf8Mark()
{
    return reinterpret_cast<std::wstring*>(s_utf8Mark);
}

std::wstring DecodeText(std::string_view svUtf8)
{
    std::wstring strText;
    AppendUtf8AsUtf16(strText, svUtf8);
    return strText;
}

[[noreturn]] void ThrowNoText(ItemType eType)
{
    throw CQvException(FormatString(L"Invalid Type %d to convert to string", static_cast<int>(eType)));
}

} // namespace

/// Takes the value by value, as it may be the very object that Clear destroys.
template <ItemType eType, class T>
void QvVariant::Hold(T value)
{
    using Traits = SItemTraits<eType>;
    static_assert(std::is_same_v<T, typename Traits::Value>);
    Clear();
    if constexpr (Traits::s_bIsObject)
        this->*Traits::s_pHeld = ::new (static_cast<void*>(&m_storage)) T(std::move(value));
    else
        this->*Traits::s_pHeld = value;
    m_type = eType;
}

template <ItemType eType>
decltype(auto) QvVariant::Held() const
{
    using Traits = SItemTraits<eType>;
    using Value = typename Traits::Value;
    if constexpr (Traits::s_bIsObject)
        return m_type == eType && this->*Traits::s_pHeld != nullptr ? *(this->*Traits::s_pHeld) : EmptyOf<Value>();
    else
        return m_type == eType ? this->*Traits::s_pHeld : Value();
}

const QvVariant& QvVariant::operator=(const QvVariant& source)
{
    Clear();
    const ItemType eType = source.m_type;
    if (static_cast<unsigned int>(eType) > ItemType_XmlCollection)
        throw CQvException(L"Unknown Type");
    if (source.IsUtf8())
        source.MakeString();
    std::memcpy(&m_i8, &source.m_i8, sizeof(m_i8));
    if (IsCounted(eType))
        source.AddReference();
    else if (source.HoldsObject())
        VisitObjectMember(eType,
                          [&](auto pMember)
                          {
                              using T = std::remove_pointer_t<std::remove_reference_t<decltype(this->*pMember)>>;
                              if (source.*pMember != nullptr)
                                  this->*pMember = ::new (static_cast<void*>(&m_storage)) T(*(source.*pMember));
                          });
    m_type = eType;
    return *this;
}

void QvVariant::Take(QvVariant& source) noexcept
{
    if (source.IsUtf8())
        source.MakeString();
    std::memcpy(&m_i8, &source.m_i8, sizeof(m_i8));
    m_type = source.m_type;
    if (OwnsObject())
    {
        VisitObjectMember(m_type,
                          [&](auto pMember)
                          {
                              using T = std::remove_pointer_t<std::remove_reference_t<decltype(this->*pMember)>>;
                              if (source.m_bBorrows)
                                  this->*pMember = ::new (static_cast<void*>(&m_storage)) T(*(source.*pMember));
                              if (!source.IsInside(source.*pMember))
                                  return;
                              this->*pMember = ::new (static_cast<void*>(&m_storage)) T(std::move(*(source.*pMember)));
                              (source.*pMember)->T::~T();
                          });
    }
    source.m_type = ItemType_Invalid;
    source.m_bBorrows = false;
}

void QvVariant::Release() noexcept
{
    static_assert(s_nObjectTypes == GetObjectTypes(ItemKindIndexes()));
    if (IsCounted(m_type))
        return ReleaseReference();
    if (IsUtf8())
        return;
    VisitObjectMember(m_type,
                      [&](auto pMember)
                      {
                          using T = std::remove_pointer_t<std::remove_reference_t<decltype(this->*pMember)>>;
                          T* const pObject = std::exchange(this->*pMember, nullptr);
                          if (IsInside(pObject))
                              pObject->T::~T();
                          else
                              delete pObject;
                      });
}

std::wstring QvVariant::GetType() const
{
    const wchar_t* lpctName = nullptr;
    if (!VisitItemType(m_type, [&](auto traits) { lpctName = decltype(traits)::s_kind.lpctName; }))
        throw CQvException(FormatString(L"Invalid Type %d", static_cast<int>(m_type)));
    return lpctName;
}

void QvVariant::SetHexBinary(const CBinaryData& value)
{
    Hold<ItemType_hexBinary>(value);
}

CBinaryData QvVariant::GetHexBinary() const
{
    return HexBinaryRef();
}

void QvVariant::SetBase64Binary(const CBinaryData& value)
{
    Hold<ItemType_base64Binary>(value);
}

CBinaryData QvVariant::GetBase64Binary() const
{
    return Base64BinaryRef();
}

void QvVariant::SetI1(char value)
{
    Hold<ItemType_i1>(value);
}

char QvVariant::GetI1() const
{
    QV_ASSERT(m_type == ItemType_i1);
    return Held<ItemType_i1>();
}

void QvVariant::SetI2(short value)
{
    Hold<ItemType_i2>(value);
}

short QvVariant::GetI2() const
{
    QV_ASSERT(m_type == ItemType_i2);
    return Held<ItemType_i2>();
}

void QvVariant::SetI4(long value)
{
    Hold<ItemType_i4>(static_cast<long>(static_cast<std::int32_t>(value)));
}

long QvVariant::GetI4() const
{
    QV_ASSERT(m_type == ItemType_i4);
    return Held<ItemType_i4>();
}

void QvVariant::SetI8(__int64 value)
{
    Hold<ItemType_i8>(value);
}

__int64 QvVariant::GetI8() const
{
    QV_ASSERT(m_type == ItemType_i8);
    return Held<ItemType_i8>();
}

void QvVariant::SetUI1(unsigned char value)
{
    Hold<ItemType_ui1>(value);
}

unsigned char QvVariant::GetUI1() const
{
    QV_ASSERT(m_type == ItemType_ui1);
    return Held<ItemType_ui1>();
}

void QvVariant::SetUI2(unsigned short value)
{
    Hold<ItemType_ui2>(value);
}

unsigned short QvVariant::GetUI2() const
{
    QV_ASSERT(m_type == ItemType_ui2);
    return Held<ItemType_ui2>();
}

void QvVariant::SetUI4(unsigned long value)
{
    Hold<ItemType_ui4>(static_cast<unsigned long>(static_cast<std::uint32_t>(value)));
}

unsigned long QvVariant::GetUI4() const
{
    QV_ASSERT(m_type == ItemType_ui4);
    return Held<ItemType_ui4>();
}

void QvVariant::SetUI8(unsigned __int64 value)
{
    Hold<ItemType_ui8>(value);
}

unsigned __int64 QvVariant::GetUI8() const
{
    QV_ASSERT(m_type == ItemType_ui8);
    return Held<ItemType_ui8>();
}

void QvVariant::SetR4(float value)
{
    Hold<ItemType_r4>(value);
}

float QvVariant::GetR4() const
{
    QV_ASSERT(m_type == ItemType_r4);
    return Held<ItemType_r4>();
}

void QvVariant::SetR8(double value)
{
    Hold<ItemType_r8>(value);
}

double QvVariant::GetR8() const
{
    QV_ASSERT(m_type == ItemType_r8);
    return Held<ItemType_r8>();
}

void QvVariant::SetDuration(const CDateTimeSpan& value)
{
    Hold<ItemType_duration>(value);
}

CDateTimeSpan QvVariant::GetDuration() const
{
    QV_ASSERT(m_type == ItemType_duration);
    return Held<ItemType_duration>();
}

void QvVariant::SetYearMonth(const CDateTime& value)
{
    Hold<ItemType_yearMonth>(value);
}

CDateTime QvVariant::GetYearMonth() const
{
    QV_ASSERT(m_type == ItemType_yearMonth);
    return Held<ItemType_yearMonth>();
}

void QvVariant::SetMonthDay(const CDateTime& value)
{
    Hold<ItemType_monthDay>(value);
}

CDateTime QvVariant::GetMonthDay() const
{
    QV_ASSERT(m_type == ItemType_monthDay);
    return Held<ItemType_monthDay>();
}

void QvVariant::SetYear(unsigned short value)
{
    Hold<ItemType_year>(value);
}

unsigned short QvVariant::GetYear() const
{
    QV_ASSERT(m_type == ItemType_year);
    return Held<ItemType_year>();
}

void QvVariant::SetMonth(unsigned char value)
{
    Hold<ItemType_month>(value);
}

unsigned char QvVariant::GetMonth() const
{
    QV_ASSERT(m_type == ItemType_month);
    return Held<ItemType_month>();
}

void QvVariant::SetDay(unsigned char value)
{
    Hold<ItemType_day>(value);
}

unsigned char QvVariant::GetDay() const
{
    QV_ASSERT(m_type == ItemType_day);
    return Held<ItemType_day>();
}

void QvVariant::SetDate(const CDateTime& value)
{
    Hold<ItemType_date>(value);
}

CDateTime QvVariant::GetDate() const
{
    QV_ASSERT(m_type == ItemType_date);
    return Held<ItemType_date>();
}

void QvVariant::SetDateTime(const CDateTime& value)
{
    Hold<ItemType_datetime>(value);
}

CDateTime QvVariant::GetDateTime() const
{
    QV_ASSERT(m_type == ItemType_datetime);
    return Held<ItemType_datetime>();
}

void QvVariant::SetTime(const CDateTime& value)
{
    Hold<ItemType_time>(value);
}

CDateTime QvVariant::GetTime() const
{
    QV_ASSERT(m_type == ItemType_time);
    return Held<ItemType_time>();
}

void QvVariant::SetChar(wchar_t value)
{
    Hold<ItemType_char>(value);
}

wchar_t QvVariant::GetChar() const
{
    QV_ASSERT(m_type == ItemType_char);
    return Held<ItemType_char>();
}

void QvVariant::SetString(std::wstring value)
{
    Hold<ItemType_string>(ToUtf16Units(std::move(value)));
}

void QvVariant::SetStringRef(const std::wstring& value)
{
    std::uint32_t nAll = 0;
    for (const wchar_t c : value)
        nAll |= static_cast<std::uint32_t>(c);
    if (!m_bMayBorrow || nAll > 0xFFFF)
        return SetString(value);
    Clear();
    // Only read through: whoever takes the value away copies it.
    m_pString = const_cast<std::wstring*>(&value);
    m_bBorrows = true;
    m_type = ItemType_string;
}

std::wstring QvVariant::GetString() const
{
    return StringRef();
}

bool QvVariant::IsUtf8() const noexcept
{
    return m_type == ItemType_string && m_pString == GetUtf8Mark();
}

void QvVariant::SetUtf8(std::string_view svUtf8) noexcept
{
    Clear();
    ::new (static_cast<void*>(&m_storage)) std::string_view(svUtf8);
    m_pString = GetUtf8Mark();
    m_type = ItemType_string;
}

void QvVariant::SetStringRef(std::string_view svUtf8)
{
    if (m_bMayBorrow)
        SetUtf8(svUtf8);
    else
        SetString(DecodeText(svUtf8));
}

bool QvVariant::GetUtf8(std::string_view& svUtf8) const noexcept
{
    if (!IsUtf8())
        return false;
    svUtf8 = m_storage.utf8;
    return true;
}

/// Makes a string of UTF-8, which changes the form of the value alone.
void QvVariant::MakeString() const
{
    const_cast<QvVariant*>(this)->Hold<ItemType_string>(DecodeText(m_storage.utf8));
}

std::wstring QvVariant::TakeString()
{
    std::wstring strValue;
    if (IsUtf8())
        MakeString();
    QV_ASSERT_MSG(m_type == ItemType_string && m_pString != nullptr, "m_type == ItemType_string && m_pString != NULL");
    if (m_type == ItemType_string && m_pString != nullptr)
    {
        if (m_bBorrows)
            strValue = *m_pString;
        else
            strValue = std::move(*m_pString);
    }
    Clear();
    return strValue;
}

void QvVariant::SetBoolean(bool value)
{
    Hold<ItemType_boolean>(value);
}

bool QvVariant::GetBoolean() const
{
    QV_ASSERT(m_type == ItemType_boolean);
    return Held<ItemType_boolean>();
}

void QvVariant::SetDecimal(const CDecimal& value)
{
    Hold<ItemType_decimal>(value);
}

CDecimal QvVariant::GetDecimal() const
{
    return DecimalRef();
}

void QvVariant::SetInteger(const CBigInteger& value)
{
    Hold<ItemType_integer>(value);
}

CBigInteger QvVariant::GetInteger() const
{
    return IntegerRef();
}

std::wstring QvVariant::ToString(const wchar_t* format) const
{
    std::wstring strText;
    AppendText(strText, format);
    return strText;
}

void QvVariant::FromString(const std::wstring& value, ItemType type, CWhitespaceUtils::WhitespaceRule rule)
{
    const auto fnRead = [&](auto traits)
    {
        Hold<traits.s_eType>(traits.FromString(value, rule));
    };
    if (!VisitItemType(type, fnRead))
        ThrowNoText(type);
}

void QvVariant::AppendText(std::wstring& strOut, const wchar_t* format) const
{
    const auto fnAppend = [&](auto traits)
    {
        traits.AppendText(strOut, traits.Get(*this), format);
    };
    if (!VisitItemType(m_type, fnAppend))
        ThrowNoText(m_type);
}

const CBinaryData& QvVariant::HexBinaryRef() const
{
    QV_ASSERT(m_type == ItemType_hexBinary);
    return Held<ItemType_hexBinary>();
}

const CBinaryData& QvVariant::Base64BinaryRef() const
{
    QV_ASSERT(m_type == ItemType_base64Binary);
    return Held<ItemType_base64Binary>();
}

const std::wstring& QvVariant::StringRef() const
{
    if (IsUtf8())
        MakeString();
    QV_ASSERT_MSG(m_type == ItemType_string && m_pString != nullptr, "m_type == ItemType_string && m_pString != NULL");
    return Held<ItemType_string>();
}

const CDecimal& QvVariant::DecimalRef() const
{
    QV_ASSERT_MSG(m_type == ItemType_decimal && m_pDecimal != nullptr,
                  "m_type == ItemType_decimal && m_pDecimal != NULL");
    return Held<ItemType_decimal>();
}

const CBigInteger& QvVariant::IntegerRef() const
{
    QV_ASSERT_MSG(m_type == ItemType_integer && m_pBigInteger != nullptr,
                  "m_type == ItemType_integer && m_pBigInteger != NULL");
    return Held<ItemType_integer>();
}

} // namespace QvXmlLib9
