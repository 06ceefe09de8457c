#pragma once

#include "Order.h"
#include "bench/PurchaseOrderText.h"

#include <string>

/// @file
/// Reading the purchase order document into objects, for the benchmarks that read and write it.

namespace bench
{

inline QvXmlLib9::CXmlSerializationContext Context()
{
    QvXmlLib9::CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:order");
    return context;
}

inline void Read(order::CPurchaseOrder& purchaseOrder, const std::string& strXml,
                 const QvXmlLib9::CXmlSerializationContext& context)
{
    purchaseOrder.FromXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(strXml.data())),
                                static_cast<unsigned long>(strXml.size()), context);
}

} // namespace bench
