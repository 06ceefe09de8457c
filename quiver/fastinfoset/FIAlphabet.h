#pragma once

#include <string>
#include <string_view>

/// @file
/// Text in a restricted alphabet (X.891, C.19 and clause 9): every character is its position in the alphabet, in as few
/// bits as hold all positions and one value more, which ends a text that does not fill its last octet.

namespace QvXmlLib9
{

/// Appends the octets of a text. Only alphabets of 4 and 8 bits a character are written.
/// @throws CQvException "Failed to write FastInfoset. ..." for a character that is not in the alphabet, and for an
///         alphabet that cannot be used.
void AppendRestrictedAlphabetString(std::string& strOctets, std::wstring_view svAlphabet, std::wstring_view svText);

/// Appends the text of octets, for alphabets of any width.
/// @throws CQvException "Failed to parse FastInfoset. ..." for a position that the alphabet lacks, and for an alphabet
///         that cannot be used.
void DecodeRestrictedAlphabetString(std::wstring& strText, std::wstring_view svAlphabet, std::string_view svOctets);

} // namespace QvXmlLib9
