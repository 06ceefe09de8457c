#pragma once

namespace QvXmlLib9
{

/// Every kind of simple value that can be bound. The numbers are a contract with generated code, which passes them as
/// integers; they never change.
enum ItemType : int
{
    ItemType_Invalid = 0,
    ItemType_hexBinary = 1,
    ItemType_base64Binary = 2,
    ItemType_i1 = 3,
    ItemType_i2 = 4,
    ItemType_i4 = 5,
    ItemType_i8 = 6,
    ItemType_ui1 = 7,
    ItemType_ui2 = 8,
    ItemType_ui4 = 9,
    ItemType_ui8 = 10,
    ItemType_r4 = 11,
    ItemType_r8 = 12,
    ItemType_duration = 13,
    ItemType_yearMonth = 14,
    ItemType_monthDay = 15,
    ItemType_year = 16,
    ItemType_month = 17,
    ItemType_day = 18,
    ItemType_date = 19,
    ItemType_datetime = 20,
    ItemType_time = 21,
    ItemType_char = 22,
    ItemType_string = 23,
    ItemType_boolean = 24,
    ItemType_decimal = 25,
    ItemType_integer = 26,
    ItemType_XmlObjectBase = 27,
    ItemType_XmlCollection = 28
};

} // namespace QvXmlLib9
