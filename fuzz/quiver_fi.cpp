// Any bytes as a Fast Infoset document for quiver-fi: listed, and if it can be read, encoded again and read as it was.

#include "fuzz/FuzzInput.h"

#include "tools/quiver-fi/InfosetSource.h"
#include "tools/quiver-fi/Inspector.h"
#include "tools/quiver-fi/TreeSinks.h"
#include "tools/quiver-fi/TreeWriter.h"

#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/foundation/BinaryStream.h"

#include <sstream>
#include <stdexcept>

using namespace QvXmlLib9;
using quiver_fi::CDocument;
using quiver_fi::CNamespacePlan;

namespace
{

/// Streams of a program that nobody listens to.
struct SNoStreams
{
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    quiver_fi::SStreams streams{in, out, err};
};

/// Tells a document in full, but for prefixes: of names, and of the one kind of value that is rewritten with them.
class CRecordingSink : public quiver_fi::ITreeSink
{
public:
    explicit CRecordingSink(const CDocument& document)
        : m_document(document)
    {
    }

    const std::string& GetRecord() const { return m_strRecord; }

    void StartElement(CDocument::NameId dwName, bool bInline) override
    {
        m_strRecord += (bInline ? "\n<" : "\n[") + m_document.Show(dwName);
        m_bText = false;
    }
    void WriteAttribute(CDocument::NameId dwName, std::string_view svValue) override
    {
        const std::string strName = m_document.Show(dwName);
        m_strRecord += "\n " + strName + '=';
        if (strName.compare(0, 6, "type {") != 0)
            m_strRecord += svValue;
    }
    void WriteText(std::string_view svText) override
    {
        m_strRecord += m_bText ? "" : "\n:";
        m_strRecord += svText;
        m_bText = true;
    }
    void EndElement() override
    {
        m_strRecord += "\n>";
        m_bText = false;
    }

private:
    const CDocument& m_document;
    std::string m_strRecord;
    bool m_bText = false;
};

std::string Show(const CDocument& document)
{
    SNoStreams none;
    CRecordingSink sink(document);
    quiver_fi::WriteTree(document, CNamespacePlan(document, CNamespacePlan::EForm::FastInfoset), sink, none.streams);
    return sink.GetRecord();
}

std::string Write(const CDocument& document, bool bSuggestedValues)
{
    CFastInfosetContext context;
    if (bSuggestedValues)
        context.SetSuggestedValues();
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_None);
    const CNamespacePlan plan(document, CNamespacePlan::EForm::FastInfoset);
    quiver_fi::CFastInfosetSink sink(document, plan, writer, bSuggestedValues);
    SNoStreams none;
    quiver_fi::WriteTree(document, plan, sink, none.streams);
    writer.WriteTerminator();
    writer.Close();
    const CBinaryData data = stream.GetData();
    return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

void Read(std::string_view octets, CDocument& document)
{
    SNoStreams none;
    quiver_fi::ReadInfoset(octets, document, none.streams);
}

/// False if the action refuses what it gets. Other exceptions than the documented ones are faults.
template <class FnAction>
bool Succeeds(FnAction&& fnAction)
{
    try
    {
        fnAction();
        return true;
    }
    catch (const std::runtime_error&)
    {
        return false;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view octets(reinterpret_cast<const char*>(pData), nSize);
    SNoStreams none;
    Succeeds([&] { quiver_fi::Inspect(octets, false, none.streams); });
    CDocument document;
    if (!Succeeds([&] { Read(octets, document); }))
        return 0;
    for (const bool bSuggestedValues : {false, true})
    {
        std::string strOctets;
        if (!Succeeds([&] { strOctets = Write(document, bSuggestedValues); }))
            return 0;
        CDocument again;
        Read(strOctets, again);
        fuzz::Require(Show(again) == Show(document), "what is written is read as it was");
        fuzz::Require(Write(again, bSuggestedValues) == strOctets, "what is read is written as it was");
    }
    return 0;
}
