// libxml2: a tree without types or checks.

#include "bench/peers/Peer.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

namespace
{

class CLibxml2Peer : public bench::CPeer
{
public:
    ~CLibxml2Peer() override { Drop(); }

    void Read(const std::string& strXml) override
    {
        Drop();
        m_pDocument =
            xmlReadMemory(strXml.data(), static_cast<int>(strXml.size()), nullptr, nullptr, XML_PARSE_NOBLANKS);
        if (m_pDocument == nullptr)
            bench::Fail("libxml2 refused the document");
    }
    void Drop() override
    {
        if (m_pDocument != nullptr)
            xmlFreeDoc(m_pDocument);
        m_pDocument = nullptr;
    }
    std::size_t Write() override
    {
        xmlChar* pText = nullptr;
        int nLength = 0;
        xmlDocDumpFormatMemory(m_pDocument, &pText, &nLength, 1);
        xmlFree(pText);
        return static_cast<std::size_t>(nLength);
    }

private:
    xmlDocPtr m_pDocument = nullptr;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    CLibxml2Peer peer;
    return bench::RunPeer(peer, nArguments, ppArguments);
}
