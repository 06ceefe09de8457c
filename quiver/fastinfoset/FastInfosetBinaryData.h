#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Export.h"

#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// Turns between the text of a value and its octets under a built-in encoding algorithm of Fast Infoset (X.891,
/// clause 10):
///
///     CFastInfosetBinaryData data;
///     data.SetAsEncodedString(4, L"1"); // 0, 0, 0, 1
///     data.GetAsString(4);              // L"1"
///
/// | Index | Algorithm   | Octets of a value                                               |
/// |-------|-------------|-----------------------------------------------------------------|
/// | 1     | hexadecimal | one for two digits                                              |
/// | 2     | base64      | three for four characters                                       |
/// | 3     | short       | 2, big-endian                                                   |
/// | 4     | int         | 4, big-endian                                                   |
/// | 5     | long        | 8, big-endian                                                   |
/// | 6     | boolean     | 1: 56 for true, 48 for false; any number of bits is read        |
/// | 7     | float       | 4, IEEE 754, big-endian                                         |
/// | 8     | double      | 8, IEEE 754, big-endian                                         |
/// | 9     | uuid        | 16: 32 hexadecimal digits without hyphens                       |
/// | 10    | cdata       | the text in UTF-8; set only                                     |
class CFastInfosetBinaryData : public CBinaryData
{
public:
    CFastInfosetBinaryData();
    explicit CFastInfosetBinaryData(const CBinaryData& source);
    CFastInfosetBinaryData(const CFastInfosetBinaryData& source);
    CFastInfosetBinaryData(unsigned char* const pData, unsigned long ulLength, bool bTakeOwnership);
    explicit CFastInfosetBinaryData(const wchar_t* lpctText);
    ~CFastInfosetBinaryData() override;
    CFastInfosetBinaryData& operator=(const CFastInfosetBinaryData& source);

    /// Replaces the bytes by the octets of one value. A list is not split.
    /// @param ulIndex 1 to 10.
    /// @throws CQvException "Unknown byte encoding." for another index; CQvInvalidValueException of CConversions, or
    ///         the failure of SetAsHexString, for a text that does not fit the algorithm.
    void SetAsEncodedString(unsigned long ulIndex, const wchar_t* lpctText);

    /// The text of the values that the bytes hold, in the lexical forms of CConversions. Several values of a fixed
    /// width are divided by one blank. Booleans are divided by a blank only between octets: the words of one octet run
    /// together (docs/compatibility.md: Words of booleans). Without bytes the text is empty, whatever the index.
    /// @param ulIndex 1 to 9.
    /// @throws CQvException "Unknown byte encoding." for another index; "Invalid value for SHORT byte encoding." and
    ///         its like (INT, LONG, FLOAT, DOUBLE, UUID) when the bytes are no whole number of values.
    std::wstring GetAsString(unsigned long ulIndex) const;

    /// What SetAsEncodedString does, without a block of its own: appends the octets to `strOctets`.
    static void AppendEncoded(std::string& strOctets, unsigned long ulIndex, std::wstring_view svText);

    /// What GetAsString does, for octets that lie anywhere.
    static std::wstring Decode(std::string_view svOctets, unsigned long ulIndex);
};

} // namespace QvXmlLib9
