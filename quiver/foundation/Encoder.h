#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <cstddef>
#include <string>
#include <string_view>

/// @file
/// Conversions between the UTF-16 units of the library's text and UTF-8, and everything that knows the width of
/// `wchar_t`. The library's text holds one UTF-16 unit per `wchar_t` (Unicode, 3.9, D91); text that comes from callers
/// may also hold whole code points above 0xFFFF, which count as their surrogate pair here.

namespace QvXmlLib9
{

/// UTF-8 form of a zero-terminated text; an empty handle for an empty text and for null. Text that is not well-formed
/// (an unpaired surrogate) is a programming error; where assertions are off, the result ends ahead of it.
/// @throws CQvException if the result passes the length that CBinaryData can hold.
QVXMLLIB_API CBinaryData EncodeUtf8(const wchar_t* lpctText);

/// UTF-16 form of UTF-8 bytes (Unicode, table 3-7); empty for null. Bytes that are not well-formed are a programming
/// error; where assertions are off, the result ends ahead of them.
QVXMLLIB_API std::wstring DecodeUtf8(const unsigned char* pBytes, unsigned long ulLength);

/// A copy of `ulCount` UTF-16 units; empty for a count of 0 and for null.
std::wstring DecodeUtf16(const wchar_t* lpctUnits, unsigned long ulCount);
/// The same for units that lie in memory as two bytes, the lower one first, at any address.
std::wstring DecodeUtf16(const unsigned char* pBytes, unsigned long ulCount);

/// What a file in an encoding begins with: FF FE for the two UTF-16 encodings, nothing otherwise. The bytes live as
/// long as the process.
std::string_view GetByteOrderMark(XmlEncoding eEncoding);

// --- UTF-8 to text --------------------------------------------------------------------------------------------------

/// Appends the UTF-16 form of UTF-8 bytes.
/// @return false if the bytes are not well-formed; what stands ahead of the fault has been appended.
bool AppendUtf8AsUtf16(std::wstring& strOut, std::string_view bytes);

// --- Text to UTF-8 --------------------------------------------------------------------------------------------------

/// Bytes that the UTF-8 form of a well-formed text takes. For other text this is more than WriteUtf8 writes.
std::size_t GetUtf8Length(std::wstring_view text);

/// Writes the UTF-8 form of a text to `pOut`, which has room for GetUtf8Length bytes.
/// @return how many bytes; conversion stops ahead of an unpaired surrogate or of an element above 0x10FFFF.
std::size_t WriteUtf8(std::wstring_view text, unsigned char* pOut);

/// The same for text that was not measured: `pOut` has room for three bytes for each unit.
/// @param bWhole whether all of the text was converted.
std::size_t WriteUtf8(std::wstring_view text, unsigned char* pOut, bool& bWhole);

/// Appends the UTF-8 form of a text.
/// @return false if the text is not well-formed; what stands ahead of the fault has been appended.
bool AppendUtf8(std::string& strOut, std::wstring_view text);

// --- Units ----------------------------------------------------------------------------------------------------------

/// Whether a text holds elements above 0xFFFF; never the case where `wchar_t` has 16 bits.
bool HasWholeCodePoints(std::wstring_view text);

/// Count of UTF-16 units of a text.
std::size_t GetUtf16Length(std::wstring_view text);

/// The text with every element above 0xFFFF split into its surrogate pair. (An element above 0x10FFFF, which no text
/// holds, becomes U+FFFD.)
std::wstring ToUtf16Units(std::wstring_view text);
/// The same for a text that need not be kept, so that it is not copied where nothing has to be split.
std::wstring ToUtf16Units(std::wstring&& strText);
/// The same for the zero-terminated text of a caller; null counts as empty. This is the door by which names,
/// namespaces and values enter the library.
std::wstring ToUtf16Units(const wchar_t* lpctText);

/// Appends the text in the same form.
void AppendUtf16Units(std::wstring& strOut, std::wstring_view text);

/// Writes the UTF-16 units of a text as two bytes each, in little-endian order, to `pOut`, which has room for
/// 2 * GetUtf16Length bytes.
void WriteUtf16LittleEndian(std::wstring_view text, unsigned char* pOut);

} // namespace QvXmlLib9
