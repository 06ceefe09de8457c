#pragma once

#include "tools/quiver-gen/check/Fields.h"

#include "quiver/generated/ClassDescription.h"
#include "quiver/generated/GeneratedClass.h"

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace quiver_gen::check
{

class CDynamicClass;
class CModel;

/// Makes objects of a class, for records of metadata and tables of alternatives: its creator is good as long as it
/// lives.
class CMaker
{
public:
    /// @param lpctRootUri the namespace of a root element, null for the class's own.
    /// @param bNeverNil the objects are nillable by their class and may not be nil.
    explicit CMaker(CDynamicClass& made, const wchar_t* lpctRootUri = nullptr, bool bNeverNil = false);
    ~CMaker();
    CMaker(const CMaker&) = delete;
    CMaker& operator=(const CMaker&) = delete;

    QvXmlLib9::SCreator GetCreator() const;

private:
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nMaker, const wchar_t* lpctElementName);

    CDynamicClass& m_class;
    const wchar_t* m_lpctRootUri;
    bool m_bNeverNil;
    int m_nMaker;
};

/// A class of a binding that exists while the program runs: what a compiled class says by its code, as data. Its
/// objects are of CDynamicObject.
class CDynamicClass
{
public:
    /// @param pBase the class that it extends or restricts, null for none.
    CDynamicClass(CModel& model, const binding::SClass& type, CDynamicClass* pBase);
    ~CDynamicClass();
    CDynamicClass(const CDynamicClass&) = delete;
    CDynamicClass& operator=(const CDynamicClass&) = delete;

    bool IsNillable() const { return m_bNillable; }
    QvXmlLib9::SCreator GetCreator() const { return m_maker.GetCreator(); }

    const QvXmlLib9::SAlternatives& GetAlternatives() const { return m_all; }
    void SetAlternatives(std::vector<QvXmlLib9::SAlternative> alternatives);

    /// The default or fixed value of the element's text.
    void SetTextRule(const binding::SValueRule& rule) { m_pTextRule = &rule; }

    /// The tables of metadata.
    const QvXmlLib9::SClassTables& GetTables();

    /// A member by its number: the field of the class that holds it, and those of the classes that restrict it, those
    /// of the first base first.
    struct SProperty
    {
        const SDynamicField* pField = nullptr;
        std::vector<const SDynamicField*> restrictions;
    };
    const std::vector<SProperty>& GetProperties();

    /// Says what a compiled class says in its operation of that name.
    void Describe(QvXmlLib9::CClassDescription& description);

private:
    using Numbers = std::unordered_map<std::string, int>;

    /// What this class adds to its base. It and the tables are made when they are needed first: of the thousands of
    /// classes of a large schema, a document uses a few.
    const std::deque<SDynamicField>& GetFields();
    void FillMember(SDynamicField& target) const;
    void FillWildcard(SDynamicField& target) const;

    void Build();
    static void AddProperties(const std::deque<SDynamicField>& fields, Numbers& numbers,
                              std::vector<SProperty>& properties);
    void DescribeOwn(QvXmlLib9::CClassDescription& description, const Numbers& numbers);
    void DescribeClass(QvXmlLib9::CClassDescription& description) const;

    CModel& m_model;
    const binding::SClass& m_type;
    CDynamicClass* m_pBase;
    bool m_bNillable;
    CMaker m_maker;
    std::vector<QvXmlLib9::SAlternative> m_alternatives;
    QvXmlLib9::SAlternatives m_all{nullptr, 0};
    const binding::SValueRule* m_pTextRule = nullptr;
    bool m_bFields = false;
    std::deque<SDynamicField> m_fields;
    std::vector<SProperty> m_properties;
    QvXmlLib9::SClassTables m_tables;
};

} // namespace quiver_gen::check
