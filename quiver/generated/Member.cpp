#include "quiver/generated/Member.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/metadata/ValueText.h"

#include <algorithm>

namespace QvXmlLib9
{

void ThrowNotFixed(const std::wstring& strText, const wchar_t* lpctName, const wchar_t* lpctFixed)
{
    throw CQvInvalidValueException(FormatString(L"Invalid Value for %s [%s]", lpctName, strText.c_str()),
                                   CQvException(FormatString(L"The value is fixed to %s", lpctFixed)));
}

void ThrowNotSet(const wchar_t* lpctName)
{
    throw CQvValidationException(FormatString(L"The required value [%s] has not been set", lpctName));
}

std::wstring PropertyText(const QvVariant& variant)
{
    return std::wstring(QvXmlLib9Data::CValueText(variant).Get());
}

namespace
{

[[noreturn]] void ThrowNameDiffers(const wchar_t* lpctName, const std::wstring& strActual)
{
    throw CQvInvalidParamException(FormatString(
        L"This property requires an element with the name %s the element being set has the element name %s", lpctName,
        strActual.c_str()));
}

} // namespace

void CheckObject(const CXmlObjectBase* pObject, const wchar_t* lpctName, bool bRequired)
{
    if (pObject == nullptr)
    {
        if (bRequired)
            throw CQvInvalidParamException(
                FormatString(L"The Property [%s] is mandatory, it may node be NULL", lpctName));
        return;
    }
    const std::wstring strName = pObject->GetBase()->GetElementName();
    if (strName != lpctName)
        ThrowNameDiffers(lpctName, strName);
}

void CheckAlternative(const CXmlObjectBase* pObject, const wchar_t* lpctName, const SAlternatives& alternatives)
{
    if (pObject == nullptr)
        return;
    const std::wstring strName = pObject->GetBase()->GetElementName();
    const bool bAllowed =
        strName == lpctName || std::any_of(alternatives.begin(), alternatives.end(),
                                           [&strName](const SAlternative& alternative)
                                           { return alternative.bElement && strName == alternative.lpctName; });
    if (!bAllowed)
        ThrowNameDiffers(lpctName, strName);
}

} // namespace QvXmlLib9
