#pragma once

#include "tools/quiver-gen/check/SimpleTypes.h"
#include "tools/quiver-gen/cpp/Fields.h"

#include "quiver/generated/Alternatives.h"
#include "quiver/generated/MemberRecord.h"
#include "quiver/generated/RepeatedCol.h"
#include "quiver/generated/Wildcard.h"

#include <string>
#include <vector>

namespace quiver_gen::check
{

/// A simple type with the default or fixed value of the place that it stands at.
struct SValueRules
{
    const CValueType* pType = nullptr;
    binding::SValueRule::EKind eRule = binding::SValueRule::EKind::None;
    const wchar_t* lpctRule = nullptr; ///< the default or fixed value

    /// What a document's text becomes, as a member of a compiled class makes it.
    /// @param bElement an empty element has its default; an attribute is just empty.
    std::wstring Read(std::wstring strText, const wchar_t* lpctName, bool bElement = true) const;

    /// The default or fixed value as it prints: 1.0 is 1.
    std::wstring PrintRule() const;
};

/// What a class holds, with all that the tables of a compiled class would say of it.
struct SDynamicField
{
    cpp::SField field;
    const wchar_t* lpctLabel = nullptr; ///< in messages; null for the name of the element that holds the text
    const wchar_t* lpctName = nullptr;  ///< of the element or attribute
    const wchar_t* lpctUri = nullptr;
    SValueRules value;
    QvXmlLib9::SCreator creator; ///< of objects and groups
    const QvXmlLib9::SAlternatives* pAlternatives = nullptr;
    QvXmlLib9::SRepeatedElement repeated{};
    QvXmlLib9::SWildcard wildcard;
    std::vector<const wchar_t*> uris; ///< of the wildcard
    QvXmlLib9::SMemberRecord record;  ///< for the state of a choice

    /// Whether an empty text has the default that stands for it, as an empty element has it.
    bool IsElement() const { return field.pAttribute == nullptr; }
};

} // namespace quiver_gen::check
