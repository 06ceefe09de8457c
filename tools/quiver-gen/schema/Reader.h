#pragma once

#include "tools/quiver-gen/schema/Components.h"
#include "tools/quiver-gen/schema/Diagnostics.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace quiver_gen::schema
{

/// An attribute of a schema document. Declarations of namespaces are not among them.
struct SNodeAttribute
{
    std::string strNamespace;
    std::string strLocal;
    std::string strValue;
};

/// An element of a schema document. What stands inside xs:documentation and xs:appinfo makes no nodes: the text of the
/// former is kept, the latter is left out.
struct SNode
{
    bool bXsd = false;        ///< in the namespace of XML Schema
    std::string strNamespace; ///< empty where bXsd
    std::string strLocal;
    int nLine = 0;
    int nColumn = 0;
    const SNamespaceScope* pScope = nullptr;
    std::vector<SNodeAttribute> attributes;
    std::vector<const SNode*> children;
    std::string strText; ///< of xs:documentation
    std::string strLang; ///< of xs:documentation: the xml:lang in force
    bool bText = false;  ///< other text than white space stands where the schema language has none
    int nTextLine = 0;
    int nTextColumn = 0;

    bool Is(std::string_view svName) const { return bXsd && strLocal == svName; }
    /// Value of an attribute without a namespace, null if there is none.
    const std::string* Find(std::string_view svName) const;
};

struct STree
{
    std::deque<SNode> nodes;
    const SNode* pRoot = nullptr;
    bool bComplete = false; ///< the whole document was well-formed
};

/// Parses an XML document into a tree.
/// @param svBytes the document, in UTF-8, UTF-16, or what else its declaration names and the parser knows.
/// @param nFile for the positions of errors.
/// @param scopes gets the namespace declarations.
/// @param diagnostics gets an error if the document is not well-formed or nests deeper than s_nMaxDepth.
STree ReadTree(std::string_view svBytes, int nFile, std::deque<SNamespaceScope>& scopes, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
