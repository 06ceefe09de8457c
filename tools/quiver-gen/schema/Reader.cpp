#include "tools/quiver-gen/schema/Reader.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace quiver_gen::schema
{

namespace
{

// No namespace holds a line feed: expat refuses one that does.
constexpr XML_Char s_chSeparator = '\n';

constexpr std::size_t s_nPiece = 1 << 20;

bool IsWhiteSpace(std::string_view svText)
{
    return svText.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

class CTreeMaker
{
public:
    CTreeMaker(int nFile, std::deque<SNamespaceScope>& scopes, CDiagnostics& diagnostics)
        : m_nFile(nFile)
        , m_scopes(scopes)
        , m_diagnostics(diagnostics)
        , m_parser(XML_ParserCreateNS(nullptr, s_chSeparator), &XML_ParserFree)
    {
        XML_Parser parser = m_parser.get();
        XML_SetUserData(parser, this);
        XML_SetElementHandler(
            parser, [](void* p, const XML_Char* lpctName, const XML_Char** pp) { This(p).OnStart(lpctName, pp); },
            [](void* p, const XML_Char*) { This(p).OnEnd(); });
        XML_SetCharacterDataHandler(parser,
                                    [](void* p, const XML_Char* lpct, int n) {
                                        This(p).OnText({lpct, static_cast<std::size_t>(n)});
                                    });
        XML_SetNamespaceDeclHandler(
            parser,
            [](void* p, const XML_Char* lpctPrefix, const XML_Char* lpctUri)
            { This(p).OnNamespace(lpctPrefix, lpctUri); },
            nullptr);
        XML_SetSkippedEntityHandler(parser,
                                    [](void* p, const XML_Char* lpctName, int) { This(p).OnSkippedEntity(lpctName); });
    }

    STree Read(std::string_view svBytes)
    {
        SNamespaceScope& scope = m_scopes.emplace_back();
        scope.declarations.emplace_back("xml", s_svXmlNamespace);
        m_open.push_back({nullptr, &scope, {}});
        m_tree.bComplete = Parse(svBytes) && !m_bFailed;
        return std::move(m_tree);
    }

private:
    /// An element that is not closed yet.
    struct SOpen
    {
        SNode* pNode; ///< null inside documentation
        const SNamespaceScope* pScope;
        std::string strLang;
    };

    static CTreeMaker& This(void* pUser) { return *static_cast<CTreeMaker*>(pUser); }

    bool Parse(std::string_view svBytes)
    {
        XML_Parser parser = m_parser.get();
        std::size_t nDone = 0;
        do
        {
            const std::size_t nLength = std::min(svBytes.size() - nDone, s_nPiece);
            const bool bFinal = nDone + nLength == svBytes.size();
            if (XML_Parse(parser, svBytes.data() + nDone, static_cast<int>(nLength), bFinal) != XML_STATUS_OK)
            {
                if (XML_GetErrorCode(parser) != XML_ERROR_ABORTED)
                    AddError(std::string("the document is not well-formed: ") +
                             XML_ErrorString(XML_GetErrorCode(parser)));
                return false;
            }
            nDone += nLength;
        } while (nDone < svBytes.size());
        return true;
    }

    SPosition GetPosition() const
    {
        return {m_nFile, static_cast<int>(XML_GetCurrentLineNumber(m_parser.get())),
                static_cast<int>(XML_GetCurrentColumnNumber(m_parser.get())) + 1};
    }

    void AddError(std::string strText)
    {
        m_bFailed = true;
        m_diagnostics.AddError(GetPosition(), std::move(strText));
    }

    void OnNamespace(const XML_Char* lpctPrefix, const XML_Char* lpctUri)
    {
        m_declarations.emplace_back(lpctPrefix ? lpctPrefix : "", lpctUri ? lpctUri : "");
    }

    /// The scope of the element that opens now.
    const SNamespaceScope* TakeScope()
    {
        const SNamespaceScope* pOuter = m_open.back().pScope;
        if (m_declarations.empty())
            return pOuter;
        SNamespaceScope& scope = m_scopes.emplace_back();
        scope.pOuter = pOuter;
        scope.declarations.swap(m_declarations);
        std::sort(scope.declarations.begin(), scope.declarations.end());
        return &scope;
    }

    static void Split(std::string_view svName, std::string& strNamespace, std::string& strLocal)
    {
        const std::size_t nSeparator = svName.find(s_chSeparator);
        if (nSeparator == std::string_view::npos)
        {
            strLocal = svName;
            return;
        }
        strNamespace = svName.substr(0, nSeparator);
        strLocal = svName.substr(nSeparator + 1);
    }

    void OnStart(const XML_Char* lpctName, const XML_Char** ppAttributes)
    {
        if (m_open.size() > s_nMaxDepth)
        {
            AddError("elements nest deeper than " + std::to_string(s_nMaxDepth));
            XML_StopParser(m_parser.get(), XML_FALSE);
            return;
        }
        SNode* pParent = m_open.back().pNode;
        const bool bRoot = m_open.size() == 1;
        if (!bRoot && (!pParent || pParent->Is("documentation") || pParent->Is("appinfo")))
        {
            m_declarations.clear();
            m_open.push_back({nullptr, m_open.back().pScope, {}});
            return;
        }
        const SNamespaceScope* pScope = TakeScope();
        SNode& node = AddNode(lpctName, ppAttributes, pScope);
        if (pParent)
            pParent->children.push_back(&node);
        else
            m_tree.pRoot = &node;
        m_pDocumentation = node.Is("documentation") ? &node : nullptr;
    }

    SNode& AddNode(const XML_Char* lpctName, const XML_Char** ppAttributes, const SNamespaceScope* pScope)
    {
        SNode& node = m_tree.nodes.emplace_back();
        const SPosition position = GetPosition();
        node.nLine = position.nLine;
        node.nColumn = position.nColumn;
        node.pScope = pScope;
        Split(lpctName, node.strNamespace, node.strLocal);
        node.bXsd = node.strNamespace == s_svXsdNamespace;
        if (node.bXsd)
            node.strNamespace.clear();
        node.strLang = m_open.back().strLang;
        for (; *ppAttributes; ppAttributes += 2)
        {
            SNodeAttribute& attribute = node.attributes.emplace_back();
            Split(ppAttributes[0], attribute.strNamespace, attribute.strLocal);
            attribute.strValue = ppAttributes[1];
            if (attribute.strLocal == "lang" && attribute.strNamespace == s_svXmlNamespace)
                node.strLang = attribute.strValue;
        }
        m_open.push_back({&node, pScope, node.strLang});
        return node;
    }

    void OnEnd()
    {
        m_open.pop_back();
        SNode* pNode = m_open.back().pNode;
        if (pNode)
            m_pDocumentation = pNode->Is("documentation") ? pNode : nullptr;
    }

    void OnText(std::string_view svText)
    {
        if (m_pDocumentation)
        {
            m_pDocumentation->strText += svText;
            return;
        }
        SNode* pNode = m_open.back().pNode;
        if (!pNode || pNode->bText || pNode->Is("appinfo") || IsWhiteSpace(svText))
            return;
        const SPosition position = GetPosition();
        pNode->bText = true;
        pNode->nTextLine = position.nLine;
        pNode->nTextColumn = position.nColumn;
    }

    void OnSkippedEntity(const XML_Char* lpctName)
    {
        AddError(std::string("the entity '") + lpctName + "' is not declared in this document");
    }

    int m_nFile;
    std::deque<SNamespaceScope>& m_scopes;
    CDiagnostics& m_diagnostics;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser;
    STree m_tree;
    std::vector<SOpen> m_open;                                       ///< the first stands for the document
    std::vector<std::pair<std::string, std::string>> m_declarations; ///< of the element that opens next
    SNode* m_pDocumentation = nullptr;                               ///< gets the text that comes
    bool m_bFailed = false;
};

} // namespace

const std::string* SNode::Find(std::string_view svName) const
{
    for (const SNodeAttribute& attribute : attributes)
        if (attribute.strNamespace.empty() && attribute.strLocal == svName)
            return &attribute.strValue;
    return nullptr;
}

STree ReadTree(std::string_view svBytes, int nFile, std::deque<SNamespaceScope>& scopes, CDiagnostics& diagnostics)
{
    return CTreeMaker(nFile, scopes, diagnostics).Read(svBytes);
}

} // namespace quiver_gen::schema
