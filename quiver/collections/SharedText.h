#pragma once

#include <memory>
#include <string>

namespace QvXmlLib9
{

/// An immutable text that many objects hold for the price of one. The namespaces and restrictions of open content are
/// the same throughout a subtree; each element and each of its collections holds a handle instead of a copy. Internal.
///
/// Handles of one text may be used on several threads.
class CSharedText
{
public:
    /// The empty text.
    CSharedText() = default;

    /// @param lpctText the text, copied; null counts as empty.
    explicit CSharedText(const wchar_t* lpctText)
    {
        if (lpctText != nullptr && *lpctText != L'\0')
            m_pText = std::make_shared<const std::wstring>(lpctText);
    }

    explicit CSharedText(const std::wstring& strText)
    {
        if (!strText.empty())
            m_pText = std::make_shared<const std::wstring>(strText);
    }

    /// The restriction that allows every namespace. No count is kept for it.
    static CSharedText Any()
    {
        static const std::wstring& s_strAny = *new std::wstring(L"##any");
        CSharedText text;
        text.m_pText = std::shared_ptr<const std::wstring>(std::shared_ptr<void>(), &s_strAny);
        return text;
    }

    const std::wstring& Get() const { return m_pText != nullptr ? *m_pText : Empty(); }
    const wchar_t* c_str() const { return Get().c_str(); }

    /// This handle if it holds `strText`, else a handle of a new text.
    CSharedText Matching(const std::wstring& strText) const { return Get() == strText ? *this : CSharedText(strText); }

private:
    static const std::wstring& Empty()
    {
        static const std::wstring& s_strEmpty = *new std::wstring;
        return s_strEmpty;
    }

    /// Null for the empty text.
    std::shared_ptr<const std::wstring> m_pText;
};

} // namespace QvXmlLib9
