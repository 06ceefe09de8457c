#pragma once

#include <string>

namespace QvXmlLib9
{

class CXmlElement;

/// The type that an element says it has, with `xsi:type`.
struct SDeclaredType
{
    /// What the attribute holds.
    /// @param element must live as long as `pUri` is used.
    explicit SDeclaredType(const CXmlElement& element);

    bool bSaid;
    bool bPrefix;
    std::wstring strPrefix;
    std::wstring strName;
    const std::wstring* pUri; ///< null where the declarations in force say nothing about the prefix
};

} // namespace QvXmlLib9
