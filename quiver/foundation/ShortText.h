#pragma once

#include "quiver/foundation/Export.h"

#include <cstddef>
#include <string_view>

namespace QvXmlLib9
{

/// A zero-terminated text that costs no allocation as long as it is short, which the names of elements are. Part of the
/// object base; applications have no use for it.
class QVXMLLIB_API CShortText
{
public:
    CShortText() noexcept
        : m_pText(m_szInPlace)
    {
        m_szInPlace[0] = 0;
    }
    CShortText(const CShortText& source)
        : CShortText()
    {
        Assign(source.View());
    }
    CShortText& operator=(const CShortText& source)
    {
        if (this != &source)
            Assign(source.View());
        return *this;
    }
    ~CShortText()
    {
        if (m_pText != m_szInPlace)
            delete[] m_pText;
    }

    /// Takes on a text, which may be part of this one.
    void Assign(std::wstring_view text);

    const wchar_t* c_str() const noexcept { return m_pText; }
    std::wstring_view View() const noexcept { return {m_pText, m_nLength}; }

private:
    static constexpr std::size_t s_nInPlace = 15;

    wchar_t* m_pText;
    std::size_t m_nLength = 0;
    wchar_t m_szInPlace[s_nInPlace + 1];
};

} // namespace QvXmlLib9
