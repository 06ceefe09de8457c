// pugixml: a tree without types or checks.

#include "bench/peers/Peer.h"

#include <pugixml.hpp>

namespace
{

struct SMemoryWriter : pugi::xml_writer
{
    void write(const void* pData, std::size_t nSize) override
    {
        strText.append(static_cast<const char*>(pData), nSize);
    }
    std::string strText;
};

class CPugixmlPeer : public bench::CPeer
{
public:
    void Read(const std::string& strXml) override
    {
        if (!m_document.load_buffer(strXml.data(), strXml.size()))
            bench::Fail("pugixml refused the document");
    }
    void Drop() override { m_document.reset(); }
    std::size_t Write() override
    {
        SMemoryWriter writer;
        m_document.save(writer);
        return writer.strText.size();
    }

private:
    pugi::xml_document m_document;
};

} // namespace

int main(int nArguments, char** ppArguments)
{
    CPugixmlPeer peer;
    return bench::RunPeer(peer, nArguments, ppArguments);
}
