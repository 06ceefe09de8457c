#include "tests/reliability/FaultOperations.h"

#include "Gpx.h"
#include "Invoice.h"
#include "Order.h"
#include "Settings.h"
#include "quiver/QvXmlLib.h"
#include "tests/support/Files.h"
#include "tests/support/ToolRun.h"
#include "tools/quiver-gen/Generator.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>

using namespace QvXmlLib9;

namespace faults
{

namespace
{

namespace fs = std::filesystem;

const fs::path s_examples = fs::path(QUIVER_SOURCE_DIR) / "examples";

std::string ReadExample(const char* lpcFile)
{
    return QvTest::ReadFileBytes(s_examples / lpcFile);
}

std::string Narrow(const std::wstring& strText)
{
    std::string strUtf8;
    AppendUtf8(strUtf8, strText);
    return strUtf8;
}

std::string ToString(const CBinaryData& data)
{
    return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

/// An example's class and document.
struct SExample
{
    const char* lpcName;
    const char* lpcDocument;
    const char* lpcSchema;
    CSmartPtr<CXmlObjectBase> (*pfnCreate)();
};

template <class TRoot>
CSmartPtr<CXmlObjectBase> Create()
{
    return new TRoot;
}

const SExample s_order = {"purchase order", "purchase_order/order.xml", "purchase_order/order.xsd",
                          Create<order::CPurchaseOrder>};
const SExample s_invoice = {"invoice", "invoice/invoice.xml", "invoice/invoice.xsd", Create<invoice::CInvoice>};
const SExample s_gpx = {"GPX", "gpx_track/track.gpx", "gpx_track/gpx.xsd", Create<gpx::CGpx>};
const SExample s_settings = {"open content", "open_content/settings.xml", "open_content/settings.xsd",
                             Create<settings::CSettings>};

const CXmlSerializationContext& Context()
{
    return CXmlSerializationContext::GetDefaultContext();
}

CSmartPtr<CXmlObjectBase> Load(const SExample& example)
{
    const CSmartPtr<CXmlObjectBase> spObject = example.pfnCreate();
    spObject->FromXmlFile((s_examples / example.lpcDocument).wstring().c_str(), Context());
    return spObject;
}

std::string ToText(const CXmlObjectBase& object)
{
    return Narrow(object.ToXml(true, true, EOLType_LF, Context()));
}

/// A document of open content that is longer than a chunk of overlapped input, and than what is written at once.
std::string MakeLong()
{
    std::string strText =
        "<settings xmlns='urn:example:settings' version='1'><title>long</title><plugin id='p'><enabled>1</enabled><x:p "
        "xmlns:x='urn:x'/></plugin>";
    for (int n = 0; n < 12000; ++n)
        strText += "<x:item xmlns:x='urn:x' n='" + std::to_string(n) + "'/>";
    return strText + "</settings>";
}

// --- Operations of the library ------------------------------------------------------------------------------------------

SOperation FromFile(const char* lpcName, const SExample& example,
                    std::function<std::string(const CXmlObjectBase& object)> fnBytes, bool bOverlapped)
{
    SOperation operation;
    operation.lpcName = lpcName;
    operation.fnPrepare = [&example, fnBytes](const fs::path& folder)
    {
        QvTest::WriteFileBytes(folder / "in", fnBytes(*Load(example)));
    };
    operation.fnRun = [&example, bOverlapped](const fs::path& folder)
    {
        AsyncFromXmlFile(bOverlapped);
        const CSmartPtr<CXmlObjectBase> spObject = example.pfnCreate();
        spObject->FromXmlFile((folder / "in").wstring().c_str(), Context());
        return SResult{true, ToText(*spObject), {}};
    };
    return operation;
}

SOperation FromLongFile()
{
    SOperation operation = FromFile(
        "FromXmlFile, overlapped, of several chunks", s_settings, [](const CXmlObjectBase&) { return MakeLong(); },
        true);
    operation.bLong = true;
    return operation;
}

/// Writes an object to the file "out"; its bytes are the result.
SOperation ToFile(const char* lpcName, const SExample& example,
                  std::function<void(const CXmlObjectBase& object, const wchar_t* lpctFile)> fnWrite, bool bOverlapped)
{
    SOperation operation;
    operation.lpcName = lpcName;
    operation.fnPrepare = [](const fs::path&) {
    };
    operation.fnRun = [&example, fnWrite, bOverlapped](const fs::path& folder)
    {
        const CSmartPtr<CXmlObjectBase> spObject = Load(example);
        AsyncToXmlFile(bOverlapped);
        fnWrite(*spObject, (folder / "out").wstring().c_str());
        AsyncToXmlFile(false);
        return SResult();
    };
    return operation;
}

SOperation ToLongFile()
{
    SOperation operation;
    operation.lpcName = "ToXmlFile, overlapped, of several writes";
    operation.bHasOutput = true;
    operation.fnPrepare = [](const fs::path&) {
    };
    operation.fnRun = [](const fs::path& folder)
    {
        const CSmartPtr<CXmlObjectBase> spObject = Create<settings::CSettings>();
        spObject->FromXml(MakeLong().c_str(), Context());
        AsyncToXmlFile(true);
        spObject->ToXmlFile((folder / "out").wstring().c_str(), true, true, Encoding_UTF16, EOLType_LF, Context(),
                            Compression_None);
        AsyncToXmlFile(false);
        return SResult();
    };
    operation.bLong = true;
    return operation;
}

// --- Operations in memory -----------------------------------------------------------------------------------------------

SOperation InMemory(const char* lpcName, std::function<std::string()> fnRun)
{
    SOperation operation;
    operation.lpcName = lpcName;
    operation.fnPrepare = [](const fs::path&) {
    };
    operation.fnRun = [fnRun](const fs::path&)
    {
        return SResult{true, fnRun(), {}};
    };
    operation.bUsesFiles = false;
    return operation;
}

/// Reading an example from text and from Fast Infoset, writing it as either and compressed.
void AddExample(std::vector<SOperation>& operations, const SExample& example, const char* const (&names)[6])
{
    const auto Text = [&example]
    {
        return ReadExample(example.lpcDocument);
    };
    operations.push_back(InMemory(names[0],
                                  [&example, strText = Text()]
                                  {
                                      const CSmartPtr<CXmlObjectBase> spObject = example.pfnCreate();
                                      spObject->FromXml(strText.c_str(), Context());
                                      return ToText(*spObject);
                                  }));
    operations.push_back(InMemory(names[1],
                                  [&example, strText = Text()]
                                  {
                                      // The declaration names the encoding of the octets.
                                      std::wstring strUnits;
                                      AppendUtf8AsUtf16(strUnits,
                                                        std::string_view(strText).substr(strText.find("?>") + 2));
                                      const CSmartPtr<CXmlObjectBase> spObject = example.pfnCreate();
                                      spObject->FromXml(strUnits.c_str(), Context());
                                      return ToText(*spObject);
                                  }));
    operations.push_back(InMemory(names[2],
                                  [&example]
                                  {
                                      const CSmartPtr<CXmlObjectBase> spObject = Load(example);
                                      return ToString(
                                          spObject->ToFastInfosetStream(FInfoDecl_V10, Context(), Compression_None));
                                  }));
    // The first run makes what it reads: a process that is to be fresh has not done so before.
    operations.push_back(InMemory(names[3],
                                  [&example, pBytes = std::make_shared<std::string>()]
                                  {
                                      std::string& strBytes = *pBytes;
                                      if (strBytes.empty())
                                          strBytes = ToString(Load(example)->ToFastInfosetStream(
                                              FInfoDecl_None, Context(), Compression_None));
                                      const CSmartPtr<CXmlObjectBase> spObject = example.pfnCreate();
                                      spObject->FromXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                                                              static_cast<unsigned long>(strBytes.size()), Context());
                                      return ToText(*spObject);
                                  }));
    operations.push_back(InMemory(names[4],
                                  [&example]
                                  {
                                      const CSmartPtr<CXmlObjectBase> spObject = Load(example);
                                      const CBinaryData data = spObject->ToXmlStream(
                                          true, false, Encoding_UTF8, EOLType_LF, Context(), Compression_GZip);
                                      const CSmartPtr<CXmlObjectBase> spAgain = example.pfnCreate();
                                      spAgain->FromXmlStream(data, Context());
                                      return ToText(*spAgain);
                                  }));
    // A message for each level: the document ends in the middle, or has a value that is none.
    operations.push_back(InMemory(names[5],
                                  [&example, strText = Text()]
                                  {
                                      int nRefused = 0;
                                      for (const bool bCut : {true, false})
                                      {
                                          std::string strWrong = strText;
                                          const std::size_t nMiddle = strWrong.find('>', strWrong.size() / 2) + 1;
                                          if (bCut)
                                              strWrong.resize(nMiddle);
                                          else
                                              strWrong.insert(nMiddle, "<wrong/>");
                                          const CSmartPtr<CXmlObjectBase> spObject = example.pfnCreate();
                                          try
                                          {
                                              spObject->FromXml(strWrong.c_str(), Context());
                                          }
                                          catch (const CQvException& exception)
                                          {
                                              nRefused += exception.GetFullMessage().empty() ? 0 : 1;
                                          }
                                      }
                                      return std::to_string(nRefused) + " refused";
                                  }));
}

// --- Operations of the tools --------------------------------------------------------------------------------------------

/// All files of a folder with their names.
std::string ReadFolder(const fs::path& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& file : fs::recursive_directory_iterator(folder))
        if (file.is_regular_file())
            files[fs::relative(file.path(), folder).string()] = QvTest::ReadFileBytes(file.path());
    std::string strAll;
    for (const auto& [strName, strText] : files)
        strAll += "--- " + strName + '\n' + strText;
    return strAll;
}

SOperation Fi(const char* lpcName, std::vector<std::string> arguments, std::function<std::string()> fnInput)
{
    SOperation operation;
    operation.lpcName = lpcName;
    operation.bHasOutput = arguments.front() != "inspect";
    operation.fnPrepare = [fnInput](const fs::path& folder)
    {
        QvTest::WriteFileBytes(folder / "in", fnInput());
    };
    operation.fnRun = [arguments](const fs::path& folder)
    {
        std::vector<std::string> all = arguments;
        all.push_back((folder / "in").string());
        if (arguments.front() != "inspect")
            all.push_back((folder / "out").string());
        const QvTest::SToolRun run = QvTest::RunTool(all);
        return SResult{run.nStatus == 0, run.strOut, run.strErr};
    };
    return operation;
}

/// What was there before: nothing, other texts, or some of the same.
enum class EBefore
{
    Nothing,
    Others,
    Same
};

SResult RunGen(const std::vector<std::string>& arguments)
{
    std::ostringstream out;
    std::ostringstream err;
    const int nStatus = quiver_gen::RunGenerator(arguments, out, err);
    return {nStatus == 0, out.str(), nStatus == 0 ? "" : err.str()};
}

SOperation Gen(const char* lpcName, const char* lpcSchema, EBefore eBefore)
{
    SOperation operation;
    operation.lpcName = lpcName;
    const auto Arguments = [lpcSchema](const fs::path& folder)
    {
        return std::vector<std::string>{(s_examples / lpcSchema).string(), "-o", (folder / "out").string(), "--factory",
                                        "f::CRoots"};
    };
    operation.fnPrepare = [eBefore, Arguments](const fs::path& folder)
    {
        if (eBefore == EBefore::Nothing)
            return;
        RunGen(Arguments(folder));
        if (eBefore == EBefore::Others)
            for (const auto& file : fs::directory_iterator(folder / "out"))
                QvTest::WriteFileBytes(file.path(), "// other text\n");
    };
    operation.fnRun = [Arguments](const fs::path& folder)
    {
        return RunGen(Arguments(folder));
    };
    operation.bReplacesWhole = true;
    operation.bHasOutput = true;
    return operation;
}

SOperation GenCheck()
{
    SOperation operation;
    operation.lpcName = "quiver-gen --check";
    operation.fnPrepare = [](const fs::path&) {
    };
    operation.fnRun = [](const fs::path&)
    {
        return RunGen(
            {(s_examples / "invoice/invoice.xsd").string(), "--check", (s_examples / "invoice/invoice.xml").string()});
    };
    return operation;
}

void Write(const CXmlObjectBase& object, const wchar_t* lpctFile, XmlEncoding eEncoding, CompressionType eCompression)
{
    object.ToXmlFile(lpctFile, true, true, eEncoding, EOLType_LF, Context(), eCompression);
}

std::vector<SOperation> MakeOperations()
{
    const auto AsText = [](const CXmlObjectBase& object)
    {
        return ToString(object.ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, Context(), Compression_None));
    };
    const auto AsUtf16 = [](const CXmlObjectBase& object)
    {
        return "\xFF\xFE" +
               ToString(object.ToXmlStream(true, true, Encoding_UTF16, EOLType_LF, Context(), Compression_None));
    };
    const auto AsZipped = [](const CXmlObjectBase& object)
    {
        return ToString(object.ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, Context(), Compression_GZip));
    };
    const auto AsInfoset = [](const CXmlObjectBase& object)
    {
        return ToString(object.ToFastInfosetStream(FInfoDecl_None, Context(), Compression_None));
    };
    std::vector<SOperation> operations = {
        FromFile("FromXmlFile", s_invoice, AsText, false),
        FromFile("FromXmlFile, overlapped", s_invoice, AsText, true),
        FromFile("FromXmlFile, overlapped, UTF-16", s_order, AsUtf16, true),
        FromFile("FromXmlFile, gzip", s_invoice, AsZipped, false),
        FromFile("FromXmlFile, Fast Infoset", s_gpx, AsInfoset, false),
        FromLongFile(),
        ToFile(
            "ToXmlFile", s_invoice,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { Write(object, lpctFile, Encoding_UTF8, Compression_None); },
            false),
        ToFile(
            "ToXmlFile, UTF-16", s_settings,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { Write(object, lpctFile, Encoding_UTF16, Compression_None); },
            false),
        ToFile(
            "ToXmlFile, gzip", s_invoice,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { Write(object, lpctFile, Encoding_UTF8, Compression_GZip); },
            false),
        ToFile(
            "ToXmlFile, overlapped", s_invoice,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { Write(object, lpctFile, Encoding_UTF8, Compression_None); },
            true),
        ToFile(
            "ToXmlFile, overlapped, UTF-16", s_order,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { Write(object, lpctFile, Encoding_UTF16, Compression_None); },
            true),
        ToLongFile(),
        ToFile(
            "ToFastInfosetFile", s_invoice,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { object.ToFastInfosetFile(lpctFile, FInfoDecl_V10, Context(), Compression_None); },
            false),
        ToFile(
            "ToFastInfosetFile, gzip", s_gpx,
            [](const CXmlObjectBase& object, const wchar_t* lpctFile)
            { object.ToFastInfosetFile(lpctFile, FInfoDecl_None, Context(), Compression_GZip); },
            false),
        Fi("quiver-fi encode", {"encode"}, [] { return ReadExample("invoice/invoice.xml"); }),
        Fi("quiver-fi encode --gzip", {"encode", "--gzip", "--suggested-values"},
           [] { return ReadExample("gpx_track/track.gpx"); }),
        Fi("quiver-fi decode", {"decode"}, [AsInfoset] { return AsInfoset(*Load(s_invoice)); }),
        Fi("quiver-fi inspect", {"inspect", "--full"}, [AsInfoset] { return AsInfoset(*Load(s_order)); }),
        Gen("quiver-gen, purchase order", s_order.lpcSchema, EBefore::Nothing),
        Gen("quiver-gen, over other files", s_order.lpcSchema, EBefore::Others),
        Gen("quiver-gen, over the same files", s_order.lpcSchema, EBefore::Same),
        GenCheck(),
    };
    for (const char* const lpcSchema : {s_invoice.lpcSchema, s_gpx.lpcSchema, s_settings.lpcSchema})
    {
        operations.push_back(Gen(lpcSchema, lpcSchema, EBefore::Nothing));
        operations.back().bLong = true;
    }
    AddExample(operations, s_order,
               {"order, from octets", "order, from units", "order, to Fast Infoset", "order, from Fast Infoset",
                "order, gzip", "order, refused"});
    AddExample(operations, s_invoice,
               {"invoice, from octets", "invoice, from units", "invoice, to Fast Infoset", "invoice, from Fast Infoset",
                "invoice, gzip", "invoice, refused"});
    AddExample(operations, s_gpx,
               {"GPX, from octets", "GPX, from units", "GPX, to Fast Infoset", "GPX, from Fast Infoset", "GPX, gzip",
                "GPX, refused"});
    AddExample(operations, s_settings,
               {"open content, from octets", "open content, from units", "open content, to Fast Infoset",
                "open content, from Fast Infoset", "open content, gzip", "open content, refused"});
    return operations;
}

} // namespace

const std::vector<SOperation>& GetOperations()
{
    static const std::vector<SOperation> s_operations = MakeOperations();
    return s_operations;
}

void AddOutput(const SOperation& operation, const fs::path& folder, SResult& result)
{
    if (!operation.bHasOutput || !result.bSucceeded)
        return;
    const fs::path out = folder / "out";
    result.strResult += fs::is_directory(out) ? ReadFolder(out) : QvTest::ReadFileBytes(out);
}

bool IsLong()
{
    const char* const lpcForm = std::getenv("QUIVER_FAULTS");
    return lpcForm != nullptr && std::string_view(lpcForm) == "long";
}

void ResetSwitches()
{
    AsyncFromXmlFile(false);
    AsyncToXmlFile(false);
}

} // namespace faults
