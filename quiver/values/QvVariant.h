#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/Decimal.h"
#include "quiver/values/ItemType.h"
#include "quiver/values/WhitespaceUtils.h"

#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CXmlObjectBase;
class CXmlCollectionBase;

/// A value of one of the kinds of ItemType. It carries values between the metadata and the properties of a generated
/// class:
///
///     void COrder::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
///     {
///         switch (nPropertyIndex)
///         {
///         case 0:
///             bRead ? value.SetI4(m_nCount) : SetCount(value.GetI4());
///             break;
///         ...
///
/// A plain value, used by one thread at a time. There is no comparison, because values of different kinds
/// have no order: compare what the getters return.
///
/// Each `Set...` forgets the former value. Each `Get...` may be called only while the variant holds that kind, which is
/// asserted; where assertions are off, the getter of another kind returns 0, an empty object or null.
struct QVXMLLIB_API QvVariant
{
    /// Invalid: no value.
    QvVariant() noexcept
        : m_type(ItemType_Invalid)
        , m_i8(0)
    {
    }

    /// Copies the value; objects with a count are shared.
    QvVariant(const QvVariant& source)
        : QvVariant()
    {
        *this = source;
    }

    /// Takes the value over; `source` becomes invalid.
    QvVariant(QvVariant&& source) noexcept
        : QvVariant()
    {
        Take(source);
    }

    virtual ~QvVariant() { Clear(); }

    /// Copies the value; objects with a count are shared. The present value is dropped before the source is read, so
    /// assigning a variant to itself makes it invalid (docs/compatibility.md: Assignment to itself).
    /// @throws CQvException "Unknown Type" when the type of `source` is none of ItemType; the target is invalid then.
    const QvVariant& operator=(const QvVariant& source);

    /// Takes the value over; `source` becomes invalid.
    const QvVariant& operator=(QvVariant&& source) noexcept
    {
        Clear();
        Take(source);
        return *this;
    }

    /// Drops the value; the variant is invalid afterwards.
    void Clear() noexcept
    {
        if (OwnsObject())
            Release();
        m_type = ItemType_Invalid;
        m_bBorrows = false;
    }

    /// The same as Clear.
    void SetInvalid() noexcept
    {
        Clear();
        m_type = ItemType_Invalid;
    }

    /// Whether a value is held; a null object is one.
    bool IsValid() const noexcept { return m_type != ItemType_Invalid; }

    ItemType GetTypeAsEnum() const noexcept { return m_type; }

    /// The name of the kind: "i4", "datetime", ...
    /// @throws CQvException "Invalid Type %d" for an invalid variant, an object or a collection.
    std::wstring GetType() const;

    void SetHexBinary(const CBinaryData& value);
    CBinaryData GetHexBinary() const;
    void SetBase64Binary(const CBinaryData& value);
    CBinaryData GetBase64Binary() const;
    void SetI1(char value);
    char GetI1() const;
    void SetI2(short value);
    short GetI2() const;
    /// The low 32 bits of `value` are kept.
    void SetI4(long value);
    long GetI4() const;
    void SetI8(__int64 value);
    __int64 GetI8() const;
    void SetUI1(unsigned char value);
    unsigned char GetUI1() const;
    void SetUI2(unsigned short value);
    unsigned short GetUI2() const;
    /// The low 32 bits of `value` are kept.
    void SetUI4(unsigned long value);
    unsigned long GetUI4() const;
    void SetUI8(unsigned __int64 value);
    unsigned __int64 GetUI8() const;
    void SetR4(float value);
    float GetR4() const;
    void SetR8(double value);
    double GetR8() const;
    void SetDuration(const CDateTimeSpan& value);
    CDateTimeSpan GetDuration() const;
    void SetYearMonth(const CDateTime& value);
    CDateTime GetYearMonth() const;
    void SetMonthDay(const CDateTime& value);
    CDateTime GetMonthDay() const;
    void SetYear(unsigned short value);
    unsigned short GetYear() const;
    void SetMonth(unsigned char value);
    unsigned char GetMonth() const;
    void SetDay(unsigned char value);
    unsigned char GetDay() const;
    void SetDate(const CDateTime& value);
    CDateTime GetDate() const;
    void SetDateTime(const CDateTime& value);
    CDateTime GetDateTime() const;
    void SetTime(const CDateTime& value);
    CDateTime GetTime() const;
    void SetChar(wchar_t value);
    wchar_t GetChar() const;
    /// A code point above 0xFFFF in one element of `value` is kept as its surrogate pair.
    void SetString(std::wstring value);
    std::wstring GetString() const;
    /// The string without a copy; the variant is invalid afterwards. For generated code that stores what a record hands
    /// it.
    std::wstring TakeString();
    void SetBoolean(bool value);
    bool GetBoolean() const;
    void SetDecimal(const CDecimal& value);
    CDecimal GetDecimal() const;
    void SetInteger(const CBigInteger& value);
    CBigInteger GetInteger() const;

    /// Holds a reference on the object as long as it is the value. Null is a value too.
    void SetXmlObject(CXmlObjectBase* pObject);
    /// The object, or the collection: a collection is an object.
    CSmartPtr<CXmlObjectBase> GetXmlObject() const;
    /// As SetXmlObject, for a collection.
    void SetXmlCollection(CXmlCollectionBase* pCollection);
    /// The collection; it must not be null.
    CSmartPtr<CXmlCollectionBase> GetXmlCollection() const;

    /// The lexical form of the value, as CConversions prints it.
    /// @param format the number format for r4, r8 and decimal, or null; see CConversions. Other kinds ignore it.
    /// @throws CQvException "Invalid Type %d to convert to string" for an invalid variant, an object or a collection.
    std::wstring ToString(const wchar_t* format) const;

    /// Reads a lexical form as CConversions does, and holds the result as `type`.
    /// @param rule how white space in `value` is treated before it is read.
    /// @throws CQvException "Invalid Type %d to convert to string" for a `type` that has no lexical form; and whatever
    ///         CConversions throws. The variant keeps its value when this fails.
    void FromString(const std::wstring& value, ItemType type, CWhitespaceUtils::WhitespaceRule rule);

    /// @name For the library's own hot paths
    /// The same values without a copy and without touching a count. A reference or pointer lives as long as the
    /// variant keeps its value.
    /// @{

    /// Appends what ToString returns to `strOut`, so that one buffer can serve many values.
    void AppendText(std::wstring& strOut, const wchar_t* format) const;

    /// Holds a string that is UTF-8 in the memory of somebody else, who outlives the value: what a document's tree hands
    /// to generated classes. It becomes a string of the variant where a getter asks for it, and where it is copied.
    void SetUtf8(std::string_view svUtf8) noexcept;
    /// The text of SetUtf8.
    /// @return false if there is none, or a getter has made a string of it.
    bool GetUtf8(std::string_view& svUtf8) const noexcept;

    const std::wstring& StringRef() const;

    /// Lets SetStringRef refer to a string instead of copying it. For who reads a property and has done with the value
    /// before anybody can change the object.
    void LetBorrow() noexcept { m_bMayBorrow = true; }
    /// The same as SetString, for a string that lives on.
    void SetStringRef(const std::wstring& value);
    /// The same for UTF-8 that lives on.
    void SetStringRef(std::string_view svUtf8);

    const CBinaryData& HexBinaryRef() const;
    const CBinaryData& Base64BinaryRef() const;
    const CDecimal& DecimalRef() const;
    const CBigInteger& IntegerRef() const;
    /// The object or collection, or null.
    CXmlObjectBase* XmlObjectPtr() const;
    /// The collection; it must not be null.
    CXmlCollectionBase* XmlCollectionPtr() const;
    /// @}

    /// The kind of value that is held. Read it and the union below through the getters; change them with the setters.
    ItemType m_type;

private:
    /// The string that is held may belong to somebody else; and does.
    bool m_bMayBorrow = false;
    bool m_bBorrows = false;

public:
    /// The value. An object that belongs to the variant lives inside it, and the pointer shows there; deleting is never
    /// up to the caller. A pointer that somebody else stored here is taken for one from the heap, and is deleted.
    union
    {
        char m_i1;
        short m_i2;
        long m_i4;
        __int64 m_i8;
        unsigned char m_ui1;
        unsigned short m_ui2;
        unsigned long m_ui4;
        unsigned __int64 m_ui8;
        float m_r4;
        double m_r8;
        unsigned short m_year;
        unsigned char m_month;
        unsigned char m_day;
        wchar_t m_char;
        bool m_boolean;
        CBinaryData* m_pBinaryData;
        CDateTimeSpan* m_pDateTimeSpan;
        CDateTime* m_pDateTime;
        std::wstring* m_pString;
        CDecimal* m_pDecimal;
        CBigInteger* m_pBigInteger;
        CXmlObjectBase* m_pXmlObject;
        CXmlCollectionBase* m_pXmlCol;
    };

private:
    /// Room for any of the objects. Which one lives there, if any, is told by m_type and the pointer in the union.
    union UStorage
    {
        UStorage() noexcept {}
        ~UStorage() {}
        CBinaryData binaryData;
        CDateTimeSpan dateTimeSpan;
        CDateTime dateTime;
        std::wstring string;
        std::string_view utf8;
        CDecimal decimal;
        CBigInteger bigInteger;
    };

    /// One bit for each ItemType whose value is more than bits in the union.
    static constexpr unsigned int s_nObjectTypes =
        1U << ItemType_hexBinary | 1U << ItemType_base64Binary | 1U << ItemType_duration | 1U << ItemType_yearMonth |
        1U << ItemType_monthDay | 1U << ItemType_date | 1U << ItemType_datetime | 1U << ItemType_time |
        1U << ItemType_string | 1U << ItemType_decimal | 1U << ItemType_integer | 1U << ItemType_XmlObjectBase |
        1U << ItemType_XmlCollection;

    bool HoldsObject() const noexcept
    {
        return static_cast<unsigned int>(m_type) < 32U && ((s_nObjectTypes >> m_type) & 1U) != 0;
    }
    bool OwnsObject() const noexcept { return HoldsObject() && !m_bBorrows; }

    /// Whether an object is the one in m_storage, and not one from the heap.
    bool IsInside(const void* pObject) const noexcept { return pObject == &m_storage; }

    /// Whether the value is a text of SetUtf8.
    bool IsUtf8() const noexcept;
    void MakeString() const;

    void Release() noexcept;
    void Take(QvVariant& source) noexcept;

    /// @name The count of the object or collection that is held
    /// Beside the classes that count: this layer does not know them.
    /// @{
    void AddReference() const noexcept;
    void ReleaseReference() noexcept;
    /// @}

    template <ItemType eType, class T>
    void Hold(T value);
    template <ItemType eType>
    decltype(auto) Held() const;

    UStorage m_storage;
};

} // namespace QvXmlLib9
