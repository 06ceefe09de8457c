#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/generated/Value.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/QvVariant.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// @file
/// The short way from the UTF-8 of a document to a member of a generated class, for the values that most documents are
/// full of. Whatever it does not know, and everything that is wrong, takes the way by ValueOf, which says why.

namespace QvXmlLib9
{

/// @name Reading UTF-8 that needs no treatment of white space and breaks no facet
/// @return false for all other text, and for what takes a longer look; the value is undefined then.
/// @{
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, bool& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, signed char& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, short& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, int& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, long long& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned char& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned short& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned int& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, unsigned long long& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, float& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, double& value);
QVXMLLIB_API bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, CDateTime& value);

template <class TEnum, std::enable_if_t<std::is_enum_v<TEnum>, int> = 0>
bool ReadUtf8(const CSimpleType& type, std::string_view svUtf8, TEnum& value)
{
    const int nPlace = type.FindUtf8Value(svUtf8);
    value = static_cast<TEnum>(nPlace);
    return nPlace >= 0;
}

template <class TValue, std::enable_if_t<!std::is_enum_v<TValue>, int> = 0>
bool ReadUtf8(const CSimpleType&, std::string_view, TValue&)
{
    return false;
}
/// @}

/// Whether values are written with the text that they were read with: a duration is what its fields say, in whatever
/// form, and no form is the proper one; a float has several texts of the same length. Single floats are not among them,
/// since they have a kind of their own on their way to a writer.
template <class TValue>
constexpr bool s_bKeepsText =
    std::is_same_v<TValue, CDateTimeSpan> || std::is_same_v<TValue, std::vector<CDateTimeSpan>> ||
    std::is_same_v<TValue, std::vector<float>>;

/// The text of a value as it was read, for values that are written with it.
template <bool bKeeps>
class CKeptText
{
public:
    void KeepText(std::wstring strText) { m_strText = std::move(strText); }
    /// @return null if there is none: the value was set by a program.
    const std::wstring* GetText() const { return m_strText.empty() ? nullptr : &m_strText; }

private:
    std::wstring m_strText;
};

template <>
class CKeptText<false>
{
public:
    void KeepText(const std::wstring&) {}
    static const std::wstring* GetText() { return nullptr; }
};

/// What a member holds: the value, or one that may be absent.
/// @tparam TKept TValue or std::optional<TValue>.
template <class TKept, class TValue>
class CKept : public CKeptText<s_bKeepsText<TValue>>
{
public:
    const TKept& Get() const { return m_kept; }
    void Set(TKept kept)
    {
        m_kept = std::move(kept);
        this->KeepText({});
    }

    /// Whether there is a value, for one that may be absent.
    bool IsGiven() const { return m_kept.has_value(); }

    /// Takes a text that ReadUtf8 can read.
    bool Read(const CSimpleType& type, std::string_view svUtf8)
    {
        TValue value{};
        if (!ReadUtf8(type, svUtf8, value))
            return false;
        m_kept = std::move(value);
        return true;
    }

private:
    TKept m_kept{};
};

/// A text stays as the document has it until somebody asks for the string. That takes a part of the memory, and most
/// texts of large documents are asked for once or never.
template <class TKept>
class CKept<TKept, std::wstring> : public CKeptText<false>
{
public:
    const TKept& Get() const
    {
        if (const std::string* const pstrUtf8 = std::get_if<std::string>(&m_text))
        {
            std::wstring strText = FromUtf8(*pstrUtf8);
            m_text.template emplace<TKept>(std::move(strText));
        }
        return *std::get_if<TKept>(&m_text);
    }
    void Set(TKept kept) { m_text.template emplace<TKept>(std::move(kept)); }

    bool IsGiven() const
    {
        const TKept* const pKept = std::get_if<TKept>(&m_text);
        return pKept == nullptr || pKept->has_value();
    }

    bool Read(const CSimpleType& type, std::string_view svUtf8)
    {
        if (!type.TakesUtf8(svUtf8))
            return false;
        std::string strUtf8(svUtf8);
        m_text.template emplace<std::string>(std::move(strUtf8));
        return true;
    }

    /// The text if it is still that of a document.
    const std::string* GetUtf8() const { return std::get_if<std::string>(&m_text); }

private:
    mutable std::variant<TKept, std::string> m_text;
};

/// Hands a value to a variant.
template <class TKept, class TValue>
void StoreKept(const CSimpleType& type, const CKept<TKept, TValue>& kept, QvVariant& variant)
{
    if constexpr (std::is_same_v<TValue, std::wstring>)
    {
        if (const std::string* const pstrUtf8 = kept.GetUtf8())
            return variant.SetStringRef(std::string_view(*pstrUtf8));
    }
    if (const std::wstring* const pstrText = kept.GetText())
        return variant.SetString(*pstrText);
    if constexpr (std::is_same_v<TKept, TValue>)
        StoreValue(type, kept.Get(), variant);
    else if (kept.Get())
        StoreValue(type, *kept.Get(), variant);
    else
        variant.SetInvalid();
}

} // namespace QvXmlLib9
