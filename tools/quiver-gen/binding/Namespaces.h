#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Names.h"

#include <string>
#include <unordered_map>

namespace quiver_gen::binding
{

/// The C++ namespace for a target namespace: its last speaking part, with what comes before a version.
/// `http://www.example.com/IPO` gives `ipo`, `urn:example:order:1.2` gives `order_1_2`.
/// @param nWords how many speaking parts to take; more of them tell similar namespaces apart.
std::string NameOfUri(const std::string& strUri, int nWords = 1);

/// The namespaces of a binding, by their URI, made when they are first asked for.
class CNamespaces
{
public:
    CNamespaces(const schema::SSchemaSet& set, const SBindingOptions& options, SBinding& binding);

    SNamespace& Get(const std::string& strUri);

    /// Names of types in a C++ namespace, which several target namespaces may share.
    CNameScope& GetTypeNames(const SNamespace& item);

private:
    const schema::SSchemaSet& m_set;
    const SBindingOptions& m_options;
    SBinding& m_binding;
    std::unordered_map<std::string, SNamespace*> m_byUri;
    std::unordered_map<std::string, CNameScope> m_typeNames;
    CNameScope m_cppNames;
    CNameScope m_files{CNameScope::ECase::Blind};

    std::string ChooseName(const std::string& strUri);
    std::string NameWithoutUri() const;
    std::string ChooseFile(const std::string& strCpp);
};

} // namespace quiver_gen::binding
