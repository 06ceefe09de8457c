#pragma once

#include "fuzz/Decisions.h"

#include "quiver/QvXmlLib.h"

#include <cstddef>
#include <string>

/// @file
/// Objects of generated classes by decision: those of the examples and of fuzz/kinds.xsd, which has a member for each
/// kind of value. A value that is refused leaves its member as it was, so that most objects can be written.

namespace fuzz
{

using CObject = CSmartPtr<QvXmlLib9::CXmlObjectBase>;

/// A schema and the classes that were made of it.
struct SClasses
{
    const char* lpcSchema; ///< its path below the source tree
    CObject (*pfnMake)(CDecisions& decisions);
    CObject (*pfnMakeEmpty)();
    CObject (*pfnMakeRoot)(QvXmlLib9::CXmlElement* pElement); ///< as the factory of the classes does
    /// Whether the members of two objects that are written alike are the same.
    bool (*pfnAreSame)(const QvXmlLib9::CXmlObjectBase& left, const QvXmlLib9::CXmlObjectBase& right);
};

inline constexpr std::size_t s_nClasses = 5;
extern const SClasses s_classes[s_nClasses];

/// A context with options that change what is written or read only in ways that both sides know.
QvXmlLib9::CXmlSerializationContext MakeContext(CDecisions& decisions);

/// Sets Fast Infoset options. Those that cannot hold a value let writing fail.
/// @return false if values need not come back: a number that is written as one of another kind.
bool SetInfosetOptions(QvXmlLib9::CXmlSerializationContext& context, CDecisions& decisions);

/// Whether what a text says is changed on purpose on the way through a document: tabs in attributes, text that begins
/// like a CDATA section, and a duration of nothing, which prints as "P".
bool IsChangedOnPurpose(const std::wstring& strXml);

} // namespace fuzz
