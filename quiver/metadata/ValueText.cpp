#include "quiver/metadata/ValueText.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/UnitRuns.h"
#include "quiver/values/ItemText.h"
#include "quiver/values/RealWriter.h"

#include <iterator>

namespace QvXmlLib9Data
{

using QvXmlLib9::IntegerRoom;
using QvXmlLib9::QvVariant;

namespace
{

/// The text of the kinds that documents consist of; empty for others.
std::wstring_view PrintCommon(IntegerRoom& room, const QvVariant& value, const wchar_t* lpctFormat)
{
    switch (value.GetTypeAsEnum())
    {
    case QvXmlLib9::ItemType_string:
        return value.StringRef();
    case QvXmlLib9::ItemType_boolean:
        return QvXmlLib9::WordOf(value.GetBoolean());
    case QvXmlLib9::ItemType_i2:
        return QvXmlLib9::PrintInteger(room, value.GetI2());
    case QvXmlLib9::ItemType_i4:
        return QvXmlLib9::PrintInteger(room, static_cast<std::int32_t>(value.GetI4()));
    case QvXmlLib9::ItemType_i8:
        return QvXmlLib9::PrintInteger(room, value.GetI8());
    case QvXmlLib9::ItemType_ui1:
        return QvXmlLib9::PrintUnsigned(room, value.GetUI1());
    case QvXmlLib9::ItemType_ui2:
        return QvXmlLib9::PrintUnsigned(room, value.GetUI2());
    case QvXmlLib9::ItemType_ui4:
        return QvXmlLib9::PrintUnsigned(room, static_cast<std::uint32_t>(value.GetUI4()));
    case QvXmlLib9::ItemType_ui8:
        return QvXmlLib9::PrintUnsigned(room, value.GetUI8());
    case QvXmlLib9::ItemType_r8:
        return lpctFormat == nullptr ? QvXmlLib9::PrintShortR8(room, value.GetR8()) : std::wstring_view();
    default:
        return {};
    }
}

} // namespace

CValueText::CValueText(const QvVariant& value, const wchar_t* lpctFormat)
{
    std::string_view svUtf8;
    if (value.GetUtf8(svUtf8))
    {
        m_svText = Widen(svUtf8);
        return;
    }
    m_svText = PrintCommon(m_room, value, lpctFormat);
    if (!m_svText.empty() || value.GetTypeAsEnum() == QvXmlLib9::ItemType_string)
        return;
    value.AppendText(m_strLong, lpctFormat);
    m_svText = m_strLong;
}

std::wstring_view CValueText::Widen(std::string_view svUtf8)
{
    if (svUtf8.size() > std::size(m_short) ||
        QvXmlLib9::WidenAscii(svUtf8.data(), svUtf8.size(), m_short) != svUtf8.size())
    {
        QvXmlLib9::AppendUtf8AsUtf16(m_strLong, svUtf8);
        return m_strLong;
    }
    return {m_short, svUtf8.size()};
}

} // namespace QvXmlLib9Data
