#pragma once

#include "tools/quiver-fi/Files.h"

#include "quiver/document/XmlDocument.h"

#include <string>
#include <string_view>

namespace quiver_fi
{

/// What the tree of a document is written onto. Namespaces come first, then elements in document order, each with its
/// attributes, its text, its children and its end.
class ITreeSink
{
public:
    virtual ~ITreeSink() = default;

    virtual void DeclareDefaultNamespace(const std::wstring& strNamespace) = 0;
    virtual void DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace) = 0;
    virtual void StartElement(const std::wstring& strName, const std::wstring& strNamespace) = 0;
    virtual void WriteAttribute(const std::wstring& strName, const std::wstring& strNamespace,
                                const std::wstring& strValue) = 0;
    /// @param strText may be empty.
    virtual void WriteText(const std::wstring& strText) = 0;
    virtual void EndElement() = 0;
};

/// Writes the tree of a loaded document, however deep it is.
///
/// White space among child elements is left out. Other text among child elements, whose places the tree does not keep,
/// goes ahead of them; a warning on standard error tells so.
void WriteTree(QvXmlLib9::CXmlDocument& document, ITreeSink& sink, const SStreams& streams);

} // namespace quiver_fi
