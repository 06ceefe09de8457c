// Reads a log that is too long to hold in memory: each record becomes an object as soon as its end tag has been parsed,
// is added up, and is dropped. The file is fetched in two chunks of 128 KiB at a time, one while the other is parsed.
//
//     large_file [MEGABYTES]     writes a log of that size (200 if not given), reads it, and removes it
//     large_file FILE.xml        reads a log that is there already

#include "Readings.h"

#include "examples/common/Console.h"
#include "examples/common/Process.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace weather;
using example::Narrow;
using example::Widen;

namespace
{

const int s_nDefaultMegabytes = 200;

const int s_nMaxMegabytes = 100000;

/// What is kept of a station's readings.
struct STotals
{
    int nReadings = 0;
    int nRemarks = 0;
    CDecimal sum;
    CDecimal lowest;
    CDecimal highest;

    void Add(const CReading& reading)
    {
        const CDecimal& temperature = reading.GetTemperature();
        if (nReadings == 0 || temperature < lowest)
            lowest = temperature;
        if (nReadings == 0 || temperature > highest)
            highest = temperature;
        sum += temperature;
        ++nReadings;
        if (reading.GetRemark())
            ++nRemarks;
    }
};

/// The reading of one log.
class CLogReader
{
public:
    /// @param nExpected how many readings the log has, for the progress line; 0 if that is not known.
    explicit CLogReader(int nExpected)
        : m_nExpected(nExpected)
    {
        m_context.SetDefaultNamespaceURI(L"urn:example:weather");
    }

    void Read(const std::wstring& strFile)
    {
        AsyncFromXmlFile(true);
        s_pCurrent = this;
        CXmlDocument document(&CLogReader::TakeElement, m_context);
        document.Load(strFile.c_str());
        s_pCurrent = nullptr;
        if (m_bTerminal)
            std::fprintf(stderr, "\n");
    }

    const std::map<std::wstring, STotals>& GetStations() const { return m_stations; }

private:
    /// The filter of the document: called with every complete element, innermost first. What it returns true for is
    /// dropped from the tree.
    static bool TakeElement(CXmlElement* pElement)
    {
        if (pElement->GetLocalName() != L"reading")
            return false;
        s_pCurrent->Take(pElement);
        return true;
    }

    void Take(const CXmlElement* pElement)
    {
        // One object for all records: reading resets it.
        m_spReading->FromXmlElement(pElement, m_context);
        m_stations[m_spReading->GetStation()].Add(*m_spReading);
        if (++m_nReadings % 20000 == 0 && m_bTerminal)
            ShowProgress();
    }

    void ShowProgress() const
    {
        if (m_nExpected == 0)
            std::fprintf(stderr, "\r%d readings", m_nReadings);
        else
            std::fprintf(stderr, "\r%d of %d readings", m_nReadings, m_nExpected);
    }

    /// The filter is a plain function, so the reader in charge has to be found.
    static CLogReader* s_pCurrent;

    CXmlSerializationContext m_context;
    const CSmartPtr<CReading> m_spReading = new CReading;
    std::map<std::wstring, STotals> m_stations;
    int m_nReadings = 0;
    int m_nExpected;
    const bool m_bTerminal = example::IsErrorOutputATerminal();
};

CLogReader* CLogReader::s_pCurrent = nullptr;

/// A log of readings in a file of its own, which goes when the program is done with it.
class CGeneratedLog
{
public:
    explicit CGeneratedLog(int nMegabytes)
        : m_path(std::filesystem::temp_directory_path() /
                 ("quiver-large-file-" + std::to_string(std::random_device()()) + ".xml"))
    {
        std::ofstream stream(m_path, std::ios::binary);
        stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<log xmlns=\"urn:example:weather\">\n";
        while (stream && stream.tellp() < std::streamoff(nMegabytes) * 1000000)
            WriteReading(stream);
        stream << "</log>\n";
        stream.close();
        if (!stream)
        {
            const std::string strReason = std::strerror(errno);
            std::filesystem::remove(m_path);
            throw CQvException(
                FormatString(L"Failed to write the file [%s]: %S", GetName().c_str(), strReason.c_str()));
        }
    }
    ~CGeneratedLog()
    {
        std::error_code error;
        std::filesystem::remove(m_path, error);
    }
    CGeneratedLog(const CGeneratedLog&) = delete;
    CGeneratedLog& operator=(const CGeneratedLog&) = delete;

    std::wstring GetName() const { return Widen(m_path.u8string()); }
    int GetCount() const { return m_nCount; }

    /// Sum of all temperatures, in hundredths of a degree.
    long long GetSum() const { return m_nSum; }

private:
    void WriteReading(std::ofstream& stream)
    {
        static const char* const s_stations[] = {"Harbour", "Ridge", "Mühle", "Observatory"};
        const int nHour = m_nCount / 4;
        const int nHundredths = m_nCount % 6000 * 37 % 6000 - 2500;
        char szReading[400];
        const int nLength = std::snprintf(
            szReading, sizeof(szReading),
            "<reading station=\"%s\"><time>%04d-%02d-%02dT%02d:%02d:00Z</time><temperature>%s%d.%02d</temperature>"
            "<humidity>%d</humidity>%s</reading>\n",
            s_stations[m_nCount % 4], 1950 + nHour / 60 / 24 / 28 / 12 % 100, 1 + nHour / 60 / 24 / 28 % 12,
            1 + nHour / 60 / 24 % 28, nHour / 60 % 24, nHour % 60, nHundredths < 0 ? "-" : "",
            std::abs(nHundredths) / 100, std::abs(nHundredths) % 100, m_nCount % 101,
            m_nCount % 50 == 0 ? "<remark>sensor checked &amp; cleaned</remark>" : "");
        stream.write(szReading, nLength);
        m_nSum += nHundredths;
        ++m_nCount;
    }

    std::filesystem::path m_path;
    int m_nCount = 0;
    long long m_nSum = 0;
};

/// Prints what was kept, and the sum of it all.
STotals Report(const CLogReader& reader)
{
    STotals total;
    for (const auto& [strName, station] : reader.GetStations())
    {
        CDecimal sum(station.sum);
        std::printf("%s: %d readings, %s to %s degrees, mean %s, %d remarks\n", Narrow(strName).c_str(),
                    station.nReadings, Narrow(station.lowest.ToString()).c_str(),
                    Narrow(station.highest.ToString()).c_str(),
                    Narrow((sum / CDecimal(station.nReadings)).ToString(2)).c_str(), station.nRemarks);
        total.nReadings += station.nReadings;
        total.sum += station.sum;
    }
    return total;
}

void ReportMemory(long long nFileBytes)
{
    std::printf("peak memory %.1f MB for a file of %.1f MB\n", example::GetPeakMemory() / 1e6,
                static_cast<double>(nFileBytes) / 1e6);
}

int ReadFile(const std::wstring& strFile)
{
    CLogReader reader(0);
    reader.Read(strFile);
    const STotals total = Report(reader);
    std::printf("%d readings in all\n", total.nReadings);
    ReportMemory(static_cast<long long>(std::filesystem::file_size(std::filesystem::u8path(Narrow(strFile)))));
    return 0;
}

int Generate(int nMegabytes)
{
    const CGeneratedLog log(nMegabytes);
    CLogReader reader(log.GetCount());
    reader.Read(log.GetName());
    const STotals total = Report(reader);
    if (total.nReadings != log.GetCount() || total.sum != CDecimal(log.GetSum()) / CDecimal(100))
    {
        std::fprintf(stderr, "the readings are not those that were written\n");
        return 1;
    }
    std::printf("%d readings, as they were written\n", total.nReadings);
    ReportMemory(nMegabytes * 1000000LL);
    return 0;
}

int Usage(const char* lpcProgram)
{
    std::fprintf(stderr, "usage: %s [MEGABYTES | FILE.xml]   (1 to %d megabytes)\n", lpcProgram, s_nMaxMegabytes);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::wstring> arguments = example::GetArguments(argc, argv);
    if (arguments.size() > 1)
        return Usage(argv[0]);
    wchar_t* pEnd = nullptr;
    const long nMegabytes = arguments.empty() ? s_nDefaultMegabytes : std::wcstol(arguments[0].c_str(), &pEnd, 10);
    if (pEnd != nullptr && *pEnd != 0)
        return example::Run([&] { return ReadFile(arguments[0]); });
    if (nMegabytes < 1 || nMegabytes > s_nMaxMegabytes)
        return Usage(argv[0]);
    return example::Run([&] { return Generate(static_cast<int>(nMegabytes)); });
}
