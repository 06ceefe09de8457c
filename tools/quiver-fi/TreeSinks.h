#pragma once

#include "tools/quiver-fi/TreeWriter.h"

#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/output/XmlTextWriter.h"

#include <map>
#include <unordered_set>

namespace quiver_fi
{

/// Writes a tree onto a Fast Infoset writer.
class CFastInfosetSink : public ITreeSink
{
public:
    /// @param bSuggestedValues choose an item type for each value by what it looks like; the writer's context has the
    ///        suggested encodings then.
    CFastInfosetSink(QvXmlLib9::CFastInfosetWriter& writer, bool bSuggestedValues);

    void DeclareDefaultNamespace(const std::wstring& strNamespace) override;
    void DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace) override;
    void StartElement(const std::wstring& strName, const std::wstring& strNamespace) override;
    void WriteAttribute(const std::wstring& strName, const std::wstring& strNamespace,
                        const std::wstring& strValue) override;
    void WriteText(const std::wstring& strText) override;
    void EndElement() override;

private:
    QvXmlLib9::ItemType GetType(const std::wstring& strValue) const;

    QvXmlLib9::CFastInfosetWriter& m_writer;
    bool m_bSuggestedValues;
};

/// Writes a tree onto an XML text writer. A Fast Infoset document can hold what XML text cannot: such a tree ends in
/// std::runtime_error. Carriage returns in attributes, which the writer does not take, are left out.
class CXmlTextSink : public ITreeSink
{
public:
    explicit CXmlTextSink(QvXmlLib9::CXmlTextWriter& writer);

    void DeclareDefaultNamespace(const std::wstring& strNamespace) override;
    void DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace) override;
    void StartElement(const std::wstring& strName, const std::wstring& strNamespace) override;
    void WriteAttribute(const std::wstring& strName, const std::wstring& strNamespace,
                        const std::wstring& strValue) override;
    void WriteText(const std::wstring& strText) override;
    void EndElement() override;

private:
    void CheckName(const std::wstring& strName);
    const std::wstring& EscapeNamespace(const std::wstring& strNamespace);

    QvXmlLib9::CXmlTextWriter& m_writer;
    // The tree has one text for each name, so that the address tells it.
    std::unordered_set<const std::wstring*> m_checkedNames;
    std::map<std::wstring, std::wstring> m_escapedNamespaces;
};

} // namespace quiver_fi
