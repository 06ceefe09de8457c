// A module with generated classes, for programs that load and unload it.

#include "Order.h"
#include "OrderRoots.h"

#include "quiver/QvXmlLib.h"

#include <algorithm>
#include <cstddef>
#include <string>

using namespace QvXmlLib9;

#if defined(_WIN32)
#define QV_EXPORTED __declspec(dllexport)
#elif defined(__GNUC__)
#define QV_EXPORTED __attribute__((visibility("default")))
#else
#define QV_EXPORTED
#endif

/// Reads a document and writes what was read, or the messages why it was not.
/// @param lpcText what is written, at most `nCapacity` bytes with the zero at the end.
extern "C" QV_EXPORTED void ReadAndWrite(const char* lpcXml, char* lpcText, std::size_t nCapacity)
{
    const CXmlSerializationContext context;
    std::wstring strText;
    try
    {
        CXmlDocument document(context);
        document.LoadXml(lpcXml);
        const CSmartPtr<CXmlObjectBase> spRoot = order::COrderRoots::CreateRoot(document.GetDocumentElement());
        if (spRoot == nullptr)
            throw CQvException(L"There is no class");
        spRoot->FromXmlElement(document.GetDocumentElement(), context);
        const CSmartPtr<CXmlObjectBase> spAgain = new order::CPurchaseOrder;
        spAgain->FromXmlStream(spRoot->ToFastInfosetStream(FInfoDecl_None, context, Compression_None), context);
        strText = spAgain->ToXml(false, false, EOLType_LF, context);
    }
    catch (const CQvException& exception)
    {
        strText = exception.GetFullMessage();
    }
    const std::size_t nLength = std::min(strText.size(), nCapacity - 1);
    std::transform(strText.begin(), strText.begin() + static_cast<std::ptrdiff_t>(nLength), lpcText,
                   [](wchar_t c) { return static_cast<char>(c); });
    lpcText[nLength] = 0;
}

/// Writes an order of many pieces to a file and reads it, overlapped.
/// @return whether it came back the same.
extern "C" QV_EXPORTED bool ReadAndWriteFile(const wchar_t* lpctFile)
{
    AsyncToXmlFile(true);
    AsyncFromXmlFile(true);
    try
    {
        const CXmlSerializationContext context;
        const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
        spOrder->FromXml("<o:purchaseOrder xmlns:o='urn:example:order' number='7'><o:shipTo><o:name>N</o:name>"
                         "<o:street>S</o:street><o:city>C</o:city></o:shipTo><o:item part='123-AB'>"
                         "<o:product>P</o:product><o:quantity>3</o:quantity><o:price>0.5</o:price></o:item>"
                         "</o:purchaseOrder>",
                         context);
        spOrder->SetComment(std::wstring(700000, L'c'));
        spOrder->ToXmlFile(lpctFile, true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
        const CSmartPtr<order::CPurchaseOrder> spAgain = new order::CPurchaseOrder;
        spAgain->FromXmlFile(lpctFile, context);
        return spAgain->GetComment() == spOrder->GetComment();
    }
    catch (const CQvException&)
    {
        return false;
    }
}
