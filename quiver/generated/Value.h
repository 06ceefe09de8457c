#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Export.h"
#include "quiver/generated/Prefixes.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/Decimal.h"
#include "quiver/values/QvVariant.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// @file
/// Values of simple types in their C++ form, their texts, and their form on the way to a writer. Generated code gets
/// here through its members (Member.h); applications convert with the same functions where they have to:
///
///     const int nQuantity = ValueOf<xs::Int>(L" 42 ", L"quantity");

namespace QvXmlLib9
{

/// @name Reading a text that CSimpleType::Check has passed
/// @{
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, std::wstring& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, bool& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, signed char& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, short& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, int& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, long long& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, unsigned char& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, unsigned short& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, unsigned int& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, unsigned long long& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, float& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, double& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, CDecimal& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, CBigInteger& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, CDateTime& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, CDateTimeSpan& value);
QVXMLLIB_API void ParseValue(const CSimpleType& type, const std::wstring& strText, CBinaryData& value);

/// An enumeration: its enumerators count from 0 in the order of the type's values.
template <class TEnum, std::enable_if_t<std::is_enum_v<TEnum>, int> = 0>
void ParseValue(const CSimpleType& type, const std::wstring& strText, TEnum& value)
{
    value = static_cast<TEnum>(type.FindValue(strText));
}

template <class TItem>
void ParseValue(const CSimpleType& type, const std::wstring& strText, std::vector<TItem>& value);
/// @}

/// @name The text of a value, in a form that gives the same value when it is read
/// @{
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, const std::wstring& value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, bool value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, signed char value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, short value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, int value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, long long value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, unsigned char value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, unsigned short value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, unsigned int value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, unsigned long long value);
/// With as many digits as it takes, which are seven at least.
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, float value);
/// With as many digits as it takes, which are sixteen at least.
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, double value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, const CDecimal& value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, const CBigInteger& value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, const CDateTime& value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, const CDateTimeSpan& value);
QVXMLLIB_API std::wstring ValueText(const CSimpleType& type, const CBinaryData& value);

/// @throws CQvInvalidParamException for a number that is no enumerator.
template <class TEnum, std::enable_if_t<std::is_enum_v<TEnum>, int> = 0>
std::wstring ValueText(const CSimpleType& type, TEnum value)
{
    return type.GetValueText(static_cast<std::size_t>(value));
}

template <class TItem>
std::wstring ValueText(const CSimpleType& type, const std::vector<TItem>& value);
/// @}

/// @name Handing a value to a writer, as the kind that Fast Infoset has an algorithm for where there is one
/// @{
QVXMLLIB_API void StoreValue(const CSimpleType& type, const std::wstring& value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, bool value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, signed char value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, short value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, int value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, long long value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, unsigned char value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, unsigned short value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, unsigned int value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, unsigned long long value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, float value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, double value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, const CDecimal& value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, const CBigInteger& value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, const CDateTime& value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, const CDateTimeSpan& value, QvVariant& variant);
QVXMLLIB_API void StoreValue(const CSimpleType& type, const CBinaryData& value, QvVariant& variant);

template <class TValue, std::enable_if_t<std::is_enum_v<TValue>, int> = 0>
void StoreValue(const CSimpleType& type, TValue value, QvVariant& variant)
{
    variant.SetString(ValueText(type, value));
}

template <class TItem>
void StoreValue(const CSimpleType& type, const std::vector<TItem>& value, QvVariant& variant)
{
    variant.SetString(ValueText(type, value));
}
/// @}

/// The items of a list's text, each normalised.
QVXMLLIB_API std::vector<std::wstring> ListItems(const CSimpleType& type, const std::wstring& strText);

/// Appends an item to a list's text.
/// @throws CQvInvalidValueException for an item that is empty or holds white space: it would be read as none or as two.
QVXMLLIB_API void AppendListItem(std::wstring& strText, const std::wstring& strItem);

template <class TItem>
void ParseValue(const CSimpleType& type, const std::wstring& strText, std::vector<TItem>& value)
{
    value.clear();
    for (const std::wstring& strItem : ListItems(type, strText))
    {
        TItem item{};
        ParseValue(type.GetItem(), strItem, item);
        value.push_back(std::move(item));
    }
}

template <class TItem>
std::wstring ValueText(const CSimpleType& type, const std::vector<TItem>& value)
{
    std::wstring strText;
    for (const TItem& item : value)
        AppendListItem(strText, ValueText(type.GetItem(), item));
    return strText;
}

/// Whether a text that has a type's form is also a value that the library can hold: 300 is no xs:byte, and there is no
/// 30th of February.
bool IsInValueSpace(const CSimpleType& type, const std::wstring& strText);

/// The value of a text in one of the forms of dates and times; false where IsInValueSpace is, or the form is another.
bool ReadDate(const CSimpleType& type, std::wstring_view text, CDateTime& value);

/// Reads a text as a document has it: treats its white space, checks it, converts it.
/// @tparam TType the struct of the type: xs::Int, or a generated one.
/// @param lpctName name of the element or attribute, for the message.
/// @throws CQvInvalidValueException as CSimpleType::Check does.
template <class TType>
typename TType::Value ValueOf(std::wstring strText, const wchar_t* lpctName)
{
    const CSimpleType& type = TType::Type();
    strText = type.Normalize(std::move(strText));
    type.Check(strText, lpctName);
    if constexpr (std::is_same_v<typename TType::Value, std::wstring>)
        return strText;
    else
    {
        typename TType::Value value{};
        ParseValue(type, strText, value);
        return value;
    }
}

/// The value of a text that a schema has: of a default or fixed value.
template <class TType>
typename TType::Value SchemaValueOf(const wchar_t* lpctText)
{
    const CNameScope scope;
    return ValueOf<TType>(lpctText, L"");
}

/// Checks a value that a program gives.
/// @return what is to be stored for it: text as its type's white space makes it.
/// @throws CQvInvalidValueException as CSimpleType::Check does.
template <class TType>
typename TType::Value CheckedValue(const typename TType::Value& value, const wchar_t* lpctName)
{
    const CSimpleType& type = TType::Type();
    if constexpr (std::is_same_v<typename TType::Value, std::wstring>)
    {
        std::wstring strText = type.Normalize(value);
        if (type.HasChecks())
            type.Check(strText, lpctName);
        return strText;
    }
    else
    {
        if (type.HasChecks())
            type.Check(ValueText(type, value), lpctName);
        return value;
    }
}

/// @name UTF-8 at the accessors, for code generated with `--text utf8`
/// @{

/// @throws CQvInvalidValueException for text that is not well-formed.
QVXMLLIB_API std::string ToUtf8(std::wstring_view text);
/// @throws CQvInvalidValueException for bytes that are not well-formed.
QVXMLLIB_API std::wstring FromUtf8(std::string_view bytes);

inline std::string ToUtf8(const std::wstring& text)
{
    return ToUtf8(std::wstring_view(text));
}
inline std::wstring FromUtf8(const std::string& bytes)
{
    return FromUtf8(std::string_view(bytes));
}
/// Literals would fit the others equally well.
inline std::string ToUtf8(const wchar_t* lpctText)
{
    return ToUtf8(std::wstring_view(lpctText));
}
inline std::wstring FromUtf8(const char* lpcBytes)
{
    return FromUtf8(std::string_view(lpcBytes));
}
QVXMLLIB_API std::optional<std::string> ToUtf8(const std::optional<std::wstring>& text);
QVXMLLIB_API std::optional<std::wstring> FromUtf8(const std::optional<std::string>& bytes);
QVXMLLIB_API std::vector<std::string> ToUtf8(const std::vector<std::wstring>& texts);
QVXMLLIB_API std::vector<std::wstring> FromUtf8(const std::vector<std::string>& texts);
QVXMLLIB_API std::optional<std::vector<std::string>> ToUtf8(const std::optional<std::vector<std::wstring>>& texts);
QVXMLLIB_API std::optional<std::vector<std::wstring>> FromUtf8(const std::optional<std::vector<std::string>>& texts);
/// @}

} // namespace QvXmlLib9
