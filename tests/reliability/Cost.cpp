// Feeds each entry point of the library and of its tools documents and schemas of doubled length, in many shapes, and fails where
// instructions or memory at their most grow faster than n log n. scripts/check_cost.sh runs it under the counter that the machine has.

#include "tests/reliability/Cost.h"

#include "quiver/QvXmlLib.h"
#include "quiver/foundation/QvZip.h"
#include "tests/support/ToolRun.h"
#include "tools/quiver-gen/Generator.h"
#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/check/Model.h"
#include "tools/quiver-gen/schema/Loader.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string_view>
#include <unistd.h>

using namespace QvXmlLib9;
using namespace cost;

namespace
{

/// Growth up to this power of the length passes: n log n has 1.1 to 1.2 at the lengths measured, n times the root of n has 1.5.
constexpr double s_dMostPower = 1.35;

/// Growth that is meant, each with the bound that docs/limits.md states for it.
struct SKnown
{
    const char* lpcEntry; ///< begins with this
    const char* lpcShape;
    double dMostPower;
};
const SKnown s_known[] = {
    // An attribute is looked for among all of its element, here for each of them.
    {"asking a tree", "attributes of one element", 2.2},
    {"asking a tree", "attributes of the same letters", 2.2},
    {"asking a tree", "prefixed attributes of one element", 2.2},
    // Every type has the patterns of all that it comes from.
    {"quiver-gen --check", "patterns in depth", 2.2},
    // The values of each union are tested against all unions below it, of which there are 500 at most.
    {"quiver-gen", "enumerated unions in unions", 2.2},
    // A group's class is named after all groups around it, of which there are 500 at most.
    {"quiver-gen", "choices and sequences by turns", 2.2},
};

struct SOptions
{
    ECounter eCounter = ECounter::None;
    int nDoublings = 2;
    std::size_t nScale = 1; ///< the first length, in multiples of the quick one
    std::string strFilter;
    std::string strEntry;
    int nPart = 0;
    int nParts = 1;
    bool bQuick = false;
    bool bList = false;
    bool bVerbose = false;
};

// --- Files ------------------------------------------------------------------------------------------------------------

class CFolder
{
public:
    CFolder()
    {
        std::random_device random;
        do
            m_path = std::filesystem::temp_directory_path() / ("quiver-cost-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    ~CFolder() { std::filesystem::remove_all(m_path); }
    CFolder(const CFolder&) = delete;
    CFolder& operator=(const CFolder&) = delete;

    std::string PathOf(const std::string& strName) const { return (m_path / strName).string(); }
    std::wstring NameOf(const std::string& strName) const { return (m_path / strName).wstring(); }
    void Write(const std::string& strName, std::string_view bytes) const
    {
        std::ofstream stream(m_path / strName, std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::filesystem::path m_path;
};

const CFolder& Folder()
{
    static const CFolder s_folder;
    return s_folder;
}

// --- Entry points of documents ----------------------------------------------------------------------------------------

/// A document and what is made of it ahead of the measuring.
struct SCase
{
    std::string strDocument;
    CXmlSerializationContext context;
    bool bRefused = false;
    std::function<CSmartPtr<CXmlObjectBase>()> fnCreate;
    std::size_t nOutput = 0; ///< bytes that came out, where some do
};

using FnRun = std::function<void()>;

struct SEntry
{
    const char* lpcName;
    bool bQuick; ///< also measured in the quick form
    /// Prepares, and gives the action to be measured.
    std::function<FnRun(SCase& test)> fnPrepare;
};

[[noreturn]] void Fail(const std::string& strWhat)
{
    throw std::runtime_error(strWhat);
}

std::string Narrow(const std::wstring& strText)
{
    std::string strUtf8;
    AppendUtf8(strUtf8, strText);
    return strUtf8;
}

/// Runs what may be refused, when and only when the shape says so.
template <class TAction>
void Attempt(const SCase& test, TAction action)
{
    bool bRefused = false;
    try
    {
        action();
    }
    catch (const CQvException& exception)
    {
        if (!test.bRefused)
            throw;
        bRefused = !exception.GetFullMessage().empty();
    }
    if (test.bRefused && !bRefused)
        Fail("the document was not refused");
}

unsigned char* BytesOf(std::string& strBytes)
{
    return reinterpret_cast<unsigned char*>(strBytes.data());
}

void LoadBytes(CXmlDocument& document, std::string& strBytes)
{
    document.LoadXmlStream(BytesOf(strBytes), static_cast<unsigned long>(strBytes.size()));
}

FnRun ReadTree(SCase& test)
{
    return [&test]
    {
        CXmlDocument document(test.context);
        LoadBytes(document, test.strDocument);
    };
}

/// A filter keeps documents from the scanner.
FnRun ReadTreeByExpat(SCase& test)
{
    return [&test]
    {
        CXmlDocument document([](CXmlElement*) { return false; }, test.context);
        LoadBytes(document, test.strDocument);
    };
}

/// Every element is dropped once it is complete.
FnRun ReadFiltered(SCase& test)
{
    return [&test]
    {
        CXmlDocument document([](CXmlElement*) { return true; }, test.context);
        LoadBytes(document, test.strDocument);
    };
}

FnRun ReadText(SCase& test)
{
    auto strText = std::make_shared<std::wstring>();
    // Other encodings than UTF-8 make no text of the library; the document is then read as the letters of its octets.
    if (!AppendUtf8AsUtf16(*strText, test.strDocument) || test.strDocument.find("encoding=") != std::string::npos)
        return nullptr;
    return [&test, strText]
    {
        CXmlDocument document(test.context);
        document.LoadXml(strText->c_str());
    };
}

FnRun ReadFile(SCase& test)
{
    Folder().Write("document", test.strDocument);
    return [&test]
    {
        CXmlDocument document(test.context);
        document.Load(Folder().NameOf("document").c_str());
    };
}

FnRun ReadOverlapped(SCase& test)
{
    Folder().Write("document", test.strDocument);
    return [&test]
    {
        AsyncFromXmlFile(true);
        CXmlDocument document(test.context);
        document.Load(Folder().NameOf("document").c_str());
        AsyncFromXmlFile(false);
    };
}

/// The values of all nodes of a tree, asked for one after the other.
FnRun AskTree(SCase& test)
{
    auto spDocument = std::make_shared<CXmlDocument>(test.context);
    LoadBytes(*spDocument, test.strDocument);
    return [spDocument]
    {
        std::vector<CXmlElement*> open{spDocument->GetDocumentElement()};
        while (!open.empty())
        {
            CXmlElement* const pElement = open.back();
            open.pop_back();
            pElement->GetText();
            pElement->GetNamespaceURI();
            for (const CXmlAttribute* pAttribute : pElement->GetAttributes())
                pElement->GetAttribute(pAttribute->GetLocalName(), pAttribute->GetNamespaceURI());
            for (CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr;
                 pChild = pChild->GetNextSiblingElement())
                open.push_back(pChild);
        }
    };
}

void Read(SCase& test, CXmlObjectBase& object)
{
    object.FromXmlStream(BytesOf(test.strDocument), static_cast<unsigned long>(test.strDocument.size()), test.context);
}

FnRun ReadObject(SCase& test)
{
    return [&test]
    {
        const CSmartPtr<CXmlObjectBase> spObject = test.fnCreate();
        Attempt(test, [&] { Read(test, *spObject); });
    };
}

/// An object that holds the document; null if it is refused.
CSmartPtr<CXmlObjectBase> MakeObject(SCase& test)
{
    if (test.bRefused)
        return nullptr;
    CSmartPtr<CXmlObjectBase> spObject = test.fnCreate();
    Read(test, *spObject);
    return spObject;
}

FnRun CloneObject(SCase& test)
{
    const CSmartPtr<CXmlObjectBase> spObject = MakeObject(test);
    auto* const pElement = dynamic_cast<CElement*>(static_cast<CXmlObjectBase*>(spObject));
    if (pElement == nullptr)
        return nullptr;
    return [spObject, pElement]
    {
        pElement->Clone();
    };
}

template <class TWrite>
FnRun WriteObject(SCase& test, TWrite write)
{
    const CSmartPtr<CXmlObjectBase> spObject = MakeObject(test);
    if (spObject == nullptr)
        return nullptr;
    return [&test, spObject, write]
    {
        test.nOutput = write(*spObject);
    };
}

FnRun WriteText(SCase& test)
{
    return WriteObject(test,
                       [&test](const CXmlObjectBase& object) {
                           return object
                               .ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, test.context, Compression_None)
                               .GetLength();
                       });
}

FnRun WriteFormatted(SCase& test)
{
    return WriteObject(test, [&test](const CXmlObjectBase& object)
                       { return object.ToXml(true, true, EOLType_CRLF, test.context).size(); });
}

FnRun WriteFile(SCase& test)
{
    return WriteObject(test,
                       [&test](const CXmlObjectBase& object)
                       {
                           object.ToXmlFile(Folder().NameOf("out").c_str(), true, false, Encoding_UTF16, EOLType_LF,
                                            test.context, Compression_None);
                           return std::filesystem::file_size(Folder().PathOf("out"));
                       });
}

FnRun WriteOverlapped(SCase& test)
{
    return WriteObject(test,
                       [&test](const CXmlObjectBase& object)
                       {
                           AsyncToXmlFile(true);
                           object.ToXmlFile(Folder().NameOf("out").c_str(), true, true, Encoding_UTF8, EOLType_LF,
                                            test.context, Compression_None);
                           AsyncToXmlFile(false);
                           return std::filesystem::file_size(Folder().PathOf("out"));
                       });
}

/// What hardly has a length cannot be made shorter, and is refused.
FnRun WriteZipped(SCase& test)
{
    const CSmartPtr<CXmlObjectBase> spObject = MakeObject(test);
    if (spObject == nullptr || spObject->ToXml(true, false, EOLType_LF, test.context).size() < 1000)
        return nullptr;
    return [&test, spObject]
    {
        spObject->ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, test.context, Compression_GZip);
    };
}

FnRun WriteInfoset(SCase& test)
{
    return WriteObject(
        test, [&test](const CXmlObjectBase& object)
        { return object.ToFastInfosetStream(FInfoDecl_None, test.context, Compression_None).GetLength(); });
}

/// What an object writes, read again.
template <class TWrite>
FnRun ReadWritten(SCase& test, TWrite write, bool bTree)
{
    const CSmartPtr<CXmlObjectBase> spObject = MakeObject(test);
    if (spObject == nullptr)
        return nullptr;
    const auto spData = std::make_shared<CBinaryData>(write(*spObject));
    test.nOutput = spData->GetLength();
    return [&test, spData, bTree]
    {
        if (!bTree)
        {
            test.fnCreate()->FromXmlStream(*spData, test.context);
            return;
        }
        CXmlDocument document(test.context);
        document.LoadXmlStream(const_cast<unsigned char*>(spData->GetData()), spData->GetLength());
    };
}

FnRun ReadInfoset(SCase& test, bool bTree)
{
    return ReadWritten(
        test,
        [&test](const CXmlObjectBase& object)
        { return object.ToFastInfosetStream(FInfoDecl_None, test.context, Compression_None); },
        bTree);
}

FnRun ReadZipped(SCase& test)
{
    const auto spData = std::make_shared<CBinaryData>();
    spData->Append(BytesOf(test.strDocument), static_cast<unsigned long>(test.strDocument.size()));
    CQvZip::Compress(*spData, Compression_GZip);
    return [&test, spData]
    {
        CXmlDocument document(test.context);
        document.LoadXmlStream(const_cast<unsigned char*>(spData->GetData()), spData->GetLength());
    };
}

/// quiver-fi from its standard input to its output.
FnRun RunFi(SCase& test, std::vector<std::string> arguments, std::string strInput)
{
    return [&test, arguments, strInput]
    {
        const QvTest::SToolRun run = QvTest::RunTool(arguments, strInput);
        if (run.nStatus != 0)
            Fail(run.strErr);
        test.nOutput = run.strOut.size();
    };
}

std::optional<std::string> Encoded(const SCase& test)
{
    if (test.context.GetSchemaType() == SchemaType_NoNamespaces)
        return std::nullopt;
    const QvTest::SToolRun run = QvTest::RunTool({"encode", "-", "-"}, test.strDocument);
    if (run.nStatus != 0)
        Fail(run.strErr);
    return run.strOut;
}

FnRun Encode(SCase& test)
{
    return test.context.GetSchemaType() == SchemaType_NoNamespaces
               ? nullptr
               : RunFi(test, {"encode", "--suggested-values", "-", "-"}, test.strDocument);
}

FnRun Decode(SCase& test)
{
    const std::optional<std::string> strInfoset = Encoded(test);
    return strInfoset ? RunFi(test, {"decode", "-", "-"}, *strInfoset) : nullptr;
}

FnRun Inspect(SCase& test)
{
    const std::optional<std::string> strInfoset = Encoded(test);
    return strInfoset ? RunFi(test, {"inspect", "--full", "-"}, *strInfoset) : nullptr;
}

const SEntry s_entries[] = {
    {"tree", true, ReadTree},
    {"tree by expat", true, ReadTreeByExpat},
    {"tree, filtered", false, ReadFiltered},
    {"tree of text", false, ReadText},
    {"tree of a file", false, ReadFile},
    {"tree of a file, overlapped", true, ReadOverlapped},
    {"asking a tree", true, AskTree},
    {"objects", true, ReadObject},
    {"copies of objects", false, CloneObject},
    {"writing", true, WriteText},
    {"writing formatted", false, WriteFormatted},
    {"writing a file", false, WriteFile},
    {"writing a file, overlapped", false, WriteOverlapped},
    {"writing gzip", false, WriteZipped},
    {"writing Fast Infoset", true, WriteInfoset},
    {"tree of Fast Infoset", true,
     [](SCase& test)
     {
         return ReadInfoset(test, true);
     }},
    {"objects of Fast Infoset", false,
     [](SCase& test)
     {
         return ReadInfoset(test, false);
     }},
    {"tree of gzip", false, ReadZipped},
    {"quiver-fi encode", true, Encode},
    {"quiver-fi decode", true, Decode},
    {"quiver-fi inspect", true, Inspect},
};

/// The entry points that have to do with classes.
bool IsForTypes(const std::string& strEntry)
{
    for (const char* const lpcName :
         {"objects", "writing", "writing formatted", "writing Fast Infoset", "objects of Fast Infoset"})
        if (strEntry == lpcName)
            return true;
    return false;
}

// --- Judgement --------------------------------------------------------------------------------------------------------

struct SPoint
{
    double dLength;
    double dSteps;
    double dBytes;
};

/// The power of the length that the last doubling grew by, told from what was added: what is there at any length is left out.
double GetPower(const std::vector<SPoint>& points, double SPoint::*pField, std::size_t nLast)
{
    const SPoint& a = points[nLast - 2];
    const SPoint& b = points[nLast - 1];
    const SPoint& c = points[nLast];
    const double dBefore = b.*pField - a.*pField;
    const double dNow = c.*pField - b.*pField;
    // Where most is there at any length, the steps of buffers and tables weigh more than the growth: longer documents tell that.
    if (dNow < c.*pField / 4)
        return 0;
    const double dLengths = std::log2((c.dLength - b.dLength) / (b.dLength - a.dLength));
    return std::log2(dNow / std::max(dBefore, c.*pField / 100)) / dLengths;
}

/// Whether more memory than this came with it: less is buffers that are there for any document.
constexpr double s_dFewBytes = 65536;

class CJudge
{
public:
    explicit CJudge(const SOptions& options)
        : m_options(options)
    {
    }

    /// Measures at doubled counts, and further ones where the growth looks wrong. What does not apply, or is beyond a bound,
    /// has no measure.
    /// @param bQuick whether the quick form wants it too.
    void Judge(bool bQuick, const std::string& strEntry, const std::string& strShape, std::size_t nStart,
               const std::function<std::optional<SPoint>(std::size_t)>& fnMeasure)
    {
        if ((m_options.bQuick && !bQuick) || !IsWanted(strEntry, strShape))
            return;
        if (m_options.bList)
        {
            std::printf("%s: %s\n", strEntry.c_str(), strShape.c_str());
            return;
        }
        try
        {
            std::vector<SPoint> points;
            std::size_t nCount = nStart * m_options.nScale;
            int nSuspicions = 0;
            for (int n = 0; n <= m_options.nDoublings || (nSuspicions > 0 && nSuspicions < 3); ++n, nCount *= 2)
            {
                const std::optional<SPoint> point = fnMeasure(nCount);
                if (!point)
                    break;
                points.push_back(*point);
                if (n >= m_options.nDoublings)
                    nSuspicions = IsWrong(strEntry, strShape, points) ? nSuspicions + 1 : 0;
            }
            if (points.size() < 3)
                return;
            // A bound has ended it; before that the growth was not confirmed.
            nSuspicions = nSuspicions < 3 ? 0 : nSuspicions;
            ++m_nJudged;
            if (nSuspicions > 0 || m_options.bVerbose)
                Print(strEntry, strShape, points, nSuspicions > 0);
            m_nWrong += nSuspicions > 0 ? 1 : 0;
        }
        catch (const std::exception& exception)
        {
            std::printf("FAILED %s: %s: %s\n", strEntry.c_str(), strShape.c_str(), exception.what());
            ++m_nWrong;
        }
        catch (const CQvException& exception)
        {
            std::printf("FAILED %s: %s: %s\n", strEntry.c_str(), strShape.c_str(),
                        Narrow(exception.GetFullMessage()).c_str());
            ++m_nWrong;
        }
        std::fflush(stdout);
    }

    int Finish() const
    {
        if (m_options.bList)
            return 0;
        std::printf("%d growths measured, %d too fast\n", m_nJudged, m_nWrong);
        return m_nWrong == 0 && m_nJudged > 0 ? 0 : 1;
    }

private:
    bool IsWanted(const std::string& strEntry, const std::string& strShape)
    {
        if (!m_options.strFilter.empty() && strShape.find(m_options.strFilter) == std::string::npos)
            return false;
        if (!m_options.strEntry.empty() && strEntry.find(m_options.strEntry) == std::string::npos)
            return false;
        return m_nAsked++ % m_options.nParts == m_options.nPart;
    }

    static double GetMostPower(const std::string& strEntry, const std::string& strShape)
    {
        for (const SKnown& known : s_known)
            if (strEntry.compare(0, std::string_view(known.lpcEntry).size(), known.lpcEntry) == 0 &&
                strShape == known.lpcShape)
                return known.dMostPower;
        return s_dMostPower;
    }

    static bool IsWrong(const std::string& strEntry, const std::string& strShape, const std::vector<SPoint>& points)
    {
        const std::size_t nLast = points.size() - 1;
        const double dMost = GetMostPower(strEntry, strShape);
        return GetPower(points, &SPoint::dSteps, nLast) > dMost ||
               (points[nLast].dBytes > s_dFewBytes && GetPower(points, &SPoint::dBytes, nLast) > dMost &&
                points[nLast].dBytes / points[nLast - 1].dBytes >
                    2.2 * (points[nLast].dLength / points[nLast - 1].dLength) / 2);
    }

    static void Print(const std::string& strEntry, const std::string& strShape, const std::vector<SPoint>& points,
                      bool bWrong)
    {
        std::printf("%s %s: %s:", bWrong ? "TOO FAST" : "ok", strEntry.c_str(), strShape.c_str());
        for (const SPoint& point : points)
            std::printf("  %.0f -> %.0f, %.0f", point.dLength, point.dSteps, point.dBytes);
        std::printf("; powers %.2f, %.2f\n", GetPower(points, &SPoint::dSteps, points.size() - 1),
                    GetPower(points, &SPoint::dBytes, points.size() - 1));
    }

    const SOptions& m_options;
    int m_nAsked = 0;
    int m_nJudged = 0;
    int m_nWrong = 0;
};

/// Runs an action once to get rid of what only the first one does, and once to measure it.
std::optional<SPoint> MeasureCase(const SEntry& entry, SCase& test)
{
    const FnRun fnRun = entry.fnPrepare(test);
    if (fnRun == nullptr)
        return std::nullopt;
    const SUse use = Measure(fnRun);
    return SPoint{static_cast<double>(test.strDocument.size() + test.nOutput), static_cast<double>(use.nSteps),
                  static_cast<double>(use.nPeakBytes)};
}

/// An element of any name, with all that is below it.
class COpenElement : public CElement
{
public:
    COpenElement()
        : CInstanceMonitor(L"CElement")
        , CElement(L"", L"", L"##any", L"")
    {
    }

protected:
    /// The root itself is the element that is read.
    CXmlElement* FromXml_Int(CXmlElement* pRoot, CXmlElement* /*pFirstChild*/, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override
    {
        return CElement::FromXml_Int(pRoot, pRoot, context, bOptionalChoice);
    }
};

// --- Documents --------------------------------------------------------------------------------------------------------

void JudgeDocuments(CJudge& judge)
{
    for (const SEntry& entry : s_entries)
        for (const SDocumentShape& shape : GetDocumentShapes())
            judge.Judge(entry.bQuick, entry.lpcName, shape.lpcName, shape.nStart,
                        [&](std::size_t nCount)
                        {
                            SCase test;
                            test.strDocument = shape.fnMake(nCount);
                            if (shape.fnSetUp != nullptr)
                                shape.fnSetUp(test.context, nCount);
                            test.fnCreate = []
                            {
                                return CSmartPtr<CXmlObjectBase>(new COpenElement);
                            };
                            return MeasureCase(entry, test);
                        });
}

/// The classes of a schema, without their code.
class CClasses
{
public:
    explicit CClasses(const std::string& strSchema)
    {
        using namespace quiver_gen;
        Folder().Write("typed.xsd", strSchema);
        schema::CDiagnostics diagnostics;
        schema::SLoadOptions load;
        load.schemas.push_back(Folder().PathOf("typed.xsd"));
        if (!schema::LoadSchemas(load, m_set, diagnostics) ||
            !binding::BuildBinding(m_set, binding::SBindingOptions(), m_binding, diagnostics))
        {
            std::ostringstream messages;
            diagnostics.Print(messages, m_set.files);
            Fail(messages.str());
        }
        m_pModel = std::make_unique<check::CModel>(m_binding);
    }

    CSmartPtr<CXmlObjectBase> Create(const std::string& strFirst) const { return m_pModel->Read(strFirst); }

private:
    quiver_gen::schema::SSchemaSet m_set;
    quiver_gen::binding::SBinding m_binding;
    std::unique_ptr<quiver_gen::check::CModel> m_pModel;
};

void JudgeTyped(CJudge& judge)
{
    for (const STypedShape& shape : GetTypedShapes())
    {
        std::unique_ptr<CClasses> pClasses;
        for (const SEntry& entry : s_entries)
        {
            if (!IsForTypes(entry.lpcName))
                continue;
            judge.Judge(entry.bQuick, std::string("typed ") + entry.lpcName, shape.lpcName, shape.nStart,
                        [&](std::size_t nCount)
                        {
                            if (pClasses == nullptr)
                                pClasses = std::make_unique<CClasses>(shape.strSchema);
                            SCase test;
                            test.strDocument = shape.fnMake(nCount);
                            test.bRefused = shape.bRefused;
                            if (shape.fnSetUp != nullptr)
                                shape.fnSetUp(test.context, nCount);
                            test.fnCreate = [&]
                            {
                                return pClasses->Create(shape.strFirst);
                            };
                            return MeasureCase(entry, test);
                        });
        }
    }
}

// --- Schemas ----------------------------------------------------------------------------------------------------------

std::uintmax_t GetSizeOf(const std::string& strFolder)
{
    std::uintmax_t nSize = 0;
    for (const auto& file : std::filesystem::directory_iterator(strFolder))
        nSize += file.file_size();
    return nSize;
}

std::optional<SPoint> MeasureSchema(const SSchemaShape& shape, std::size_t nCount, bool bCheck)
{
    const std::string strFolder = Folder().PathOf("schemas");
    const std::string strOut = Folder().PathOf("generated");
    for (const std::string& strOld : {strFolder, strOut})
    {
        std::filesystem::remove_all(strOld);
        std::filesystem::create_directory(strOld);
    }
    double dLength = 0;
    std::string strMain;
    for (const auto& [strName, strText] : shape.fnMake(nCount))
    {
        Folder().Write("schemas/" + strName, strText);
        dLength += static_cast<double>(strText.size());
        if (strMain.empty())
            strMain = strFolder + "/" + strName;
    }
    Folder().Write("schemas/document.xml", shape.strDocument);
    const std::vector<std::string> arguments =
        bCheck ? std::vector<std::string>{strMain, "--check", strFolder + "/document.xml"}
               : std::vector<std::string>{strMain, "-o", strOut, "--factory", "f::CRoots"};
    std::ostringstream out;
    std::ostringstream err;
    int nStatus = 0;
    const SUse use = Measure([&] { nStatus = quiver_gen::RunGenerator(arguments, out, err); });
    // Chains and nesting have a bound, at which the growth ends.
    if (nStatus == 1 && err.str().find("than 500") != std::string::npos)
        return std::nullopt;
    if (nStatus != 0)
        Fail(err.str().substr(0, 500));
    if (!bCheck)
        dLength += static_cast<double>(GetSizeOf(strOut));
    return SPoint{dLength, static_cast<double>(use.nSteps), static_cast<double>(use.nPeakBytes)};
}

void JudgeSchemas(CJudge& judge)
{
    for (const bool bCheck : {false, true})
        for (const SSchemaShape& shape : GetSchemaShapes())
            judge.Judge(true, bCheck ? "quiver-gen --check" : "quiver-gen", shape.lpcName, shape.nStart,
                        [&](std::size_t nCount) { return MeasureSchema(shape, nCount, bCheck); });
}

// --- The command line -------------------------------------------------------------------------------------------------

bool ParseOptions(int nArguments, char** ppArguments, SOptions& options)
{
    for (int n = 1; n < nArguments; ++n)
    {
        const std::string strName = ppArguments[n];
        const std::string strValue = n + 1 < nArguments ? ppArguments[n + 1] : "";
        if (strName == "--list")
            options.bList = true;
        else if (strName == "--verbose")
            options.bVerbose = true;
        else if (strName == "--quick")
            options.bQuick = true;
        else if (strName == "--counter" && (strValue == "perf" || strValue == "callgrind" || strValue == "clock"))
            options.eCounter = strValue == "perf"    ? ECounter::Perf
                               : strValue == "clock" ? ECounter::Clock
                                                     : ECounter::Callgrind;
        else if (strName == "--doublings")
            options.nDoublings = std::max(2, std::atoi(strValue.c_str()));
        else if (strName == "--scale")
            options.nScale = std::max(1ul, std::strtoul(strValue.c_str(), nullptr, 10));
        else if (strName == "--shape")
            options.strFilter = strValue;
        else if (strName == "--entry")
            options.strEntry = strValue;
        else if (strName == "--part" && std::sscanf(strValue.c_str(), "%d/%d", &options.nPart, &options.nParts) == 2 &&
                 options.nParts > 0)
            --options.nPart;
        else
            return false;
        n += strName == "--list" || strName == "--verbose" || strName == "--quick" ? 0 : 1;
    }
    return true;
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    SOptions options;
    if (!ParseOptions(nArguments, ppArguments, options))
    {
        std::fputs("usage: quiver_cost --counter perf|callgrind|clock [--doublings N] [--scale N] [--entry TEXT] "
                   "[--shape TEXT] [--part I/N] [--quick] "
                   "[--verbose] | --list\n",
                   stderr);
        return 2;
    }
    if (!options.bList && !OpenCounter(options.eCounter))
    {
        std::fputs("quiver_cost: the counter is not there\n", stderr);
        return 3;
    }
    Register(9, 0);
    CJudge judge(options);
    JudgeDocuments(judge);
    JudgeTyped(judge);
    JudgeSchemas(judge);
    return judge.Finish();
}
