#include "tools/quiver-gen/cpp/Scope.h"

#include <utility>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

constexpr std::string_view s_svLibrary = "QvXmlLib9";

std::string Join(const std::string& strNamespace, std::string_view svName)
{
    return strNamespace.empty() ? std::string(svName) : strNamespace + "::" + std::string(svName);
}

} // namespace

CNameTable::CNameTable(const SBinding& binding)
{
    for (const SNamespace& ns : binding.namespaces)
    {
        for (std::size_t n = ns.strCpp.find("::"); n != std::string::npos; n = ns.strCpp.find("::", n + 2))
            m_names.insert(ns.strCpp.substr(0, n));
        m_names.insert(ns.strCpp);
        for (const SSimpleType* const pType : ns.simpleTypes)
        {
            m_names.insert(Join(ns.strCpp, pType->strName));
            if (pType->eValue == EValue::Enumeration)
                m_names.insert(Join(ns.strCpp, pType->strEnumName));
        }
        for (const SClass* const pClass : ns.classes)
            m_names.insert(Join(ns.strCpp, pClass->strName));
    }
}

bool CNameTable::Declares(const std::string& strNamespace, std::string_view svName) const
{
    return m_names.count(Join(strNamespace, svName)) != 0;
}

std::string CNameTable::GetCollectionName(const SClass& item) const
{
    std::string strName = item.strName + "Col";
    return Declares(item.pNamespace->strCpp, strName) ? std::string() : strName;
}

CScope::CScope(const CNameTable& names, std::string strNamespace, bool bUsing)
    : m_names(names)
    , m_strNamespace(std::move(strNamespace))
    , m_bUsing(bUsing)
{
}

bool CScope::IsHidden(std::string_view svName, const std::string& strMeant, bool bGlobalToo) const
{
    for (std::string strOuter = m_strNamespace; !strOuter.empty();)
    {
        if (Join(strOuter, svName) == strMeant)
            return false;
        if (m_names.Declares(strOuter, svName))
            return true;
        const std::size_t nEnd = strOuter.rfind("::");
        strOuter.resize(nEnd == std::string::npos ? 0 : nEnd);
    }
    return bGlobalToo && m_names.Declares({}, svName);
}

std::string CScope::Library(std::string_view svName) const
{
    const std::string_view svFirst = svName.substr(0, svName.find_first_of(":<"));
    if (m_bUsing && !IsHidden(svFirst, {}, true))
        return std::string(svName);
    return Join(std::string(s_svLibrary), svName);
}

std::string CScope::Pointer(std::string_view svType) const
{
    return std::string(IsHidden("CSmartPtr", {}, false) ? "::" : "") + "CSmartPtr<" + std::string(svType) + '>';
}

std::string CScope::Name(const std::string& strNamespace, std::string_view svName) const
{
    if (strNamespace == m_strNamespace)
        return std::string(svName);
    if (strNamespace.empty())
        return "::" + std::string(svName);
    const std::string strFirst = strNamespace.substr(0, strNamespace.find("::"));
    // With the using directive, a namespace of the library may have the same name.
    const bool bAmbiguous = m_bUsing && strFirst == "xs";
    return (IsHidden(strFirst, strFirst, false) || bAmbiguous ? "::" : "") + Join(strNamespace, svName);
}

std::string CScope::Name(const SClass& type) const
{
    return Name(type.pNamespace->strCpp, type.strName);
}

std::string CScope::Name(const SSimpleType& type) const
{
    return type.bBuiltin ? Library(type.strName) : Name(type.pNamespace->strCpp, type.strName);
}

std::string CScope::Value(const SSimpleType& type) const
{
    switch (type.eValue)
    {
    case EValue::String:
        return "std::wstring";
    case EValue::Boolean:
        return "bool";
    case EValue::I1:
        return "signed char";
    case EValue::I2:
        return "short";
    case EValue::I4:
        return "int";
    case EValue::I8:
        return "long long";
    case EValue::UI1:
        return "unsigned char";
    case EValue::UI2:
        return "unsigned short";
    case EValue::UI4:
        return "unsigned int";
    case EValue::UI8:
        return "unsigned long long";
    case EValue::R4:
        return "float";
    case EValue::R8:
        return "double";
    case EValue::Decimal:
        return Library("CDecimal");
    case EValue::Integer:
        return Library("CBigInteger");
    case EValue::DateTime:
        return Library("CDateTime");
    case EValue::Duration:
        return Library("CDateTimeSpan");
    case EValue::Binary:
        return Library("CBinaryData");
    case EValue::Enumeration:
        return type.pNamespace == nullptr ? Name(type) + "::Value" : Name(type.pNamespace->strCpp, type.strEnumName);
    case EValue::List:
        return "std::vector<" + Value(*type.pItem) + '>';
    }
    return {};
}

bool IsScalar(const SSimpleType& type)
{
    switch (type.eValue)
    {
    case EValue::Boolean:
    case EValue::I1:
    case EValue::I2:
    case EValue::I4:
    case EValue::I8:
    case EValue::UI1:
    case EValue::UI2:
    case EValue::UI4:
    case EValue::UI8:
    case EValue::R4:
    case EValue::R8:
    case EValue::Enumeration:
        return true;
    case EValue::String:
    case EValue::Decimal:
    case EValue::Integer:
    case EValue::DateTime:
    case EValue::Duration:
    case EValue::Binary:
    case EValue::List:
        return false;
    }
    return false;
}

bool HoldsText(const SSimpleType& type)
{
    return type.eValue == EValue::String || (type.eValue == EValue::List && HoldsText(*type.pItem));
}

} // namespace quiver_gen::cpp
