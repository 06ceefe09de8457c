#pragma once

#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/fastinfoset/FITreeBuilder.h"

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// Builds the tree of a document out of what a parser reports, in document order:
///
///     builder.AddElement(builder.InternName("urn:x|order"));
///     builder.AppendTextExcludingCR(builder.GetOpenElement(), "text");
///     builder.EndElement();
///
/// Lives for one load. What has been built so far is in the tree at any time, also after a failure. Parsers know this
/// class and not the document, so any of them can feed it.
class CXmlTreeBuilder final : public CFITreeBuilder
{
public:
    /// See CXmlDocument::PfnElementFilter.
    using PfnElementFilter = bool (*)(CXmlElement* pElement);

    /// Prefix to URI, for the whole document.
    using CNamespaces = std::map<std::wstring, std::wstring, std::less<>>;

    /// @param store gets the nodes, names and texts, and owns the root.
    /// @param pDocumentElement becomes the root as soon as there is one.
    /// @param pfnElementFilter may be null.
    CXmlTreeBuilder(CXmlNodeStore& store, CXmlElement*& pDocumentElement, CNamespaces& namespaces,
                    PfnElementFilter pfnElementFilter);
    ~CXmlTreeBuilder() override;

    void SetNamespace(const std::wstring& strPrefix, const std::wstring& strURI) override;

    const SXmlName& InternName(const std::wstring& strNamespaceURI, const std::wstring& strLocalName) override;
    /// @param lpcName UTF-8, with a `|` between namespace and local name if there is a namespace.
    const SXmlName& InternName(const char* lpcName) { return m_store.Names().Find(lpcName); }
    /// See CXmlNameTable::Make.
    const SXmlName& MakeName(const std::wstring& strNamespaceURI, std::string_view utf8LocalName)
    {
        return m_store.Names().Make(strNamespaceURI, utf8LocalName);
    }
    const std::wstring& MakeNamespace(std::string_view utf8NamespaceURI)
    {
        return m_store.Names().MakeNamespace(utf8NamespaceURI);
    }
    SNameParts GetParts(const SXmlName& name) const override;
    const SXmlName& GetName(const CXmlElement* pElement) const override;

    CXmlElement* AddDocElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName);
    CXmlElement* AddDocElement(const SXmlName& name) override;

    CXmlElement* AddChildElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName);
    CXmlElement* AddChildElement(const SXmlName& name) override;

    /// Makes the root if no element is open, and otherwise a child of the innermost one; and opens it.
    CXmlElement* AddElement(const SXmlName& name)
    {
        return HasOpenElement() ? AddChildElement(name) : AddDocElement(name);
    }

    /// Appends text of UTF-8 to the innermost open element, without the carriage returns. White space between elements,
    /// which many elements have in the same form, costs no memory.
    void AddText(std::string_view utf8Text)
    {
        CXmlElement& element = *GetOpenElement();
        const bool bCannotBeBlank = element.m_pText != nullptr || utf8Text.empty() ||
                                    static_cast<unsigned char>(utf8Text.front()) > ' ' || m_pfnElementFilter != nullptr;
        if (bCannotBeBlank && !HasBlanks())
            AppendTextExcludingCR(&element, utf8Text);
        else
            AddBlanks(element, utf8Text);
    }

    /// Closes the innermost open element and offers it to the filter.
    void EndElement();

    static void AddElementAttribute(CXmlElement* pElement, const std::wstring& strLocalName,
                                    const std::wstring& strValue, const std::wstring& strNamespaceURI);
    void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::wstring_view value) override;
    void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::string_view utf8Value) override;
    void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, CXmlText* pValue) override;

    static void AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText);
    static void AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText, unsigned long ulLength);
    void AppendTextExcludingCR(CXmlElement* pElement, std::wstring_view text) override;
    void AppendTextExcludingCR(CXmlElement* pElement, std::string_view utf8Text) override;

    /// Gives an element that has no text yet all that it will have, which has no carriage returns in it. White space, which
    /// many elements have in the same form, costs no memory.
    void SetText(CXmlElement* pElement, std::string_view utf8Text)
    {
        const bool bMayBeBlank = static_cast<unsigned char>(utf8Text.front()) <= ' ';
        CXmlText* const pShared = bMayBeBlank ? FindShared(utf8Text) : nullptr;
        if (pShared != nullptr)
            pElement->m_pText = pShared;
        else
            m_store.Texts().Append(pElement->m_pText, utf8Text);
    }

    CXmlText* MakeSharedValue(std::string_view utf8Value) override;
    CXmlText* MakeSharedValue(std::wstring_view value) override;
    CXmlText* MakeSharedText(std::string_view utf8Text) override;
    CXmlText* MakeSharedText(std::wstring_view text) override;
    bool HasText(const CXmlElement* pElement) const override { return pElement->m_pText != nullptr; }
    void SetSharedText(CXmlElement* pElement, CXmlText* pText) override { pElement->m_pText = pText; }

private:
    /// White space that makes up all the text so far of the elements that are open, outermost first. It becomes a text
    /// when its element ends, or more follows.
    struct SBlanks
    {
        CXmlElement* pElement;
        std::size_t nStart;
    };

    bool HasBlanks() const { return !m_blanks.empty() && m_blanks.back().pElement == GetOpenElement(); }
    void AddBlanks(CXmlElement& element, std::string_view utf8Text);
    void AppendBlanks();
    void EndBlanks();
    CXmlText* FindShared(std::string_view svText);

    template <class Char>
    CXmlText* NewSharedValue(std::basic_string_view<Char> value);
    template <class Char>
    CXmlText* NewSharedText(std::basic_string_view<Char> text);

    CXmlNodeStore& m_store;
    CXmlElement*& m_pDocumentElement;
    CNamespaces& m_namespaces;
    const PfnElementFilter m_pfnElementFilter;
    std::vector<SBlanks> m_blanks;
    std::string m_strBlanks;
    /// White space that elements have had, by its length: the text last seen of that length.
    std::array<CXmlText*, 64> m_sharedBlanks{};
    std::size_t m_nSharedBlanks = 0;
};

} // namespace QvXmlLib9
