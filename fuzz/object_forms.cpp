// Objects made by decisions, with values from the edges of every kind, written in one form of text, of octets and of
// Fast Infoset, and read again: each says the same. What cannot be written ends in an exception of the library.

#include "fuzz/FuzzInput.h"
#include "fuzz/Objects.h"

using namespace QvXmlLib9;

namespace
{

class CForms
{
public:
    CForms(const fuzz::SClasses& classes, fuzz::CDecisions& decisions)
        : m_classes(classes)
        , m_decisions(decisions)
        , m_spObject(classes.pfnMake(decisions))
        , m_context(fuzz::MakeContext(decisions))
    {
    }

    void Check()
    {
        if (!fuzz::Succeeds([&] { m_strXml = ToText(*m_spObject); }))
            return;
        m_bKept = !fuzz::IsChangedOnPurpose(m_strXml);
        CheckText();
        CheckOctets();
        CheckInfoset();
        fuzz::RequireSame(ToText(*m_spObject), m_strXml, "writing leaves the object as it is");
    }

private:
    std::wstring ToText(const CXmlObjectBase& object) const
    {
        return object.ToXml(false, false, EOLType_LF, m_context);
    }

    /// @param read fills an object.
    template <class TRead>
    void CheckRead(TRead Read, const char* lpcForm)
    {
        const fuzz::CObject spAgain = m_classes.pfnMakeEmpty();
        const std::wstring strFailure = fuzz::Failure([&] { Read(*spAgain); });
        if (!m_bKept)
            return;
        fuzz::RequireSame(strFailure.empty() ? ToText(*spAgain) : strFailure, m_strXml, lpcForm);
        fuzz::Require(m_classes.pfnAreSame(*spAgain, *m_spObject), "members come back as they were set");
        // The second use of an object and of a context.
        Read(*spAgain);
        fuzz::RequireSame(ToText(*spAgain), m_strXml, "an object that is read into again says the same");
    }

    void CheckText()
    {
        const bool bFormat = m_decisions.Bool();
        const auto eEol = m_decisions.Bool() ? EOLType_CRLF : EOLType_LF;
        const std::wstring strXml = m_spObject->ToXml(m_decisions.Bool(), bFormat, eEol, m_context);
        CheckRead([&](CXmlObjectBase& object) { object.FromXml(strXml.c_str(), m_context); },
                  "what is written as text is read as it was");
    }

    void CheckOctets()
    {
        const XmlEncoding encodings[] = {Encoding_UTF8, Encoding_UTF16, Encoding_UTF16_Undeclared};
        const CompressionType compressions[] = {Compression_None, Compression_GZip, Compression_ZLib};
        const bool bFormat = m_decisions.Bool();
        const XmlEncoding eEncoding = m_decisions.OneOf(encodings);
        const CompressionType eCompression = m_decisions.OneOf(compressions);
        CBinaryData data;
        const auto Write = [&]
        {
            data = m_spObject->ToXmlStream(m_decisions.Bool(), bFormat, eEncoding, EOLType_LF, m_context, eCompression);
        };
        if (!fuzz::Succeeds(Write))
        {
            fuzz::Require(eCompression != Compression_None, "what can be written as text can be written as octets");
            return;
        }
        CheckRead([&](CXmlObjectBase& object) { object.FromXmlStream(data, m_context); },
                  "what is written as octets is read as it was");
    }

    void CheckInfoset()
    {
        m_bKept &= fuzz::SetInfosetOptions(m_context, m_decisions);
        const auto eDecl = static_cast<FInfoDecl>(m_decisions.Below(10));
        const auto eCompression = static_cast<CompressionType>(m_decisions.Below(3));
        CBinaryData data;
        const auto Write = [&]
        {
            data = m_spObject->ToFastInfosetStream(eDecl, m_context, eCompression);
        };
        if (!fuzz::Succeeds(Write) || fuzz::IsMixed(m_strXml))
            return;
        CheckRead([&](CXmlObjectBase& object) { object.FromXmlStream(data, m_context); },
                  "what is written as Fast Infoset is read as it was");
    }

    const fuzz::SClasses& m_classes;
    fuzz::CDecisions& m_decisions;
    fuzz::CObject m_spObject;
    CXmlSerializationContext m_context;
    std::wstring m_strXml;
    bool m_bKept = false;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    fuzz::CDecisions decisions(pData, nSize);
    const fuzz::SClasses& classes = decisions.OneOf(fuzz::s_classes);
    CForms(classes, decisions).Check();
    return 0;
}
