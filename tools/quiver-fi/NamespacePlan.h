#pragma once

#include "tools/quiver-fi/Document.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quiver_fi
{

/// Which namespaces a document declares on its root, and under which prefixes. Every namespace of the document is
/// declared there, so that names can be read by themselves and readers that demand declarations find them.
///
/// Prefixes stay what they are as far as one declaration for the whole document allows. Names take another prefix where
/// they must, and so does the value of an xsi:type. In other values nobody knows what is a name; whatever looks like
/// one keeps its prefix and the prefix its namespace, or the document is refused.
class CNamespacePlan
{
public:
    using TextId = CDocument::TextId;

    /// What the document is to be written as. A Fast Infoset document declares one prefix for a namespace, and none for
    /// those that begin like that of XML.
    enum class EForm
    {
        XmlText,
        FastInfoset
    };

    /// @param document must live as long as the plan.
    /// @throws std::runtime_error if the prefixes in values cannot all keep their namespaces.
    CNamespacePlan(const CDocument& document, EForm eForm);

    TextId GetDefault() const { return m_dwDefault; }

    /// Prefix and namespace of every declaration but that of the default.
    const std::vector<std::pair<std::string, TextId>>& GetDeclarations() const { return m_declarations; }

    /// The prefix for names of a namespace, which may be none of the default.
    const std::string& GetPrefix(TextId dwNamespace) const { return m_prefixes.at(dwNamespace); }

    /// The value of the attribute that is event `nEvent` as it is to be written.
    std::string_view GetValue(std::size_t nEvent) const;

private:
    /// An xsi:type, whose name is understood.
    struct STypeName
    {
        std::size_t nEvent;
        TextId dwPrefix;
        TextId dwNamespace;
        std::string strLocalName;
    };

    void Survey();
    void Bind(TextId dwPrefix, TextId dwNamespace);
    void Unbind(std::size_t nCount);
    void SurveyName(const CDocument::SEvent& event);
    void SurveyType(std::size_t nEvent, std::string_view svValue);
    void SurveyValue(std::string_view svValue);
    void UsePrefix(std::wstring_view svPrefix);

    void ChooseDefault();
    void ClaimPrefixesOfValues();
    void ClaimPrefixesOfDeclarations();
    void GeneratePrefixes();
    bool Claim(TextId dwPrefix, TextId dwNamespace);
    void RewriteTypes();
    void CheckDeclarable() const;

    const CDocument& m_document;
    EForm m_eForm;

    // Scopes of the survey: namespaces by prefix, and what they were before.
    std::vector<TextId> m_bound;
    std::vector<std::pair<TextId, TextId>> m_undo;
    /// The end of the last text, which may go on in the next event.
    std::wstring m_strTail;
    std::wstring m_strUnits;

    // What the survey has found.
    std::map<std::wstring, TextId, std::less<>> m_prefixIds;
    std::vector<std::pair<TextId, TextId>> m_declared;
    std::set<std::pair<TextId, TextId>> m_declaredSet;
    /// Prefixes that occur in values, and what they stand for.
    std::map<TextId, TextId> m_usedPrefixes;
    std::vector<STypeName> m_types;
    /// Namespaces of names, in the order of their occurrence, and whether they need a prefix though they are the
    /// default.
    std::vector<TextId> m_used;
    std::vector<bool> m_usedByElement;
    std::vector<bool> m_usedByAttribute;
    TextId m_dwRootDefault = CDocument::s_dwNone;
    /// A name of an element, or of a type, has no namespace.
    bool m_bUnqualified = false;

    // What has been chosen.
    TextId m_dwDefault = CDocument::s_dwNone;
    std::map<TextId, std::string> m_prefixes;
    std::set<std::string> m_taken;
    std::vector<std::pair<std::string, TextId>> m_declarations;
    std::map<std::size_t, std::string> m_rewritten;
};

} // namespace quiver_fi
