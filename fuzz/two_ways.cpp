// A document read in two ways says the same in both, right or wrong: from bytes and from a file, a file whole and overlapped,
// into a new object and into one that holds something. Then what was read is written in two ways: to a file and to bytes,
// overlapped and at once.
//
// The first byte tells the classes, the next two how far ahead of the end of the first piece of an overlapped file the
// document begins: a comment fills the file up to there.

#include "fuzz/FuzzInput.h"
#include "fuzz/Objects.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

using namespace QvXmlLib9;

namespace
{

/// Files for what is read and written, in memory where the machine has a file system for that. They go with the program.
class CFiles
{
public:
    CFiles()
    {
        const std::filesystem::path memory = "/dev/shm";
        const bool bMemory = std::filesystem::is_directory(memory);
        std::random_device random;
        do
            m_path = (bMemory ? memory : std::filesystem::temp_directory_path()) /
                     ("quiver-fuzz-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    ~CFiles() { std::filesystem::remove_all(m_path); }
    CFiles(const CFiles&) = delete;
    CFiles& operator=(const CFiles&) = delete;

    std::wstring NameOf(const char* lpcFile) const { return (m_path / lpcFile).wstring(); }
    void Write(const char* lpcFile, std::string_view bytes) const
    {
        std::ofstream stream(m_path / lpcFile, std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::string Read(const char* lpcFile) const
    {
        std::ifstream stream(m_path / lpcFile, std::ios::binary);
        std::ostringstream bytes;
        bytes << stream.rdbuf();
        return bytes.str();
    }

private:
    std::filesystem::path m_path;
};

constexpr std::size_t s_nPiece = 128 * 1024;

std::string PutBehindComment(std::string_view document, std::size_t nAhead)
{
    if (nAhead == 0)
        return std::string(document);
    // A declaration has to stay in front.
    const std::size_t nDeclaration =
        document.substr(0, 5) == "<?xml" ? std::min(document.find("?>"), document.size() - 2) + 2 : 0;
    const std::string strComment = "<!--" + std::string(s_nPiece - nAhead - nDeclaration - 7, 'c') + "-->";
    return std::string(document.substr(0, nDeclaration)) + strComment + std::string(document.substr(nDeclaration));
}

template <class TRead>
std::wstring Outcome(CXmlObjectBase& object, const CXmlSerializationContext& context, TRead Read)
{
    std::wstring strText;
    const std::wstring strFailure = fuzz::Failure(
        [&]
        {
            Read(object);
            strText = object.ToXml(false, false, EOLType_LF, context);
        });
    return strFailure.empty() ? strText : strFailure;
}

/// Whether the bytes are something that overlapped reading does not know: Fast Infoset or compressed data.
bool IsForWholeFiles(std::string_view bytes)
{
    return bytes.size() < 4 || bytes[0] == '\xE0' || bytes[0] == '\x1F' || (bytes[0] & 0x0F) == 0x08 ||
           bytes.substr(0, 2) == std::string_view("\0\0", 2);
}

CBinaryData BinaryOf(std::string_view bytes)
{
    CBinaryData data;
    data.Append(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    return data;
}

void CheckWriting(const CFiles& files, const CXmlObjectBase& object, const CXmlSerializationContext& context)
{
    CBinaryData data;
    const auto WriteStream = [&]
    {
        data = object.ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    };
    const std::wstring strFailure = fuzz::Failure(WriteStream);
    for (const bool bOverlapped : {false, true})
    {
        AsyncToXmlFile(bOverlapped);
        const auto WriteFile = [&]
        {
            object.ToXmlFile(files.NameOf("out.xml").c_str(), true, true, Encoding_UTF8, EOLType_LF, context,
                             Compression_None);
        };
        fuzz::RequireSame(fuzz::Failure(WriteFile), strFailure, "a file is refused as bytes are");
        if (strFailure.empty())
            fuzz::Require(files.Read("out.xml") == data.GetView(), "a file has the bytes of a stream");
    }
    AsyncToXmlFile(false);
    const auto WriteInfoset = [&]
    {
        data = object.ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
    };
    const auto WriteInfosetFile = [&]
    {
        object.ToFastInfosetFile(files.NameOf("out.finf").c_str(), FInfoDecl_None, context, Compression_None);
    };
    const std::wstring strInfosetFailure = fuzz::Failure(WriteInfoset);
    fuzz::RequireSame(fuzz::Failure(WriteInfosetFile), strInfosetFailure,
                      "a file of Fast Infoset is refused as bytes are");
    if (strInfosetFailure.empty())
        fuzz::Require(files.Read("out.finf") == data.GetView(), "a file of Fast Infoset has the bytes of a stream");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const CFiles s_files;
    // That there is no document at all is said in other words of a file.
    if (nSize < 4)
        return 0;
    const fuzz::SClasses& classes = fuzz::s_classes[pData[0] % fuzz::s_nClasses];
    const std::string_view input(reinterpret_cast<const char*>(pData) + 3, nSize - 3);
    const std::string strBytes = PutBehindComment(input, (pData[1] + 256U * pData[2]) % 8192U);
    s_files.Write("in.xml", strBytes);
    const std::wstring strFile = s_files.NameOf("in.xml");
    const CXmlSerializationContext context;

    const auto ReadBytes = [&](CXmlObjectBase& object)
    {
        object.FromXmlStream(BinaryOf(strBytes), context);
    };
    const auto ReadFile = [&](CXmlObjectBase& object)
    {
        object.FromXmlFile(strFile.c_str(), context);
    };
    const fuzz::CObject spBytes = classes.pfnMakeEmpty();
    const std::wstring strSaid = Outcome(*spBytes, context, ReadBytes);
    const fuzz::CObject spFile = classes.pfnMakeEmpty();
    fuzz::RequireSame(Outcome(*spFile, context, ReadFile), strSaid, "a file says what its bytes say");
    fuzz::RequireSame(Outcome(*spFile, context, ReadBytes), strSaid, "a used object says what a new one does");
    if (!IsForWholeFiles(strBytes))
    {
        AsyncFromXmlFile(true);
        const std::wstring strOverlapped = Outcome(*spFile, context, ReadFile);
        AsyncFromXmlFile(false);
        fuzz::RequireSame(strOverlapped, strSaid, "an overlapped file says what its bytes say");
    }
    if (strSaid.compare(0, 8, L"refused:") != 0)
        CheckWriting(s_files, *spBytes, context);
    return 0;
}
