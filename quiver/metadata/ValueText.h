#pragma once

#include "quiver/values/IntegerText.h"
#include "quiver/values/QvVariant.h"

#include <string>
#include <string_view>

namespace QvXmlLib9Data
{

/// The lexical form of a value on its way to a writer. Strings are not copied and most numbers need no memory from the
/// heap. Internal to the library.
class CValueText
{
public:
    /// @param value must live as long as the text.
    /// @param lpctFormat the number format for r4, r8 and decimal, or null.
    explicit CValueText(const QvXmlLib9::QvVariant& value, const wchar_t* lpctFormat = nullptr);
    CValueText(const CValueText&) = delete;
    CValueText& operator=(const CValueText&) = delete;

    std::wstring_view Get() const { return m_svText; }

private:
    std::wstring_view Widen(std::string_view svUtf8);

    std::wstring_view m_svText;
    QvXmlLib9::IntegerRoom m_room;
    /// For text of a document, most of which is short and ASCII.
    wchar_t m_short[64];
    std::wstring m_strLong;
};

} // namespace QvXmlLib9Data
