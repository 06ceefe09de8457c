#pragma once

#include "quiver/values/QvVariant.h"

#include <string>

namespace QvXmlLib9Data
{

/// The lexical form of a value on its way to a writer. Internal to the metadata.
/// @param strBuffer takes the form unless the value is a string, which needs no copy.
inline const std::wstring& TextOf(const QvXmlLib9::QvVariant& value, const wchar_t* lpctFormat, std::wstring& strBuffer)
{
    if (value.GetTypeAsEnum() == QvXmlLib9::ItemType_string)
        return value.StringRef();
    value.AppendText(strBuffer, lpctFormat);
    return strBuffer;
}

} // namespace QvXmlLib9Data
