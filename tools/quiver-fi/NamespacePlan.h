#pragma once

#include "quiver/document/XmlDocument.h"

#include <map>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace quiver_fi
{

class ITreeSink;

/// Which namespaces a document declares on its root, and under which prefixes: the tree keeps neither prefixes nor
/// places of declarations. Every namespace of the document is declared there, so that names can be read by themselves
/// and readers that demand declarations find them.
class CNamespacePlan
{
public:
    explicit CNamespacePlan(QvXmlLib9::CXmlDocument& document);

    /// Takes the namespaces of an element and its attributes into account.
    void AddElement(QvXmlLib9::CXmlElement& element);

    /// Chooses the prefixes and declares everything. To be called once, when all elements have been added.
    void Declare(ITreeSink& sink);

    /// The value of an attribute as it is to be written: the prefix of an xsi:type is replaced by the chosen one.
    /// @param strBuffer may take the value.
    const std::wstring& GetValue(const QvXmlLib9::CXmlAttribute& attribute, std::wstring& strBuffer) const;

private:
    /// The value of an xsi:type in parts.
    struct STypeName
    {
        std::wstring strPrefix;
        std::wstring strName;
        std::wstring strNamespace;
    };

    STypeName ReadTypeName(const std::wstring& strValue) const;
    void AddTypeName(const std::wstring& strValue);
    void AddNamespace(const std::wstring& strNamespace);
    bool TakePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace);
    void ChoosePrefixes();

    QvXmlLib9::CXmlDocument& m_document;
    std::wstring m_strDefault;
    /// Namespaces by prefix that stand in values and should stay.
    std::map<std::wstring, std::wstring> m_wanted;
    /// In the order of their occurrence: namespaces that need a prefix.
    std::vector<std::wstring> m_namespaces;
    std::set<std::wstring> m_known;
    /// Texts of namespaces that have been looked at already; the tree has few of them.
    std::unordered_set<const std::wstring*> m_seen;
    std::map<std::wstring, std::wstring> m_prefixes;
    std::set<std::wstring> m_taken;
};

} // namespace quiver_fi
