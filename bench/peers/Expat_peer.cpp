// expat alone, with handlers that do nothing: what reading costs at the least.

#include "bench/peers/Peer.h"

#include <expat.h>

namespace
{

class CExpatPeer : public bench::CPeer
{
public:
    void Read(const std::string& strXml) override
    {
        const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
        XML_SetElementHandler(
            parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
        XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
        if (XML_Parse(parser, strXml.data(), static_cast<int>(strXml.size()), XML_TRUE) != XML_STATUS_OK)
            bench::Fail("expat refused the document");
        XML_ParserFree(parser);
    }
    void Drop() override {}
    std::size_t Write() override { bench::Fail("expat does not write"); }
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    CExpatPeer peer;
    return bench::RunPeer(peer, nArguments, ppArguments);
}
