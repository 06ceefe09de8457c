#include "tools/quiver-gen/schema/Documents.h"

#include "tools/quiver-gen/schema/Locations.h"
#include "tools/quiver-gen/schema/Text.h"

#include <filesystem>
#include <map>
#include <utility>

namespace quiver_gen::schema
{

namespace
{

// The attributes that XML itself defines, for schemas that refer to them where no document for them is at hand.
constexpr std::string_view s_svXmlSchema =
    R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="http://www.w3.org/XML/1998/namespace">
<xs:attribute name="lang"><xs:simpleType><xs:union memberTypes="xs:language"><xs:simpleType>
<xs:restriction base="xs:string"><xs:enumeration value=""/></xs:restriction>
</xs:simpleType></xs:union></xs:simpleType></xs:attribute>
<xs:attribute name="space"><xs:simpleType><xs:restriction base="xs:NCName">
<xs:enumeration value="default"/><xs:enumeration value="preserve"/>
</xs:restriction></xs:simpleType></xs:attribute>
<xs:attribute name="base" type="xs:anyURI"/>
<xs:attribute name="id" type="xs:ID"/>
<xs:attributeGroup name="specialAttrs">
<xs:attribute ref="xml:base"/><xs:attribute ref="xml:lang"/><xs:attribute ref="xml:space"/><xs:attribute ref="xml:id"/>
</xs:attributeGroup>
</xs:schema>)";

constexpr std::string_view s_svXsiSchema =
    R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="http://www.w3.org/2001/XMLSchema-instance">
<xs:attribute name="nil" type="xs:boolean"/>
<xs:attribute name="type" type="xs:QName"/>
<xs:attribute name="schemaLocation"><xs:simpleType><xs:list itemType="xs:anyURI"/></xs:simpleType></xs:attribute>
<xs:attribute name="noNamespaceSchemaLocation" type="xs:anyURI"/>
</xs:schema>)";

struct SBuiltInDocument
{
    std::string_view svPath;
    std::string_view svNamespace;
    std::string_view svText;
};

constexpr SBuiltInDocument s_builtInDocuments[] = {
    {"(attributes of XML)", s_svXmlNamespace, s_svXmlSchema},
    {"(attributes of XMLSchema-instance)", s_svXsiNamespace, s_svXsiSchema}};

/// The namespaces that references work with where no document brings them.
bool IsKnownNamespace(std::string_view svNamespace)
{
    return svNamespace == s_svXmlNamespace || svNamespace == s_svXsiNamespace || svNamespace == s_svXsdNamespace;
}

enum class EWay
{
    Given,
    Include,
    Redefine,
    Import
};

/// A document to load, and the element that asks for it.
struct SRequest
{
    EWay eWay = EWay::Given;
    std::string strPath;
    std::string strNamespace; ///< Include, Redefine: of the asking document; Import: as written
    std::size_t nFrom = 0;
    const SNode* pNode = nullptr;
};

/// An import that found nothing: an error unless the namespace comes from elsewhere.
struct SMissingImport
{
    SPosition position;
    std::string strNamespace;
    std::string strText;
};

struct SParsed
{
    const STree* pTree = nullptr;
    int nFile = -1;
    bool bUsed = false;    ///< a document stands for the file already
    bool bRefused = false; ///< not a schema; said once
};

class CDocumentReader
{
public:
    CDocumentReader(SSchemaSet& set, SDraft& draft, CDiagnostics& diagnostics)
        : m_set(set)
        , m_draft(draft)
        , m_diagnostics(diagnostics)
    {
    }

    void Read(const SLoadOptions& options)
    {
        for (const auto& [strUri, strPath] : options.locations)
            m_locations.Add(strUri, strPath);
        for (const std::string& strCatalog : options.catalogs)
            m_locations.ReadCatalog(strCatalog, m_set, m_diagnostics);
        for (auto it = options.schemas.rbegin(); it != options.schemas.rend(); ++it)
            m_requests.push_back({EWay::Given, *it, {}, 0, nullptr});
        while (!m_requests.empty())
        {
            const SRequest request = std::move(m_requests.back());
            m_requests.pop_back();
            Answer(request);
        }
        ReportMissingImports();
        for (const SBuiltInDocument& document : s_builtInDocuments)
            if (IsNeeded(document.svNamespace))
                AddBuiltIn(document);
    }

private:
    SPosition GetPosition(const SRequest& request) const
    {
        return request.pNode ? m_draft.documents[request.nFrom].GetPosition(*request.pNode) : SPosition{};
    }

    void Answer(const SRequest& request)
    {
        SParsed* pParsed = Parse(request);
        if (!pParsed || pParsed->bRefused)
            return;
        const SNode& root = *pParsed->pTree->pRoot;
        if (!root.Is("schema"))
        {
            pParsed->bRefused = true;
            m_diagnostics.AddError({pParsed->nFile, root.nLine, root.nColumn},
                                   "the root element is '" + root.strLocal + "', not 'schema' of XML Schema");
            return;
        }
        const std::string* pTarget = root.Find("targetNamespace");
        std::string strTarget = pTarget ? std::string(Trim(*pTarget)) : std::string();
        const bool bIncluded = request.eWay == EWay::Include || request.eWay == EWay::Redefine;
        const bool bChameleon = bIncluded && strTarget.empty() && !request.strNamespace.empty();
        if (bChameleon)
            strTarget = request.strNamespace;
        if (request.eWay != EWay::Given && strTarget != request.strNamespace)
        {
            ReportOtherNamespace(request, strTarget);
            return;
        }
        const auto [it, bNew] = m_documents.try_emplace({&root, strTarget}, m_draft.documents.size());
        if (bNew)
            AddDocument(*pParsed, strTarget, bChameleon);
        m_set.files[static_cast<std::size_t>(m_draft.documents[it->second].nFile)].bGiven |=
            request.eWay == EWay::Given;
        if (!bIncluded)
            return;
        SDocument& from = m_draft.documents[request.nFrom];
        from.includes.push_back(it->second);
        if (request.eWay == EWay::Redefine)
            from.redefinitions.emplace(request.pNode, it->second);
    }

    void ReportOtherNamespace(const SRequest& request, const std::string& strTarget)
    {
        const auto describe = [](const std::string& strNamespace)
        {
            return strNamespace.empty() ? std::string("no target namespace")
                                        : "the target namespace '" + strNamespace + "'";
        };
        m_diagnostics.AddError(GetPosition(request), "'" + request.strPath + "' has " + describe(strTarget) +
                                                         ", where " + describe(request.strNamespace) + " is needed");
    }

    /// The parsed file of a request, null if there is none; what is wrong is reported.
    SParsed* Parse(const SRequest& request)
    {
        std::error_code error;
        const std::filesystem::path path = std::filesystem::u8path(request.strPath);
        std::string strKey = std::filesystem::canonical(path, error).u8string();
        if (error)
            strKey = request.strPath;
        if (const auto it = m_filesByPath.find(strKey); it != m_filesByPath.end())
            return it->second;

        std::string strBytes;
        const EReadResult eResult = ReadFile(request.strPath, strBytes);
        if (eResult != EReadResult::Done)
        {
            ReportUnread(request, "'" + request.strPath + "' " + std::string(DescribeFailure(eResult)));
            return nullptr;
        }
        // A copy of a document under another path means the same components.
        const auto [it, bNew] = m_filesByContent.try_emplace(std::move(strBytes));
        SParsed& parsed = it->second;
        m_filesByPath.emplace(std::move(strKey), &parsed);
        if (bNew)
        {
            parsed.nFile = AddFile(request.strPath);
            STree& tree = m_draft.trees.emplace_back();
            tree = ReadTree(it->first, parsed.nFile, m_set.scopes, m_diagnostics);
            parsed.pTree = &tree;
            parsed.bRefused = !tree.bComplete;
        }
        return &parsed;
    }

    int AddFile(std::string strPath)
    {
        m_set.files.emplace_back().strPath = std::move(strPath);
        return static_cast<int>(m_set.files.size()) - 1;
    }

    void ReportUnread(const SRequest& request, std::string strText)
    {
        if (request.eWay == EWay::Import)
            m_missingImports.push_back({GetPosition(request), request.strNamespace, std::move(strText)});
        else
            m_diagnostics.AddError(GetPosition(request), std::move(strText));
    }

    void AddDocument(SParsed& parsed, const std::string& strTarget, bool bChameleon)
    {
        if (parsed.bUsed)
            parsed.nFile = AddFile(m_set.files[static_cast<std::size_t>(parsed.nFile)].strPath);
        parsed.bUsed = true;
        SFile& file = m_set.files[static_cast<std::size_t>(parsed.nFile)];
        file.strTargetNamespace = strTarget;
        file.bChameleon = bChameleon;
        SDocument& document = m_draft.documents.emplace_back();
        document.nFile = parsed.nFile;
        document.pRoot = parsed.pTree->pRoot;
        document.strTargetNamespace = strTarget;
        document.bChameleon = bChameleon;
        m_set.GetNamespace(strTarget);
        RequestReferences(m_draft.documents.size() - 1);
    }

    /// Puts what a document refers to on the stack, the first on top.
    void RequestReferences(std::size_t nDocument)
    {
        const std::vector<const SNode*>& children = m_draft.documents[nDocument].pRoot->children;
        for (auto it = children.rbegin(); it != children.rend(); ++it)
        {
            const SNode& node = **it;
            if (node.Is("include"))
                RequestIncluded(EWay::Include, nDocument, node);
            else if (node.Is("redefine"))
                RequestIncluded(EWay::Redefine, nDocument, node);
            else if (node.Is("import"))
                RequestImported(nDocument, node);
        }
    }

    void RequestIncluded(EWay eWay, std::size_t nDocument, const SNode& node)
    {
        const SDocument& document = m_draft.documents[nDocument];
        if (const std::string* pLocation = node.Find("schemaLocation"))
            Request({eWay, std::string(Trim(*pLocation)), document.strTargetNamespace, nDocument, &node});
    }

    void RequestImported(std::size_t nDocument, const SNode& node)
    {
        SDocument& document = m_draft.documents[nDocument];
        const std::string* pNamespace = node.Find("namespace");
        const std::string strNamespace = pNamespace ? std::string(Trim(*pNamespace)) : std::string();
        if (strNamespace == document.strTargetNamespace)
        {
            m_diagnostics.AddError(document.GetPosition(node),
                                   "a schema cannot import its own target namespace '" + strNamespace + "'");
            return;
        }
        document.imports.insert(strNamespace);
        const std::string* pLocation = node.Find("schemaLocation");
        // Without a location, the namespace itself may be placed by the caller or a catalog.
        if (pLocation)
            Request({EWay::Import, std::string(Trim(*pLocation)), strNamespace, nDocument, &node});
        else if (std::optional<std::string> path = m_locations.Find(strNamespace); path && !strNamespace.empty())
            m_requests.push_back({EWay::Import, std::move(*path), strNamespace, nDocument, &node});
    }

    /// Requests a document by its location as written.
    void Request(SRequest request)
    {
        const std::string strFrom =
            m_set.files[static_cast<std::size_t>(m_draft.documents[request.nFrom].nFile)].strPath;
        std::optional<std::string> path = FindPlaced(request, strFrom);
        if (!path && IsElsewhere(request.strPath))
        {
            ReportUnread(request,
                         "'" + request.strPath + "' is not a file; a location or a catalog may name one for it");
            return;
        }
        request.strPath = path ? std::move(*path) : ResolveLocation(request.strPath, strFrom);
        m_requests.push_back(std::move(request));
    }

    std::optional<std::string> FindPlaced(const SRequest& request, const std::string& strFrom) const
    {
        std::optional<std::string> path = m_locations.Find(request.strPath);
        if (!path && request.eWay == EWay::Import && !request.strNamespace.empty())
            path = m_locations.Find(request.strNamespace);
        if (!path && !IsElsewhere(request.strPath))
            path = m_locations.Find(ResolveLocation(request.strPath, strFrom));
        return path;
    }

    void ReportMissingImports()
    {
        for (SMissingImport& missing : m_missingImports)
        {
            const std::string strText = "the import of namespace '" + missing.strNamespace + "': " + missing.strText;
            if (IsLoaded(missing.strNamespace))
                m_diagnostics.AddWarning(missing.position, strText + "; what is known of it from elsewhere is used");
            else if (!IsKnownNamespace(missing.strNamespace))
                m_diagnostics.AddError(missing.position, strText);
        }
    }

    bool IsLoaded(const std::string& strNamespace) const { return m_set.FindNamespace(strNamespace) != nullptr; }

    /// Whether a document refers to a namespace that none brings.
    bool IsNeeded(std::string_view svNamespace) const
    {
        if (IsLoaded(std::string(svNamespace)))
            return false;
        for (const STree& tree : m_draft.trees)
            for (const SNode& node : tree.nodes)
                if (const std::string* pReference = node.bXsd ? node.Find("ref") : nullptr)
                {
                    const std::string_view svName = Trim(*pReference);
                    const std::size_t nColon = svName.find(':');
                    const std::string* pUri =
                        nColon == std::string_view::npos ? nullptr : node.pScope->Find(svName.substr(0, nColon));
                    if (pUri && *pUri == svNamespace)
                        return true;
                }
        return false;
    }

    void AddBuiltIn(const SBuiltInDocument& builtIn)
    {
        SParsed parsed;
        parsed.nFile = AddFile(std::string(builtIn.svPath));
        m_set.files.back().bBuiltIn = true;
        STree& tree = m_draft.trees.emplace_back();
        tree = ReadTree(builtIn.svText, parsed.nFile, m_set.scopes, m_diagnostics);
        parsed.pTree = &tree;
        AddDocument(parsed, std::string(builtIn.svNamespace), false);
    }

    SSchemaSet& m_set;
    SDraft& m_draft;
    CDiagnostics& m_diagnostics;
    CLocations m_locations;
    std::vector<SRequest> m_requests; ///< a stack
    std::unordered_map<std::string, SParsed> m_filesByContent;
    std::unordered_map<std::string, SParsed*> m_filesByPath; ///< by canonical path
    std::map<std::pair<const SNode*, std::string>, std::size_t> m_documents;
    std::vector<SMissingImport> m_missingImports;
};

} // namespace

void ReadDocuments(const SLoadOptions& options, SSchemaSet& set, SDraft& draft, CDiagnostics& diagnostics)
{
    CDocumentReader(set, draft, diagnostics).Read(options);
}

} // namespace quiver_gen::schema
