#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/QvZip.h"
#include "quiver/output/FileTextStream.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

// UTF conversion, Base64, hexadecimal, compression and file output. Where the library has a fast way, the plain one
// stands beside it. Every benchmark checks its answer before it measures.

using namespace QvXmlLib9;

namespace
{

void Check(bool bCorrect)
{
    if (!bCorrect)
        std::abort();
}

void SetBytes(benchmark::State& state, std::size_t nBytes)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(nBytes));
}

enum EText
{
    Text_Ascii,
    Text_European,
    Text_Cjk,
    Text_Emoji
};

/// Text as UTF-8: plain ASCII; one letter in eight outside it; three bytes a unit; four bytes a pair.
std::string MakeUtf8(EText eText, std::size_t nLength)
{
    std::string strText;
    for (std::size_t i = 0; strText.size() < nLength; ++i)
    {
        if (eText == Text_Cjk)
            strText += "\xE6\xBC\xA2";
        else if (eText == Text_Emoji)
            strText += "\xF0\x9F\x98\x80";
        else if (eText == Text_European && i % 8 == 7)
            strText += "\xC3\xA4";
        else
            strText += static_cast<char>('a' + i % 26);
    }
    return strText;
}

std::string MakeRandom(std::size_t nLength)
{
    std::mt19937 engine(1);
    std::string strBytes(nLength, 0);
    for (char& c : strBytes)
        c = static_cast<char>(engine());
    return strBytes;
}

std::string MakeXml(std::size_t nLength)
{
    std::mt19937 engine(1);
    std::string strXml;
    while (strXml.size() < nLength)
        strXml += "<item id=\"" + std::to_string(engine() % 100000) + "\"><name>some name</name></item>\n";
    return strXml;
}

CBinaryData MakeData(std::string_view bytes)
{
    CBinaryData data;
    data.SetBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    return data;
}

// --- UTF-8 to text --------------------------------------------------------------------------------------------------

void BM_AppendUtf8AsUtf16(benchmark::State& state)
{
    const std::string strBytes = MakeUtf8(static_cast<EText>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::wstring strText;
    Check(AppendUtf8AsUtf16(strText, strBytes));
    std::string strBack;
    Check(AppendUtf8(strBack, strText) && strBack == strBytes);
    for (auto _ : state)
    {
        strText.clear();
        AppendUtf8AsUtf16(strText, strBytes);
        benchmark::DoNotOptimize(strText.data());
    }
    SetBytes(state, strBytes.size());
}
BENCHMARK(BM_AppendUtf8AsUtf16)->ArgsProduct({{Text_Ascii, Text_European, Text_Cjk, Text_Emoji}, {8, 64, 1 << 20}});

/// The plain way: unit by unit.
void BM_AppendUtf8AsUtf16_Plain(benchmark::State& state)
{
    const std::string strBytes = MakeUtf8(Text_Ascii, static_cast<std::size_t>(state.range(0)));
    std::wstring strText;
    for (auto _ : state)
    {
        strText.clear();
        for (const char c : strBytes)
            strText += static_cast<wchar_t>(static_cast<unsigned char>(c));
        benchmark::DoNotOptimize(strText.data());
    }
    SetBytes(state, strBytes.size());
}
BENCHMARK(BM_AppendUtf8AsUtf16_Plain)->Arg(8)->Arg(64)->Arg(1 << 20);

void BM_DecodeUtf8(benchmark::State& state)
{
    const std::string strBytes = MakeUtf8(static_cast<EText>(state.range(0)), 1 << 20);
    const auto* const pBytes = reinterpret_cast<const unsigned char*>(strBytes.data());
    Check(EncodeUtf8(DecodeUtf8(pBytes, strBytes.size()).c_str()).GetView() == strBytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(DecodeUtf8(pBytes, strBytes.size()));
    SetBytes(state, strBytes.size());
}
BENCHMARK(BM_DecodeUtf8)->DenseRange(Text_Ascii, Text_Emoji);

// --- Text to bytes --------------------------------------------------------------------------------------------------

void BM_EncodeUtf8(benchmark::State& state)
{
    const std::string strBytes = MakeUtf8(static_cast<EText>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    const std::wstring strText = DecodeUtf8(reinterpret_cast<const unsigned char*>(strBytes.data()), strBytes.size());
    Check(EncodeUtf8(strText.c_str()).GetView() == strBytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(EncodeUtf8(strText.c_str()));
    SetBytes(state, strBytes.size());
}
BENCHMARK(BM_EncodeUtf8)->ArgsProduct({{Text_Ascii, Text_European, Text_Cjk, Text_Emoji}, {64, 4096, 1 << 20}});

void BM_AppendUtf16(benchmark::State& state)
{
    const std::wstring strText(1 << 20, L'a');
    Check(CBinaryData(strText.c_str()).GetLength() == 2 << 20);
    for (auto _ : state)
        benchmark::DoNotOptimize(CBinaryData(strText.c_str()));
    SetBytes(state, 2 << 20);
}
BENCHMARK(BM_AppendUtf16);

void BM_ToUtf16Units(benchmark::State& state)
{
    const std::wstring strText(1 << 20, state.range(0) != 0 ? L'\U0001F600' : L'a');
    Check(ToUtf16Units(strText).size() == GetUtf16Length(strText));
    for (auto _ : state)
        benchmark::DoNotOptimize(ToUtf16Units(strText));
    SetBytes(state, strText.size() * sizeof(wchar_t));
}
BENCHMARK(BM_ToUtf16Units)->Arg(0)->Arg(1);

// --- Binary data ----------------------------------------------------------------------------------------------------

void BM_AppendBytes(benchmark::State& state)
{
    for (auto _ : state)
    {
        CBinaryData data;
        for (int i = 0; i < 1 << 20; ++i)
            data.Append(static_cast<unsigned char>(i));
        benchmark::DoNotOptimize(data.GetData());
    }
    SetBytes(state, 1 << 20);
}
BENCHMARK(BM_AppendBytes);

/// The plain way: every byte through the general append.
void BM_AppendBytes_Plain(benchmark::State& state)
{
    for (auto _ : state)
    {
        CBinaryData data;
        for (int i = 0; i < 1 << 20; ++i)
        {
            const auto by = static_cast<unsigned char>(i);
            data.Append(&by, 1);
        }
        benchmark::DoNotOptimize(data.GetData());
    }
    SetBytes(state, 1 << 20);
}
BENCHMARK(BM_AppendBytes_Plain);

void BM_CopyHandle(benchmark::State& state)
{
    const CBinaryData data = MakeData("abc");
    for (auto _ : state)
        benchmark::DoNotOptimize(CBinaryData(data));
}
BENCHMARK(BM_CopyHandle);

void BM_GetAsBase64(benchmark::State& state)
{
    const CBinaryData data = MakeData(MakeRandom(1 << 20));
    CBinaryData back;
    back.SetAsBase64(data.GetAsBase64().c_str());
    Check(back == data);
    for (auto _ : state)
        benchmark::DoNotOptimize(data.GetAsBase64());
    SetBytes(state, 1 << 20);
}
BENCHMARK(BM_GetAsBase64);

/// With a line break after every so many characters, or none.
void BM_SetAsBase64(benchmark::State& state)
{
    const CBinaryData data = MakeData(MakeRandom(1 << 20));
    std::wstring strText = data.GetAsBase64();
    const auto nLine = static_cast<std::size_t>(state.range(0));
    for (std::size_t nAt = nLine; nLine != 0 && nAt < strText.size(); nAt += nLine + 2)
        strText.insert(nAt, L"\r\n");
    CBinaryData back;
    back.SetAsBase64(strText.c_str());
    Check(back == data);
    for (auto _ : state)
    {
        back.SetAsBase64(strText.c_str());
        benchmark::DoNotOptimize(back.GetData());
    }
    SetBytes(state, 1 << 20);
}
BENCHMARK(BM_SetAsBase64)->Arg(0)->Arg(76);

void BM_GetAsHexString(benchmark::State& state)
{
    const CBinaryData data = MakeData(MakeRandom(1 << 20));
    for (auto _ : state)
        benchmark::DoNotOptimize(data.GetAsHexString());
    SetBytes(state, 1 << 20);
}
BENCHMARK(BM_GetAsHexString);

void BM_SetAsHexString(benchmark::State& state)
{
    const CBinaryData data = MakeData(MakeRandom(1 << 20));
    const std::wstring strText = data.GetAsHexString();
    CBinaryData back;
    back.SetAsHexString(strText.c_str());
    Check(back == data);
    for (auto _ : state)
    {
        back.SetAsHexString(strText.c_str());
        benchmark::DoNotOptimize(back.GetData());
    }
    SetBytes(state, 1 << 20);
}
BENCHMARK(BM_SetAsHexString);

// --- Compression ----------------------------------------------------------------------------------------------------

void BM_Compress(benchmark::State& state)
{
    const CBinaryData data = MakeData(MakeXml(1 << 20));
    for (auto _ : state)
    {
        CBinaryData compressed = data;
        CQvZip::Compress(compressed, Compression_GZip);
        benchmark::DoNotOptimize(compressed.GetData());
    }
    SetBytes(state, data.GetLength());
}
BENCHMARK(BM_Compress)->Unit(benchmark::kMillisecond);

/// Output of so many megabytes; behind the first 64 the input is inflated twice.
void BM_DecompressBuffer(benchmark::State& state)
{
    const CBinaryData data = MakeData(MakeXml(static_cast<std::size_t>(state.range(0)) << 20));
    CBinaryData compressed = data;
    CQvZip::Compress(compressed, Compression_GZip);
    for (auto _ : state)
    {
        CBinaryData copy = compressed;
        unsigned long ulLength = copy.GetLength();
        unsigned char* pBytes = copy.ReleaseData();
        CQvZip::DecompressBuffer(&pBytes, &ulLength);
        Check(ulLength == data.GetLength());
        delete[] pBytes;
    }
    SetBytes(state, data.GetLength());
}
BENCHMARK(BM_DecompressBuffer)->Arg(1)->Arg(32)->Arg(96)->Unit(benchmark::kMillisecond);

/// What detection costs text that is not compressed.
void BM_DecompressBuffer_PlainText(benchmark::State& state)
{
    const std::string strXml = MakeXml(1000);
    unsigned long ulLength = strXml.size();
    auto* pBytes = new unsigned char[ulLength];
    strXml.copy(reinterpret_cast<char*>(pBytes), ulLength);
    for (auto _ : state)
        CQvZip::DecompressBuffer(&pBytes, &ulLength);
    delete[] pBytes;
}
BENCHMARK(BM_DecompressBuffer_PlainText);

// --- Files ----------------------------------------------------------------------------------------------------------

std::filesystem::path FilePath()
{
    return std::filesystem::temp_directory_path() / "quiver-bytes-bench";
}

/// Overlapped: text handed on in pieces of 4096 units.
void BM_FileTextStream(benchmark::State& state)
{
    const std::wstring strPiece(512, L'a');
    for (auto _ : state)
    {
        CFileTextStream stream(FilePath().wstring(), Encoding_UTF8);
        stream.Open();
        for (std::size_t i = 0; i < 16384; ++i)
        {
            stream.Append(strPiece);
            if (stream.GetLength() >= 4096)
                stream.Flush();
        }
        stream.Close();
    }
    Check(std::filesystem::file_size(FilePath()) == 8 << 20);
    std::filesystem::remove(FilePath());
    SetBytes(state, 8 << 20);
}
BENCHMARK(BM_FileTextStream)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Plain: the whole text converted and written in one go.
void BM_FileBinaryStream(benchmark::State& state)
{
    const std::wstring strText(8 << 20, L'a');
    for (auto _ : state)
        CFileBinaryStream(FilePath().wstring(), Encoding_UTF8, EncodeUtf8(strText.c_str())).Write();
    Check(std::filesystem::file_size(FilePath()) == 8 << 20);
    std::filesystem::remove(FilePath());
    SetBytes(state, 8 << 20);
}
BENCHMARK(BM_FileBinaryStream)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
