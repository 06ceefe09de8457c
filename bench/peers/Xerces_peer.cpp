// Xerces-C: a tree (DOM) without types or checks.

#include "bench/peers/Peer.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace
{

class CXercesPeer : public bench::CPeer
{
public:
    void Read(const std::string& strXml) override
    {
        m_pParser = std::make_unique<xercesc::XercesDOMParser>();
        m_pParser->setDoNamespaces(true);
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(strXml.data()), strXml.size(),
                                                "order");
        m_pParser->parse(source);
        if (m_pParser->getErrorCount() != 0 || m_pParser->getDocument()->getDocumentElement() == nullptr)
            bench::Fail("Xerces-C refused the document");
    }
    void Drop() override { m_pParser.reset(); }
    std::size_t Write() override
    {
        xercesc::DOMImplementation* const pImplementation =
            xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
        xercesc::DOMLSSerializer* const pSerializer = pImplementation->createLSSerializer();
        xercesc::DOMLSOutput* const pOutput = pImplementation->createLSOutput();
        xercesc::MemBufFormatTarget target;
        pOutput->setByteStream(&target);
        pSerializer->write(m_pParser->getDocument(), pOutput);
        pOutput->release();
        pSerializer->release();
        return target.getLen();
    }

private:
    std::unique_ptr<xercesc::XercesDOMParser> m_pParser;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    xercesc::XMLPlatformUtils::Initialize();
    int nResult = 0;
    {
        CXercesPeer peer;
        nResult = bench::RunPeer(peer, nArguments, ppArguments);
    }
    xercesc::XMLPlatformUtils::Terminate();
    return nResult;
}
