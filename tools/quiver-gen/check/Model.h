#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/check/DynamicClass.h"
#include "tools/quiver-gen/check/SimpleTypes.h"
#include "tools/quiver-gen/check/Texts.h"

#include <deque>
#include <string>
#include <unordered_map>

namespace quiver_gen::check
{

/// The classes of a binding, made while the program runs. It outlives the objects that are made of it, and is used by
/// one thread at a time.
class CModel
{
public:
    /// @param binding stays as it is as long as the model lives.
    explicit CModel(const binding::SBinding& binding);
    CModel(const CModel&) = delete;
    CModel& operator=(const CModel&) = delete;

    /// Reads a document into an object of the class that its root element tells, as the factory of compiled classes
    /// does.
    /// @param strBytes text or Fast Infoset.
    /// @throws QvXmlLib9::CQvException as compiled classes do.
    CSmartPtr<QvXmlLib9::CXmlObjectBase> Read(std::string strBytes) const;

    CTexts& Texts() { return m_texts; }
    CSimpleTypes& Types() { return m_types; }
    /// All global elements and attributes.
    const QvXmlLib9::SKnownDeclarations& GetKnown() const { return m_known; }
    CDynamicClass& Get(const binding::SClass& type) { return *m_byType.at(&type); }

    /// All simple types with names.
    const QvXmlLib9::SNamedTypes& GetNamedTypes() const { return m_namedTypes; }

    /// A new class for an element with a simple value.
    CDynamicClass& MakeValueClass(const binding::SSimpleType& type, const binding::SValueRule& rule, bool bNillable);

private:
    void AddClasses(const binding::SBinding& binding);
    QvXmlLib9::SAlternative MakeAlternative(const CDynamicClass& listing,
                                            const binding::SClass::SAlternative& alternative);
    QvXmlLib9::SAlternative MakeRoot(const binding::SRoot& root);

    CTexts m_texts;
    CSimpleTypes m_types;
    std::deque<binding::SClass> m_valueTypes; ///< what the classes of simple values are made from
    std::deque<CDynamicClass> m_classes;
    std::unordered_map<const binding::SClass*, CDynamicClass*> m_byType;
    std::deque<CMaker> m_rootMakers;
    std::vector<QvXmlLib9::SAlternative> m_roots;
    std::vector<QvXmlLib9::SKnownAttribute> m_attributes;
    QvXmlLib9::SKnownDeclarations m_known{{nullptr, 0}, nullptr, 0};
    std::vector<QvXmlLib9::SNamedType> m_typeRows;
    QvXmlLib9::SNamedTypes m_namedTypes{nullptr, 0};
};

} // namespace quiver_gen::check
