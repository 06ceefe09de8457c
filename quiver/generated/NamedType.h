#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/generated/SimpleType.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

class CXmlElement;
class CXmlSerializationContext;

/// A simple type of a schema by its name. A constant; the texts are literals.
struct SNamedType
{
    const wchar_t* lpctUri;
    const wchar_t* lpctName;
    PfnSimpleType pfnType;
    const CSimpleType* pType = nullptr; ///< instead of pfnType, for a type that is no constant

    const CSimpleType& GetType() const { return pType != nullptr ? *pType : pfnType(); }
};

/// Those that a value may say it has, beside the built-in ones. A constant, as its parts.
struct SNamedTypes
{
    const SNamedType* pFirst;
    std::size_t nCount;

    const SNamedType* begin() const { return pFirst; }
    const SNamedType* end() const { return pFirst + nCount; }
};

/// Gives them: what generated code passes around instead of an object.
using PfnNamedTypes = const SNamedTypes& (*)();

/// For a schema that has no simple type with a name.
QVXMLLIB_API const SNamedTypes& NoNamedTypes();

/// A built-in type, or one of a schema.
/// @return null if there is none of that name.
QVXMLLIB_API const SNamedType* FindNamedType(const SNamedTypes& types, std::wstring_view uri, std::wstring_view name);

/// The type that an element says it has, with `xsi:type`.
/// @param prefix the prefix with which it says so.
/// @return null if it says none.
/// @throws CQvValidationException "Failed to find a suitable substitution element for [%s]" for a type that is not
///         known.
const SNamedType* FindTypeOf(const SNamedTypes& types, const CXmlElement& element,
                             const CXmlSerializationContext& context, std::wstring& prefix);

} // namespace QvXmlLib9
