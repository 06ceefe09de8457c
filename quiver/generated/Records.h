#pragma once

#include "quiver/generated/Alternatives.h"
#include "quiver/generated/NamedType.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/generated/Wildcard.h"
#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfo.h"

#include <memory>

/// @file
/// Records of metadata for what generated classes hold beyond what the families CElementInfoSeq, Choice and All know:
/// values that check themselves, elements that others may stand for, wildcards with any set of namespaces. Internal to
/// the library; CClassDescription makes them.

namespace QvXmlLib9
{

using QvXmlLib9Data::CAttributeInfo;
using QvXmlLib9Data::CElementInfo;
using QvXmlLib9Data::XmlElementGroupType;

/// Where a record stands: in what group, under which number, and whether what it is for has to be there.
struct SRecordPlace
{
    XmlElementGroupType eGroup;
    int nMember;
    bool bRequired;
};

/// An element with a simple value. The value travels as text when it is read and as its own kind when it is written;
/// the member behind it checks it.
std::unique_ptr<CElementInfo> MakeValueRecord(const SRecordPlace& place, const wchar_t* lpctName,
                                              const wchar_t* lpctNamespace, const CSimpleType& type);

/// The text of an element whose values may have prefixes.
std::unique_ptr<CElementInfo> MakeNamesTextRecord(const SRecordPlace& place, const CSimpleType& type);

/// The text of an element that may say its type with `xsi:type`, and what it says.
struct STypedText
{
    int nText;
    int nType; ///< a name with a prefix
    const SNamedTypes* pTypes;
};
std::unique_ptr<CElementInfo> MakeTypedTextRecord(const STypedText& text);

/// @return null if the record is that of something else.
const STypedText* FindTypedText(const CElementInfo& record);

/// The text of mixed content.
std::unique_ptr<CElementInfo> MakeMixedTextRecord(const SRecordPlace& place);

/// Checks that an element with a simple value has neither attributes nor children.
/// @throws CQvValidationException "Failed to process the element [%s]" with the failure of the class walk inside.
void Throw_IfNotSimple(const CXmlSerializationContext& context, CXmlElement& element);

/// An element with an object whose class its name or `xsi:type` decides.
std::unique_ptr<CElementInfo> MakePolymorphicRecord(const SRecordPlace& place, const SPlace& alternatives);

/// An element that the schema does not describe.
std::unique_ptr<CElementInfo> MakeWildcardRecord(const SRecordPlace& place, const SWildcard& wildcard);

/// An attribute with a simple value.
std::unique_ptr<CAttributeInfo> MakeAttributeRecord(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                                    bool bOptional, const wchar_t* lpctDefault,
                                                    const CSimpleType& type);

/// All attributes that a wildcard lets through. One that it does not is no attribute of the class.
std::unique_ptr<CAttributeInfo> MakeAnyAttributeRecord(int nMember, const SWildcard& wildcard);

} // namespace QvXmlLib9
