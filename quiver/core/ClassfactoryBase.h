#pragma once

#include "quiver/foundation/Export.h"

#include <string>

namespace QvXmlLib9
{

class CXmlElement;

/// Base of generated class factories. Where a schema type has derived types, the class of the object to build is known
/// only from the document's `xsi:type`; a generated factory decodes it with these two operations, looks the pair up in
/// its own table, and constructs the class found.
///
/// Both only read the tree.
class QVXMLLIB_API CClassfactoryBase
{
public:
    virtual ~CClassfactoryBase();

protected:
    /// Local name in the element's `xsi:type`: what follows the first colon, or the whole value. Empty if there is no
    /// `xsi:type`, which means that the declared class applies.
    static std::wstring GetElementType(CXmlElement* pElement);

    /// Namespace URI of the element's `xsi:type`. The prefix is resolved by the document's last declaration of it, not
    /// by the one in scope. Without a prefix, or with one that is not declared, it is the element's own namespace.
    static std::wstring GetElementTypeNamespaceUri(CXmlElement* pElement);
};

} // namespace QvXmlLib9
