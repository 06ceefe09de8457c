#include "quiver/collections/SharedText.h"

#include "quiver/foundation/Encoder.h"

namespace QvXmlLib9
{

namespace
{

// Never destroyed: objects in static storage may outlive everything else.

const std::wstring& AnyText()
{
    static const std::wstring& s_strAny = *new std::wstring(L"##any");
    return s_strAny;
}

const std::wstring& EmptyText()
{
    static const std::wstring& s_strEmpty = *new std::wstring;
    return s_strEmpty;
}

} // namespace

CSharedText::CSharedText(const wchar_t* lpctText)
    : CSharedText(ToUtf16Units(lpctText))
{
}

CSharedText::CSharedText(const std::wstring& strText)
{
    if (strText == AnyText())
        *this = Any();
    else if (!strText.empty())
        m_pText = std::make_shared<const std::wstring>(strText);
}

CSharedText CSharedText::Any()
{
    // A handle that owns nothing costs no count when it is copied, and nearly every object of open content has one.
    CSharedText text;
    text.m_pText = std::shared_ptr<const std::wstring>(std::shared_ptr<void>(), &AnyText());
    return text;
}

const std::wstring& CSharedText::Get() const
{
    return m_pText != nullptr ? *m_pText : EmptyText();
}

bool CSharedText::IsAny() const
{
    return m_pText.get() == &AnyText();
}

} // namespace QvXmlLib9
