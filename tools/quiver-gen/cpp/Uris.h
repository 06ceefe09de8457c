#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <string>
#include <utility>
#include <vector>

namespace quiver_gen::cpp
{

/// The constants of a source for the XML namespaces that it names.
class CUris
{
public:
    /// @param strMain the one that most of the source is about.
    CUris(const binding::SBinding& binding, std::string strMain);

    /// An expression for an XML namespace, whose constant is defined from now on.
    std::string Use(const std::string& strUri);

    /// The same where the constant itself is needed, also for no namespace.
    std::string UseConstant(const std::string& strUri);

    /// Definitions of the constants that were used, in an unnamed namespace; empty if there are none.
    std::string Define() const;

private:
    std::string MakeName(const std::string& strUri) const;

    const binding::SBinding* m_pBinding; ///< not a reference, so that a state can be kept and restored
    std::string m_strMain;
    std::vector<std::pair<std::string, std::string>> m_constants; ///< namespace and name
};

} // namespace quiver_gen::cpp
