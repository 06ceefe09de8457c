// xsdcxx: generated classes over a Xerces-C tree. Reading validates against the schema, which is what checks facets.

#include "bench/peers/Peer.h"

#include "order.hxx"

#include <xercesc/util/PlatformUtils.hpp>

#include <sstream>

namespace
{

class CXsdPeer : public bench::CPeer
{
public:
    CXsdPeer() { m_properties.schema_location("urn:example:order", PEER_SCHEMA); }

    void Read(const std::string& strXml) override
    {
        std::istringstream in(strXml);
        m_pOrder = peer_order::purchaseOrder_(in, xml_schema::flags::dont_initialize, m_properties);
        if (m_pOrder->item().empty())
            bench::Fail("xsdcxx did not read the document");
    }
    void Drop() override { m_pOrder.reset(); }
    std::size_t Write() override
    {
        std::ostringstream out;
        xml_schema::namespace_infomap map;
        map[""].name = "urn:example:order";
        peer_order::purchaseOrder_(out, *m_pOrder, map, "UTF-8", xml_schema::flags::dont_initialize);
        return out.str().size();
    }

private:
    xml_schema::properties m_properties;
    std::unique_ptr<peer_order::purchaseOrder> m_pOrder;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    xercesc::XMLPlatformUtils::Initialize();
    int nResult = 0;
    {
        CXsdPeer peer;
        nResult = bench::RunPeer(peer, nArguments, ppArguments);
    }
    xercesc::XMLPlatformUtils::Terminate();
    return nResult;
}
