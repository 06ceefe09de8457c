// A document that an object has written, with one mistake in it, read by compiled classes and by the same classes made in
// memory, as `quiver-gen --check` has them: they agree whether it is right, what it says and, link by link, what is wrong.

#include "fuzz/FuzzInput.h"
#include "fuzz/Objects.h"

#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/check/Model.h"
#include "tools/quiver-gen/schema/Loader.h"

#include <array>
#include <memory>

using namespace QvXmlLib9;
using namespace quiver_gen;

namespace
{

/// The classes of a schema, made in memory. They live as long as the program.
class CModelOfSchema
{
public:
    explicit CModelOfSchema(const char* lpcSchema)
    {
        schema::SLoadOptions load;
        load.schemas.push_back(std::string(QUIVER_SOURCE_DIR "/") + lpcSchema);
        schema::SSchemaSet set;
        schema::CDiagnostics diagnostics;
        const bool bLoaded = schema::LoadSchemas(load, set, diagnostics) &&
                             binding::BuildBinding(set, binding::SBindingOptions(), m_binding, diagnostics);
        fuzz::Require(bLoaded, "there are classes for the schema");
        m_pModel = std::make_unique<check::CModel>(m_binding);
    }

    const check::CModel& Get() const { return *m_pModel; }

private:
    binding::SBinding m_binding;
    std::unique_ptr<check::CModel> m_pModel;
};

const check::CModel& ModelOf(std::size_t nClasses)
{
    static std::array<std::unique_ptr<CModelOfSchema>, fuzz::s_nClasses> s_models;
    std::unique_ptr<CModelOfSchema>& pModel = s_models[nClasses];
    if (pModel == nullptr)
        pModel = std::make_unique<CModelOfSchema>(fuzz::s_classes[nClasses].lpcSchema);
    return pModel->Get();
}

/// A document as an open tree, in which anything can be put wrong.
class CMistake
{
public:
    CMistake(const std::wstring& strXml, fuzz::CDecisions& decisions)
        : m_decisions(decisions)
        , m_pieces(Split(strXml))
    {
    }

    std::wstring Make()
    {
        if (m_pieces.empty())
            return {};
        const std::size_t nPiece = m_decisions.Below(m_pieces.size());
        if (m_pieces[nPiece][0] != L'<')
        {
            m_pieces[nPiece] = Value();
            return Join(0, m_pieces.size());
        }
        const std::size_t nBegin = FindStart(nPiece);
        const std::size_t nEnd = FindEnd(nBegin);
        const std::wstring strElement = Join(nBegin, nEnd);
        switch (m_decisions.Below(10))
        {
        case 0: // gone
            return Join(0, nBegin) + Join(nEnd, m_pieces.size());
        case 1: // twice
            return Join(0, nEnd) + strElement + Join(nEnd, m_pieces.size());
        case 2: // behind its next sibling
            if (nEnd < m_pieces.size() && IsOpening(nEnd))
                return Join(0, nBegin) + Join(nEnd, FindEnd(nEnd)) + strElement + Join(FindEnd(nEnd), m_pieces.size());
            return Join(0, nBegin) + L"<unknown/>" + Join(nBegin, m_pieces.size());
        case 3: // another value in place of the content
            return Join(0, nBegin + 1) + (IsEmpty(nBegin) ? L"" : Value() + m_pieces[nEnd - 1]) +
                   Join(nEnd, m_pieces.size());
        case 4: // the whole of another element in its place
        {
            const std::size_t nOther = FindStart(m_decisions.Below(m_pieces.size()));
            return Join(0, nBegin) + Join(nOther, FindEnd(nOther)) + Join(nEnd, m_pieces.size());
        }
        case 5:
            Rename(nBegin, nEnd);
            return Join(0, m_pieces.size());
        default:
            ChangeAttributes(m_pieces[nBegin]);
            return Join(0, m_pieces.size());
        }
    }

private:
    static std::vector<std::wstring> Split(const std::wstring& strXml)
    {
        std::vector<std::wstring> pieces;
        for (std::size_t n = 0; n < strXml.size(); n += pieces.back().size())
        {
            const bool bTag = strXml[n] == L'<';
            const std::size_t nEnd = std::min(strXml.find(bTag ? L'>' : L'<', n), strXml.size());
            pieces.push_back(strXml.substr(n, nEnd - n + (bTag ? 1 : 0)));
        }
        return pieces;
    }

    bool IsClosing(std::size_t n) const { return m_pieces[n].compare(0, 2, L"</") == 0; }
    bool IsEmpty(std::size_t n) const
    {
        return m_pieces[n][0] == L'<' && m_pieces[n].compare(m_pieces[n].size() - 2, 2, L"/>") == 0;
    }
    bool IsOpening(std::size_t n) const { return m_pieces[n][0] == L'<' && !IsClosing(n); }

    std::wstring Join(std::size_t nFrom, std::size_t nTo) const
    {
        std::wstring strText;
        for (; nFrom < nTo; ++nFrom)
            strText += m_pieces[nFrom];
        return strText;
    }

    /// The first start tag at a piece or before it.
    std::size_t FindStart(std::size_t nPiece) const
    {
        while (nPiece > 0 && !IsOpening(nPiece))
            --nPiece;
        return nPiece;
    }

    /// The piece behind the element that begins with a piece.
    std::size_t FindEnd(std::size_t nPiece) const
    {
        int nOpen = 0;
        do
            nOpen += IsClosing(nPiece) ? -1 : IsOpening(nPiece) && !IsEmpty(nPiece) ? 1 : 0;
        while (++nPiece < m_pieces.size() && nOpen > 0);
        return nPiece;
    }

    std::wstring Value()
    {
        const wchar_t* const values[] = {L"",
                                         L" 7 ",
                                         L"x y",
                                         L"-1.50",
                                         L"true",
                                         L"0",
                                         L"-1",
                                         L"1e999",
                                         L"2000-02-30",
                                         L"0000-01-01",
                                         L"P1Y",
                                         L"NaN",
                                         L"&lt;",
                                         L"p:q",
                                         L"+1",
                                         L"2001-10-10",
                                         L"12345678901234567890",
                                         L"AA:a",
                                         L"1 2 3",
                                         L"&#13;",
                                         L"&#x10FFFF;",
                                         L"=",
                                         L"AB==",
                                         L"0.5",
                                         L"2147483648"};
        return m_decisions.OneOf(values);
    }

    void Rename(std::size_t nBegin, std::size_t nEnd)
    {
        const std::wstring& strTag = m_pieces[nBegin];
        const std::size_t nName = std::min(strTag.find_first_of(L" />", 1), strTag.size());
        const std::wstring strOld = strTag.substr(1, nName - 1);
        const std::size_t nColon = strOld.find(L':');
        const std::wstring strPrefix = nColon == std::wstring::npos ? L"" : strOld.substr(0, nColon + 1);
        const wchar_t* const names[] = {L"a", L"time", L"name", L"line", L"entry", L"int", L"string"};
        const std::wstring strNew =
            m_decisions.Bool() ? strPrefix + m_decisions.OneOf(names) : strOld.substr(nColon + 1);
        m_pieces[nBegin].replace(1, strOld.size(), strNew);
        if (nEnd - nBegin > 1)
            m_pieces[nEnd - 1] = L"</" + strNew + L">";
    }

    void ChangeAttributes(std::wstring& strTag)
    {
        std::vector<std::size_t> equals;
        for (std::size_t n = strTag.find(L"=\""); n != std::wstring::npos; n = strTag.find(L"=\"", n + 2))
            equals.push_back(n);
        const std::size_t nEnd = strTag.find_last_not_of(L"/>") + 1;
        const std::size_t nWhat = m_decisions.Below(5);
        if (equals.empty() || nWhat == 0)
        {
            const wchar_t* const added[] = {
                L" number=\"7\"",
                L" unknown=\"7\"",
                L" xsi:type=\"AA:Person\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"",
                L" xsi:nil=\"true\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"",
                L" xsi:nil=\"1\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"",
                L" o:o=\"7\" xmlns:o=\"urn:o\"",
                L" xml:lang=\"de\"",
                L" a-int=\" 7 \"",
                L" xsi:schemaLocation=\"a b\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"",
            };
            strTag.insert(nEnd, m_decisions.OneOf(added));
            return;
        }
        const std::size_t nEquals = equals[m_decisions.Below(equals.size())];
        const std::size_t nBehind = strTag.find(L'"', nEquals + 2);
        const std::size_t nBlank = strTag.rfind(L' ', nEquals);
        if (nWhat == 1)
            strTag.erase(nBlank, nBehind + 1 - nBlank);
        else if (nWhat == 2)
            strTag.insert(nBlank + 1, L"z");
        else
            strTag.replace(nEquals + 2, nBehind - nEquals - 2, Value());
    }

    fuzz::CDecisions& m_decisions;
    std::vector<std::wstring> m_pieces;
};

/// What is written of an object that was read, or why it was not.
template <class TRead>
std::wstring Outcome(TRead Read)
{
    std::wstring strText;
    const std::wstring strFailure = fuzz::Failure(
        [&]
        {
            const fuzz::CObject spObject = Read();
            strText = spObject->ToXml(false, false, EOLType_LF, CXmlSerializationContext());
        });
    return strFailure.empty() ? strText : strFailure;
}

fuzz::CObject ReadCompiled(const fuzz::SClasses& classes, std::string strBytes)
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
    fuzz::CObject spObject = classes.pfnMakeRoot(document.GetDocumentElement());
    if (spObject == nullptr)
        throw CQvException(L"There is no class");
    spObject->FromXmlElement(document.GetDocumentElement(), context);
    return spObject;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    fuzz::CDecisions decisions(pData, nSize);
    // The mistake is decided about first, so that small changes of an input change it.
    fuzz::CDecisions mistake(pData, std::min<std::size_t>(nSize, 24));
    decisions.Bytes(24);
    const std::size_t nClasses = decisions.Below(fuzz::s_nClasses);
    const fuzz::SClasses& classes = fuzz::s_classes[nClasses];
    std::wstring strXml;
    const fuzz::CObject spObject = classes.pfnMake(decisions);
    const CXmlSerializationContext context;
    if (!fuzz::Succeeds([&] { strXml = spObject->ToXml(false, false, EOLType_LF, context); }))
        return 0;
    const std::size_t nMistakes = mistake.Below(3);
    for (std::size_t n = 0; n < nMistakes; ++n)
        strXml = CMistake(strXml, mistake).Make();
    std::string strBytes;
    AppendUtf8(strBytes, strXml);

    const std::wstring strCompiled = Outcome([&] { return ReadCompiled(classes, strBytes); });
    std::wstring strInMemory = Outcome([&] { return ModelOf(nClasses).Read(strBytes); });
    // Where there is no class at all, the check says more.
    if (strCompiled == L"refused: There is no class")
        strInMemory.resize(std::min(strInMemory.size(), strCompiled.size()));
    fuzz::RequireSame(strInMemory, strCompiled, "classes in memory say what compiled ones say");
    return 0;
}
