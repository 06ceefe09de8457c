// Reads a GPX track, reports on it, changes it, writes it, and reads it again to see that nothing was lost.
//
//     gpx_track IN.gpx [OUT.gpx]

#include "Factory.h"

#include "examples/common/Console.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace gpx;
using example::Narrow;

namespace
{

/// Metres between two points on a sphere of the Earth's mean radius.
double Distance(const CPoint& from, const CPoint& to)
{
    const double dRadian = std::acos(-1.0) / 180;
    const double dLatFrom = from.GetLat().ToDouble() * dRadian;
    const double dLatTo = to.GetLat().ToDouble() * dRadian;
    const double dLon = (to.GetLon().ToDouble() - from.GetLon().ToDouble()) * dRadian;
    const double dHav = std::pow(std::sin((dLatTo - dLatFrom) / 2), 2) +
                        std::cos(dLatFrom) * std::cos(dLatTo) * std::pow(std::sin(dLon / 2), 2);
    return 2 * 6371000 * std::asin(std::sqrt(dHav));
}

struct STotals
{
    int nPoints = 0;
    int nReadings = 0;
    double dMetres = 0;
    CDecimal ascent;
};

void Add(STotals& totals, const CSegment& segment)
{
    const CPoint* pLast = nullptr;
    for (const CPoint& point : *segment.GetTrkpt())
    {
        ++totals.nPoints;
        if (pLast != nullptr)
        {
            totals.dMetres += Distance(*pLast, point);
            if (point.GetEle() && pLast->GetEle() && *point.GetEle() > *pLast->GetEle())
                totals.ascent += CDecimal(*point.GetEle()) - *pLast->GetEle();
        }
        if (point.GetExtensions() != nullptr)
            totals.nReadings += point.GetExtensions()->GetAny()->GetCount();
        pLast = &point;
    }
}

void Report(const CGpx& document)
{
    std::printf("GPX %s by %s\n", Narrow(document.GetVersion()).c_str(), Narrow(document.GetCreator()).c_str());
    for (const CTrack& track : *document.GetTrk())
    {
        STotals totals;
        for (const CSegment& segment : *track.GetTrkseg())
            Add(totals, segment);
        std::printf("  %s: %d segments, %d points, %.0f m, %s m ascent, %d readings of other vocabularies\n",
                    Narrow(track.GetName().value_or(L"(no name)")).c_str(), track.GetTrkseg()->GetCount(),
                    totals.nPoints, totals.dMetres, Narrow(totals.ascent.ToString()).c_str(), totals.nReadings);
    }
}

/// Names the track anew and puts a last point behind its last segment.
void Change(CGpx& document)
{
    const CSmartPtr<CTrack> spTrack = document.GetTrk()->Item(0);
    spTrack->SetName(spTrack->GetName().value_or(L"Track") + L" (edited)");

    const CSmartPtr<CSegment> spLast = spTrack->GetTrkseg()->Item(spTrack->GetTrkseg()->GetCount() - 1);
    const CSmartPtr<CPoint> spPoint = spLast->GetTrkpt()->AddNew();
    spPoint->SetLat(CDecimal(L"46.6"));
    spPoint->SetLon(CDecimal(L"8.43"));
    spPoint->SetName(L"Finish");
    spPoint->SetFix(EFix::Dgps);
    spPoint->SetTime(CDateTime(L"2026-05-17T07:20:00Z"));
}

int Work(const std::wstring& strIn, const std::wstring& strOut)
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"http://www.topografix.com/GPX/1/1");
    context.GetNamespaceAliases().Add(L"sensor", L"urn:example:sensor");

    const CSmartPtr<CGpx> spDocument = CFactory::Gpx();
    spDocument->FromXmlFile(strIn.c_str(), context);
    Report(*spDocument);
    Change(*spDocument);

    // Not formatted: in open content white space counts, so indenting it would change it.
    const std::wstring strXml = spDocument->ToXml(true, false, EOLType_LF, context);
    const CSmartPtr<CGpx> spAgain = CFactory::Gpx();
    spAgain->FromXml(strXml.c_str(), context);
    if (spAgain->ToXml(true, false, EOLType_LF, context) != strXml)
    {
        std::fprintf(stderr, "the document changed on its way\n");
        return 1;
    }
    std::printf("written and read again: equal\n");
    Report(*spAgain);
    if (!strOut.empty())
        spDocument->ToXmlFile(strOut.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::wstring> files = example::GetArguments(argc, argv);
    if (files.empty() || files.size() > 2)
    {
        std::fprintf(stderr, "usage: %s IN.gpx [OUT.gpx]\n", argv[0]);
        return 2;
    }
    return example::Run([&] { return Work(files[0], files.size() == 2 ? files[1] : L""); });
}
