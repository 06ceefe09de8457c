#pragma once

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

/// @file
/// The text of the purchase order document, scaled, for whoever reads it.

namespace bench
{

[[noreturn]] inline void Fail(const char* lpcWhat)
{
    std::fprintf(stderr, "bench: %s\n", lpcWhat);
    std::abort();
}

inline void AppendItem(std::string& strXml, int n)
{
    char szItem[400];
    std::snprintf(szItem, sizeof(szItem),
                  "  <item part=\"%03d-A%c\">\n    <product>Article number %d</product>\n    <quantity>%d</quantity>\n"
                  "    <price>%d.%02d</price>\n%s  </item>\n",
                  n % 1000, 'A' + n % 26, n, 1 + n % 999, n % 500, n % 100,
                  n % 4 == 0 ? "    <note>Handle with care &amp; keep dry</note>\n" : "");
    strXml += szItem;
}

/// A purchase order of about so many bytes.
inline const std::string& Document(std::size_t nBytes)
{
    static std::map<std::size_t, std::string> s_documents;
    std::string& strXml = s_documents[nBytes];
    if (!strXml.empty())
        return strXml;
    strXml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<purchaseOrder xmlns=\"urn:example:order\" number=\"20417\" "
             "currency=\"EUR\">\n  <shipTo>\n    <name>Alice Bergstr\xC3\xB6m</name>\n    <street>12 Harbour "
             "Lane</street>\n    <city>G\xC3\xB6teborg</city>\n  </shipTo>\n  <express>true</express>\n";
    for (int n = 0; strXml.size() < nBytes; ++n)
        AppendItem(strXml, n);
    return strXml += "</purchaseOrder>\n";
}

} // namespace bench
