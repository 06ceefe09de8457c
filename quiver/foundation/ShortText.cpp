#include "quiver/foundation/ShortText.h"

#include <memory>
#include <string>

namespace QvXmlLib9
{

void CShortText::Assign(std::wstring_view text)
{
    std::unique_ptr<wchar_t[]> pNew;
    if (text.size() > s_nInPlace)
        pNew.reset(new wchar_t[text.size() + 1]);
    wchar_t* const pOld = m_pText;
    m_pText = pNew != nullptr ? pNew.release() : m_szInPlace;
    std::char_traits<wchar_t>::move(m_pText, text.data(), text.size());
    m_nLength = text.size();
    m_pText[m_nLength] = 0;
    if (pOld != m_szInPlace)
        delete[] pOld;
}

} // namespace QvXmlLib9
