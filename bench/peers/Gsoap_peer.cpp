// gSOAP: generated classes, strict. It checks lengths and bounds, but neither patterns nor dates.

#include "bench/peers/Peer.h"

#include "ns1.nsmap"
#include "soapH.h"

#include <sstream>

namespace
{

class CGsoapPeer : public bench::CPeer
{
public:
    CGsoapPeer()
        : m_pSoap(soap_new1(SOAP_XML_STRICT | SOAP_XML_INDENT | SOAP_C_UTFSTRING))
    {
        m_pSoap->maxoccurs = 100000000; // its own limit is less than the document has
    }
    ~CGsoapPeer() override
    {
        Drop();
        soap_free(m_pSoap);
    }

    void Read(const std::string& strXml) override
    {
        Drop();
        std::istringstream in(strXml);
        m_pSoap->is = &in;
        m_pOrder = soap_new__ns1__purchaseOrder(m_pSoap, -1);
        if (soap_read__ns1__purchaseOrder(m_pSoap, m_pOrder) != SOAP_OK || m_pOrder->item.empty())
            bench::Fail("gSOAP refused the document");
        m_pSoap->is = nullptr;
    }
    void Drop() override
    {
        soap_destroy(m_pSoap);
        soap_end(m_pSoap);
        m_pOrder = nullptr;
    }
    std::size_t Write() override
    {
        std::ostringstream out;
        m_pSoap->os = &out;
        if (soap_write__ns1__purchaseOrder(m_pSoap, m_pOrder) != SOAP_OK)
            bench::Fail("gSOAP did not write the document");
        m_pSoap->os = nullptr;
        return out.str().size();
    }

private:
    soap* m_pSoap;
    _ns1__purchaseOrder* m_pOrder = nullptr;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    CGsoapPeer peer;
    return bench::RunPeer(peer, nArguments, ppArguments);
}
