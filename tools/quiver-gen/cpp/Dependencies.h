#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <functional>
#include <vector>

namespace quiver_gen::cpp
{

/// @name What has to be declared in full in front of a declaration
/// Types that are printed, without the built-in ones and without those that a forward declaration is enough for.
/// @{
void ForEachNeeded(const binding::SSimpleType& type, const std::function<void(const binding::SSimpleType&)>& Visit);
void ForEachNeeded(const binding::SClass& type, const std::function<void(const binding::SSimpleType&)>& VisitType,
                   const std::function<void(const binding::SClass&)>& VisitClass);
/// @}

/// @name What has to be declared in full in front of a definition
/// @{
void ForEachUsed(const binding::SSimpleType& type, const std::function<void(const binding::SSimpleType&)>& Visit);
void ForEachUsed(const binding::SClass& type, const std::function<void(const binding::SSimpleType&)>& VisitType,
                 const std::function<void(const binding::SClass&)>& VisitClass);
/// @}

/// Declarations that belong into one header: a namespace, or a layer of one.
struct SLayer
{
    const binding::SNamespace* pNamespace = nullptr;
    std::size_t nLayer = 0; ///< from 0
    std::vector<const binding::SSimpleType*> simpleTypes;
    std::vector<const binding::SClass*> classes;
};

/// All declarations, each layer behind those that it needs. A namespace has more than one layer only where it and
/// others need each other.
std::vector<SLayer> FindLayers(const binding::SBinding& binding);

} // namespace quiver_gen::cpp
