// The code of docs/guides/threads.md.
#include "Order.h"
#include "tests/docs/PageDirectory.h"

#include <future>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace QvXmlLib9;
using order::CPurchaseOrder;

class ThreadsGuide : public QvTest::CPageTest
{
protected:
    ThreadsGuide() { Take({"examples/purchase_order/order.xml"}); }
};

TEST_F(ThreadsGuide, EachThreadHasItsOwnObjects)
{
    const std::vector<std::wstring> files(8, L"order.xml");
    // [snippet threads]
    CXmlSerializationContext context; // shared, and not changed any more
    context.SetIgnoreUnknownElements(true);

    std::vector<std::future<CSmartPtr<CPurchaseOrder>>> results;
    for (const std::wstring& strFile : files)
        results.push_back(std::async(std::launch::async,
                                     [&context, strFile]
                                     {
                                         const CSmartPtr<CPurchaseOrder> spOrder = new CPurchaseOrder;
                                         spOrder->FromXmlFile(strFile.c_str(), context);
                                         return spOrder;
                                     }));

    int nItems = 0;
    for (std::future<CSmartPtr<CPurchaseOrder>>& result : results)
        nItems += result.get()->GetItem()->GetCount(); // from here on the object belongs to this thread
    // [end]
    EXPECT_EQ(24, nItems);
}

} // namespace
