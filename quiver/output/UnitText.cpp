#include "quiver/output/UnitText.h"

#include "quiver/foundation/Encoder.h"

namespace QvXmlLib9
{

std::wstring_view ToUnitText(std::wstring_view strText, std::wstring& strBuffer)
{
    if (IsUnitText(strText))
        return strText;
    strText = strText.substr(0, strText.find(L'\0'));
    if (!HasWholeCodePoints(strText))
        return strText;
    strBuffer.clear();
    AppendUtf16Units(strBuffer, strText);
    return strBuffer;
}

} // namespace QvXmlLib9
