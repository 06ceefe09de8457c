// Quiver: generated classes, all facets checked, as XML text; as Fast Infoset where the program is compiled so.

#include "bench/PurchaseOrderDocument.h"
#include "bench/peers/Peer.h"

using QvXmlLib9::CBinaryData;

namespace
{

class CQuiverPeer : public bench::CPeer
{
public:
    std::string MakeInput(const std::string& strXml) override
    {
        if (!s_bFastInfoset)
            return strXml;
        order::CPurchaseOrder purchaseOrder;
        bench::Read(purchaseOrder, strXml, m_context);
        return std::string(WriteOrder(purchaseOrder).GetView());
    }
    void Read(const std::string& strInput) override
    {
        m_pOrder = std::make_unique<order::CPurchaseOrder>();
        bench::Read(*m_pOrder, strInput, m_context);
        if (m_pOrder->GetItem()->GetCount() == 0)
            bench::Fail("the document was not read");
    }
    void Drop() override { m_pOrder.reset(); }
    std::size_t Write() override { return WriteOrder(*m_pOrder).GetLength(); }

private:
    static constexpr bool s_bFastInfoset = PEER_FAST_INFOSET != 0;

    CBinaryData WriteOrder(order::CPurchaseOrder& purchaseOrder) const
    {
        using namespace QvXmlLib9;
        if (s_bFastInfoset)
            return purchaseOrder.ToFastInfosetStream(FInfoDecl_None, m_context, Compression_None);
        return purchaseOrder.ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, m_context, Compression_None);
    }

    const QvXmlLib9::CXmlSerializationContext m_context = bench::Context();
    std::unique_ptr<order::CPurchaseOrder> m_pOrder;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    CQuiverPeer peer;
    return bench::RunPeer(peer, nArguments, ppArguments);
}
