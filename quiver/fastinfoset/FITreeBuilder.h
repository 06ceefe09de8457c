#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

class CXmlElement;
class CXmlText;
struct SXmlName;

/// The tree as the reader of Fast Infoset documents builds it. What elements, names and texts are made of is the
/// builder's affair; the reader only hands them back to it.
///
/// Everything it hands out lives as long as the tree. It is used by one thread.
class CFITreeBuilder
{
public:
    /// A name in its two parts.
    struct SNameParts
    {
        const std::wstring& strNamespaceURI;
        const std::wstring& strLocalName;
    };

    CFITreeBuilder() = default;
    virtual ~CFITreeBuilder() = default;
    CFITreeBuilder(const CFITreeBuilder&) = delete;
    CFITreeBuilder& operator=(const CFITreeBuilder&) = delete;

    bool HasOpenElement() const { return !m_pElementStack.empty(); }

    /// The innermost open element. There must be one.
    CXmlElement* GetOpenElement() const { return m_pElementStack.back(); }

    /// Closes the innermost open element without a word to anybody.
    void CloseElement() { m_pElementStack.pop_back(); }

    /// Binds a prefix, for the whole document; the last binding counts.
    virtual void SetNamespace(const std::wstring& strPrefix, const std::wstring& strURI) = 0;

    /// The tree's record of a name. Ask once for a name that will occur often, and build with the record.
    virtual const SXmlName& InternName(const std::wstring& strNamespaceURI, const std::wstring& strLocalName) = 0;
    virtual SNameParts GetParts(const SXmlName& name) const = 0;
    virtual const SXmlName& GetName(const CXmlElement* pElement) const = 0;

    /// Makes the root element and opens it.
    virtual CXmlElement* AddDocElement(const SXmlName& name) = 0;

    /// Makes a child of the innermost open element and opens it.
    virtual CXmlElement* AddChildElement(const SXmlName& name) = 0;

    virtual void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::wstring_view value) = 0;
    virtual void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::string_view utf8Value) = 0;
    /// @param pValue what MakeSharedValue has made.
    virtual void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, CXmlText* pValue) = 0;

    /// Appends text up to its end or its first zero unit, without the carriage returns.
    virtual void AppendTextExcludingCR(CXmlElement* pElement, std::wstring_view text) = 0;
    /// The same for UTF-8, which has no zero in it.
    virtual void AppendTextExcludingCR(CXmlElement* pElement, std::string_view utf8Text) = 0;

    /// A value that any number of attributes may have at the price of one.
    virtual CXmlText* MakeSharedValue(std::string_view utf8Value) = 0;
    virtual CXmlText* MakeSharedValue(std::wstring_view value) = 0;

    /// The same for the text of elements that have none yet. It ends at its first zero, and has no carriage returns;
    /// null if nothing is left.
    virtual CXmlText* MakeSharedText(std::string_view utf8Text) = 0;
    virtual CXmlText* MakeSharedText(std::wstring_view text) = 0;

    virtual bool HasText(const CXmlElement* pElement) const = 0;
    /// @param pText what MakeSharedText has made.
    virtual void SetSharedText(CXmlElement* pElement, CXmlText* pText) = 0;

protected:
    /// The path of open elements, innermost at the back.
    std::vector<CXmlElement*> m_pElementStack;
};

} // namespace QvXmlLib9
