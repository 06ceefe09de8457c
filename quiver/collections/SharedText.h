#pragma once

#include "quiver/foundation/Export.h"

#include <memory>
#include <string>

namespace QvXmlLib9
{

/// The text, or an empty one for null.
inline const wchar_t* TextOrEmpty(const wchar_t* lpctText)
{
    return lpctText != nullptr ? lpctText : L"";
}

/// An immutable text that many objects hold for the price of one. The namespaces and restrictions of open content are
/// the same throughout a subtree, so each element and each of its collections holds a handle instead of a copy. Part of
/// the collections; applications have no use for it.
///
/// Handles of one text may be used on several threads.
class QVXMLLIB_API CSharedText
{
public:
    /// The empty text.
    CSharedText() = default;

    /// @param lpctText a caller's text, copied as UTF-16 units; null counts as empty.
    explicit CSharedText(const wchar_t* lpctText);
    /// @param strText a text of the library's own.
    explicit CSharedText(const std::wstring& strText);

    /// "##any", the restriction that allows every namespace.
    static CSharedText Any();

    bool IsAny() const;
    bool IsEmpty() const { return m_pText == nullptr; }

    const std::wstring& Get() const;
    const wchar_t* c_str() const { return Get().c_str(); }

    /// This handle if it holds `strText`, else a handle of a new text.
    CSharedText Matching(const std::wstring& strText) const { return Get() == strText ? *this : CSharedText(strText); }

private:
    /// Null for the empty text.
    std::shared_ptr<const std::wstring> m_pText;
};

} // namespace QvXmlLib9
