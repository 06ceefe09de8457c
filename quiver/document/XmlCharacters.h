#pragma once

namespace QvXmlLib9
{

/// Reads a character of XML in UTF-8, of the bytes up to `pEnd`, of which there is one at least.
/// @return its end; null if the bytes are no UTF-8, or the character is not one of XML (XML 1.0, production 2).
const char* ReadXmlCharacter(const char* p, const char* pEnd, char32_t& c);

/// Whether a character beyond ASCII may begin a name, by the fourth edition of XML 1.0: the one that expat keeps to.
bool IsXmlLetter(char32_t c);

/// Whether a character beyond ASCII may stand in a name behind its beginning.
bool IsXmlNameCharacter(char32_t c);

} // namespace QvXmlLib9
