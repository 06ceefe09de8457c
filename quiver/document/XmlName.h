#pragma once

#include <string>

namespace QvXmlLib9
{

class CXmlNodeStore;

/// A name as the nodes of one document share it: a document keeps one record for each distinct pair of namespace and
/// local name, however often the pair occurs. Two nodes of one parsed document whose records are the same object have
/// the same name; two records may still hold equal texts.
///
/// Part of CXmlElement and CXmlAttribute; applications use their GetLocalName and GetNamespaceURI.
struct SXmlName
{
    /// The name without any prefix. In a document parsed without namespace processing a prefix stays in it.
    std::wstring strLocalName;
    /// The namespace, an empty string for none; never null.
    const std::wstring* pstrNamespaceURI;
    /// Where the nodes that share the record live; null if it belongs to one attribute that stands on its own.
    CXmlNodeStore* pStore;
};

} // namespace QvXmlLib9
