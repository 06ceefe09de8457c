#include "tools/quiver-fi/TreeSinks.h"

#include "tools/quiver-fi/ValueType.h"
#include "tools/quiver-fi/XmlNames.h"

#include "quiver/foundation/Encoder.h"

#include <algorithm>
#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr std::wstring_view s_strSectionStart = L"<![CDATA[";

std::string Narrow(std::wstring_view strText)
{
    std::string strNarrow;
    AppendUtf8(strNarrow, strText);
    return strNarrow;
}

void CheckText(std::wstring_view strText)
{
    const std::size_t nPosition = FindUnprintable(strText);
    if (nPosition != std::wstring_view::npos)
    {
        throw std::runtime_error("the document holds the character " +
                                 std::to_string(static_cast<unsigned long>(strText[nPosition])) +
                                 ", which XML text cannot hold");
    }
}

} // namespace

// --- Fast Infoset ---------------------------------------------------------------------------------------------------

CFastInfosetSink::CFastInfosetSink(CFastInfosetWriter& writer, bool bSuggestedValues)
    : m_writer(writer)
    , m_bSuggestedValues(bSuggestedValues)
{
}

ItemType CFastInfosetSink::GetType(const std::wstring& strValue) const
{
    return m_bSuggestedValues ? ChooseValueType(strValue) : ItemType_string;
}

void CFastInfosetSink::DeclareDefaultNamespace(const std::wstring& strNamespace)
{
    m_writer.SetDefaultNamespace(strNamespace);
}

void CFastInfosetSink::DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace)
{
    m_writer.AddNamespaceMapping(strPrefix, strNamespace);
}

void CFastInfosetSink::StartElement(const std::wstring& strName, const std::wstring& strNamespace)
{
    m_writer.StartElement(strName, strNamespace);
}

void CFastInfosetSink::WriteAttribute(const std::wstring& strName, const std::wstring& strNamespace,
                                      const std::wstring& strValue)
{
    m_writer.WriteAttribute(strName, strNamespace, strValue, GetType(strValue));
}

void CFastInfosetSink::WriteText(const std::wstring& strText)
{
    // Empty text too: a root without attributes cannot end otherwise.
    m_writer.WriteText(strText, GetType(strText));
}

void CFastInfosetSink::EndElement()
{
    m_writer.EndElement();
}

// --- XML text -------------------------------------------------------------------------------------------------------

CXmlTextSink::CXmlTextSink(CXmlTextWriter& writer)
    : m_writer(writer)
{
}

void CXmlTextSink::CheckName(const std::wstring& strName)
{
    if (m_checkedNames.insert(&strName).second && !IsNCName(strName))
        throw std::runtime_error("the document holds the name \"" + Narrow(strName) + "\", which is none in XML");
}

const std::wstring& CXmlTextSink::EscapeNamespace(const std::wstring& strNamespace)
{
    const auto [it, bNew] = m_escapedNamespaces.try_emplace(strNamespace);
    if (!bNew)
        return it->second;
    CheckText(strNamespace);
    if (strNamespace == L"http://www.w3.org/2000/xmlns/")
        throw std::runtime_error("the document holds a name in the namespace of namespace declarations");
    // The writer puts namespaces between quotes as it gets them.
    for (const wchar_t c : strNamespace)
    {
        switch (c)
        {
        case L'&':
            it->second += L"&amp;";
            break;
        case L'<':
            it->second += L"&lt;";
            break;
        case L'"':
            it->second += L"&quot;";
            break;
        case L'\t':
        case L'\n':
        case L'\r':
            it->second += L"&#" + std::to_wstring(static_cast<int>(c)) + L';';
            break;
        default:
            it->second += c;
            break;
        }
    }
    return it->second;
}

void CXmlTextSink::DeclareDefaultNamespace(const std::wstring& strNamespace)
{
    m_writer.SetDefaultNamespace(EscapeNamespace(strNamespace));
}

void CXmlTextSink::DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace)
{
    m_writer.AddNamespaceMapping(strPrefix, EscapeNamespace(strNamespace));
}

void CXmlTextSink::StartElement(const std::wstring& strName, const std::wstring& strNamespace)
{
    CheckName(strName);
    m_writer.StartElement(strName, EscapeNamespace(strNamespace));
}

void CXmlTextSink::WriteAttribute(const std::wstring& strName, const std::wstring& strNamespace,
                                  const std::wstring& strValue)
{
    CheckName(strName);
    CheckText(strValue);
    const std::wstring& strEscaped = EscapeNamespace(strNamespace);
    if (strValue.find(L'\r') == std::wstring::npos)
    {
        m_writer.WriteAttribute(strName, strEscaped, strValue, ItemType_string);
        return;
    }
    std::wstring strWithout = strValue;
    strWithout.erase(std::remove(strWithout.begin(), strWithout.end(), L'\r'), strWithout.end());
    m_writer.WriteAttribute(strName, strEscaped, strWithout, ItemType_string);
}

void CXmlTextSink::WriteText(const std::wstring& strText)
{
    CheckText(strText);
    // The writer would take the whole for a section and not escape it.
    const bool bLikeSection = strText.compare(0, s_strSectionStart.size(), s_strSectionStart) == 0;
    const std::wstring_view strView = strText;
    if (bLikeSection)
        m_writer.WriteText(strView.substr(0, 1), ItemType_string);
    m_writer.WriteText(strView.substr(bLikeSection ? 1 : 0), ItemType_string);
}

void CXmlTextSink::EndElement()
{
    m_writer.EndElement();
}

} // namespace quiver_fi
