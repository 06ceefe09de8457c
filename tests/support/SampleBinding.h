#pragma once

// A binding made by hand, with one of each thing that can be printed, for the tests of what prints it.

#include "tools/quiver-gen/binding/Binding.h"

#include <string>

namespace quiver_gen::test
{

/// Adds to a binding with a call for each thing.
class CBindingMaker
{
public:
    using EValue = binding::EValue;
    using EMember = binding::EMember;
    using ECardinality = binding::ECardinality;

    explicit CBindingMaker(binding::SBinding& binding)
        : m_binding(binding)
    {
    }

    /// Types and classes belong to it from now on.
    binding::SNamespace& Namespace(const std::string& strUri, const std::string& strCpp, const std::string& strFile);

    /// @param strName `xs::Int`
    binding::SSimpleType& Builtin(const std::string& strName, EValue eValue);

    /// A type derived from a built-in one.
    binding::SSimpleType& Type(const std::string& strName, binding::SSimpleType& base);
    binding::SSimpleType& List(const std::string& strName, binding::SSimpleType& item);

    binding::SClass& Class(const std::string& strName, const std::string& strElement);

    binding::SMember& Value(binding::SClass& type, const std::string& strName, const std::string& strElement,
                            binding::SSimpleType& valueType, ECardinality eCardinality = ECardinality::Required);
    binding::SMember& Object(binding::SClass& type, const std::string& strName, const std::string& strElement,
                             binding::SClass& objectType, ECardinality eCardinality = ECardinality::Required);
    binding::SAttribute& Attribute(binding::SClass& type, const std::string& strName, const std::string& strAttribute,
                                   binding::SSimpleType& valueType, bool bRequired);
    binding::SRoot& Root(const std::string& strName, const std::string& strElement, binding::SClass& type);

private:
    binding::SMember& Member(binding::SClass& type, const std::string& strName, const std::string& strElement,
                             ECardinality eCardinality);

    binding::SBinding& m_binding;
    binding::SNamespace* m_pNamespace = nullptr;
};

/// Two namespaces, `common` and `order`, of which the second needs the first.
void MakeSampleBinding(binding::SBinding& binding);

/// Two namespaces, `left` and `right`, that need each other's bases and simple types.
void MakeCircularBinding(binding::SBinding& binding);

} // namespace quiver_gen::test
