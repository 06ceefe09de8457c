// Any bytes as a document, read by the scanner and by expat: what the scanner does not give up, expat accepts too, and
// both make the same tree of it. Once by wide instructions and once by plain code, with namespaces and without.

#include "fuzz/FuzzInput.h"

#include "quiver/document/ExpatReader.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/document/XmlScanner.h"
#include "quiver/document/XmlTreeBuilder.h"

#include <memory>
#include <string_view>
#include <utility>

using namespace QvXmlLib9;

namespace
{

struct STree
{
    STree()
        : builder(store, pRoot, namespaces, nullptr)
    {
    }

    CXmlNodeStore store{nullptr};
    CXmlElement* pRoot = nullptr;
    CXmlTreeBuilder::CNamespaces namespaces;
    CXmlTreeBuilder builder;
};

bool AreSame(const CXmlElement& left, const CXmlElement& right)
{
    const auto& leftAttributes = left.GetAttributes();
    const auto& rightAttributes = right.GetAttributes();
    const auto sameAttribute = [](const CXmlAttribute* pLeft, const CXmlAttribute* pRight)
    {
        return pLeft->GetLocalName() == pRight->GetLocalName() &&
               pLeft->GetNamespaceURI() == pRight->GetNamespaceURI() && pLeft->GetValue() == pRight->GetValue();
    };
    return left.GetLocalName() == right.GetLocalName() && left.GetNamespaceURI() == right.GetNamespaceURI() &&
           left.GetText() == right.GetText() &&
           std::equal(leftAttributes.begin(), leftAttributes.end(), rightAttributes.begin(), rightAttributes.end(),
                      sameAttribute);
}

bool AreSameTrees(CXmlElement* pLeftRoot, CXmlElement* pRightRoot)
{
    std::vector<std::pair<CXmlElement*, CXmlElement*>> open{{pLeftRoot, pRightRoot}};
    while (!open.empty())
    {
        const auto [pLeft, pRight] = open.back();
        open.pop_back();
        if ((pLeft == nullptr) != (pRight == nullptr))
            return false;
        if (pLeft == nullptr)
            continue;
        if (!AreSame(*pLeft, *pRight))
            return false;
        open.emplace_back(pLeft->GetFirstElement(), pRight->GetFirstElement());
        open.emplace_back(pLeft->GetNextSiblingElement(), pRight->GetNextSiblingElement());
    }
    return true;
}

/// @param bText whether the bytes are the UTF-8 form of a document that expat gets as UTF-16.
bool Scan(STree& tree, std::string_view document, const SExpatOptions& options, bool bText, bool bPlainCode)
{
    CXmlScanner scanner(tree.builder, options);
    if (bPlainCode)
        scanner.UsePlainCode();
    return bText ? scanner.ScanText(document) : scanner.ScanBytes(document);
}

bool Parse(STree& tree, std::string_view document, const SExpatOptions& options)
{
    return fuzz::Succeeds(
        [&]
        {
            CExpatReader reader(tree.builder, options);
            reader.Init();
            reader.Parse(document, true);
        });
}

std::string ToUtf16(std::string_view document)
{
    std::wstring strText;
    AppendUtf8AsUtf16(strText, document);
    std::string strBytes(2 + 2 * strText.size(), '\0');
    strBytes[0] = '\xFF';
    strBytes[1] = '\xFE';
    WriteUtf16LittleEndian(strText, reinterpret_cast<unsigned char*>(strBytes.data()) + 2);
    return strBytes;
}

void Compare(std::string_view document, const SExpatOptions& options, bool bText)
{
    STree wide;
    const bool bScanned = Scan(wide, document, options, bText, false);
    STree plain;
    fuzz::Require(Scan(plain, document, options, bText, true) == bScanned, "plain code has the same verdict");
    if (!bScanned)
        return;
    STree judge;
    fuzz::Require(Parse(judge, bText ? ToUtf16(document) : std::string(document), options), "expat accepts it too");
    fuzz::Require(judge.namespaces == wide.namespaces && judge.namespaces == plain.namespaces, "same prefixes");
    fuzz::Require(AreSameTrees(judge.pRoot, wide.pRoot), "expat makes the same tree");
    fuzz::Require(AreSameTrees(judge.pRoot, plain.pRoot), "plain code makes the same tree");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    // A copy of its own, so that a byte read past its end does not go unnoticed.
    const std::unique_ptr<char[]> pCopy(new char[nSize]);
    std::copy_n(pData, nSize, pCopy.get());
    const std::string_view document(pCopy.get(), nSize);
    Compare(document, {true, false}, false);
    Compare(document, {false, true}, false);
    Compare(document, {true, true}, true);
    return 0;
}
