// Quiver's own tree, without objects.

#include "bench/PurchaseOrderDocument.h"
#include "bench/peers/Peer.h"

#include "quiver/document/XmlDocument.h"

namespace
{

class CTreePeer : public bench::CPeer
{
public:
    void Read(const std::string& strXml) override
    {
        m_pDocument = std::make_unique<QvXmlLib9::CXmlDocument>(m_context);
        m_pDocument->LoadXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(strXml.data())),
                                   static_cast<unsigned long>(strXml.size()));
        if (m_pDocument->GetDocumentElement() == nullptr)
            bench::Fail("the tree is empty");
    }
    void Drop() override { m_pDocument.reset(); }
    std::size_t Write() override { bench::Fail("the tree is only read"); }

private:
    const QvXmlLib9::CXmlSerializationContext m_context = bench::Context();
    std::unique_ptr<QvXmlLib9::CXmlDocument> m_pDocument;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    CTreePeer peer;
    return bench::RunPeer(peer, nArguments, ppArguments);
}
