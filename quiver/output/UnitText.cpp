#include "quiver/output/UnitText.h"

#include "quiver/foundation/Encoder.h"

namespace QvXmlLib9
{

std::wstring_view MakeUnitText(std::wstring_view strText, std::wstring& strBuffer)
{
    strText = strText.substr(0, strText.find(L'\0'));
    if (!HasWholeCodePoints(strText))
        return strText;
    strBuffer.clear();
    AppendUtf16Units(strBuffer, strText);
    return strBuffer;
}

} // namespace QvXmlLib9
