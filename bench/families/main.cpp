// Reads a document of a family of schemas into the objects of generated classes and writes them back, again and again:
// what bench/families.sh measures. Built against what quiver-gen wrote with --factory family::CRoots.
//   family DOCUMENT SECONDS    prints the megabytes a second of processor time, reading and writing
#include "Roots.h"

#include "quiver/QvXmlLib.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>

using namespace QvXmlLib9;

namespace
{

std::string ReadFile(const char* lpcPath)
{
    std::ifstream file(lpcPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Megabytes a second, where each call takes or gives as many bytes as it says.
template <class TCall>
double Measure(double dSeconds, TCall Call)
{
    Call();
    double dBytes = 0;
    double dSpent = 0;
    const std::clock_t start = std::clock();
    while (dSpent < dSeconds)
    {
        dBytes += Call();
        dSpent = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    return dBytes / dSpent / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    try
    {
        std::string strDocument = ReadFile(argv[1]);
        auto* const pData = reinterpret_cast<unsigned char*>(strDocument.data());
        const auto ulLength = static_cast<unsigned long>(strDocument.size());
        const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
        CXmlDocument document;
        document.LoadXmlStream(pData, ulLength);
        const CSmartPtr<CXmlObjectBase> spRoot = family::CRoots::CreateRoot(document.GetDocumentElement());
        if (spRoot == nullptr)
            return 3;
        const double dSeconds = std::atof(argv[2]);
        const double dRead = Measure(dSeconds,
                                     [&]
                                     {
                                         spRoot->FromXmlStream(pData, ulLength, context);
                                         return static_cast<double>(ulLength);
                                     });
        const double dWritten = Measure(dSeconds,
                                        [&]
                                        {
                                            const CBinaryData written = spRoot->ToXmlStream(
                                                true, false, Encoding_UTF8, EOLType_LF, context, Compression_None);
                                            return static_cast<double>(written.GetLength());
                                        });
        std::printf("%.1f %.1f\n", dRead, dWritten);
        return 0;
    }
    catch (const CQvException& e)
    {
        std::fprintf(stderr, "%ls\n", e.GetFullMessage().c_str());
    }
    return 1;
}
