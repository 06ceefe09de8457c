#include "quiver/output/UnitText.h"

#include "quiver/foundation/Encoder.h"

namespace QvXmlLib9
{

std::wstring_view MakeUnitText(std::wstring_view svText, std::wstring& strBuffer)
{
    svText = svText.substr(0, svText.find(L'\0'));
    if (!HasWholeCodePoints(svText))
        return svText;
    strBuffer.clear();
    AppendUtf16Units(strBuffer, svText);
    return strBuffer;
}

} // namespace QvXmlLib9
