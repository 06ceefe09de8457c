#pragma once

#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/metadata/ElementInfo.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/QvVariant.h"
#include "tests/support/Expect.h"
#include "tests/support/RecordingWriter.h"

#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// What a metadata record meets in production, cut down to what a test wants to see: an object with one property, a
/// child, a collection, and the children of a parsed element.

namespace QvTest
{

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

/// The namespace that elements of test documents are in unless they say otherwise.
inline constexpr wchar_t Namespace[] = L"urn:t";

/// What records under test are constructed with.
inline constexpr int Index = 7;
inline constexpr int ClassId = 42;

/// What `Run` throws: "Validation: " and its like for the class, then the full message. Empty if it throws nothing.
template <class TRun>
std::wstring FailureOf(TRun Run)
{
    try
    {
        Run();
    }
    catch (const CQvInvalidValueException& ex)
    {
        return L"InvalidValue: " + ex.GetFullMessage();
    }
    catch (const CQvInvalidNamespaceException& ex)
    {
        return L"InvalidNamespace: " + ex.GetFullMessage();
    }
    catch (const CQvValidationException& ex)
    {
        return L"Validation: " + ex.GetFullMessage();
    }
    catch (const CQvException& ex)
    {
        return L"Failure: " + ex.GetFullMessage();
    }
    return std::wstring();
}

/// A child that takes one element of its own name at the cursor it is given. What it was asked to read, and with which
/// choice option, stays in it.
class CRecordingChild : public CXmlObjectBase
{
public:
    explicit CRecordingChild(const wchar_t* lpctName = L"own")
        : CInstanceMonitor(L"CRecordingChild")
    {
        SetElementName(lpctName);
    }

    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return Namespace; }

    int m_nReads = 0;
    int m_nTaken = 0;
    bool m_bOptionalChoice = false;
    std::wstring m_strParent;
    std::wstring m_strFirst;

protected:
    std::wstring GetTargetNamespace() const override { return Namespace; }

    void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext&) const override
    {
        pWriter->WriteAttribute(L"of", L"", GetElementName(), ItemType_string);
    }

    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri, const CXmlSerializationContext&,
                   bool bOptionalChoice) const override
    {
        pWriter->StartElement(GetElementName(), lpctNamespaceUri);
        pWriter->WriteText(bIsRoot ? L"root" : bOptionalChoice ? L"optional choice" : L"child", ItemType_string);
        pWriter->EndElement();
    }

    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override
    {
        ++m_nReads;
        m_bOptionalChoice = bOptionalChoice;
        m_strParent = pElement->GetLocalName();
        m_strFirst = pFirstChild != nullptr ? pFirstChild->GetLocalName() : L"(none)";
        if (pFirstChild == nullptr || !DoesElementNameMatch(context, pFirstChild, GetElementName().c_str(), Namespace))
            return pFirstChild;
        ++m_nTaken;
        return pFirstChild->GetNextSiblingElement();
    }
};

/// A collection of such children, which takes the run of elements of its name.
class CRecordingCol : public CXmlCollection
{
public:
    CRecordingCol(const wchar_t* lpctName, int nMinOccurs, int nMaxOccurs)
        : CInstanceMonitor(L"CRecordingCol")
        , CXmlCollection(lpctName, Namespace, nMinOccurs, nMaxOccurs)
    {
    }

    void Add() { AppendItem(new CRecordingChild(GetElementName().c_str())); }

protected:
    void ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri, const CXmlSerializationContext&,
                   bool) const override
    {
        pWriter->StartElement(GetElementName(), lpctNamespaceUri);
        pWriter->WriteText(std::to_wstring(GetCount()) + L" items", ItemType_string);
        pWriter->EndElement();
    }

    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool) override
    {
        CXmlElement* pCurrent = pFirstChild;
        while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, GetElementName().c_str(), Namespace))
        {
            Add();
            pCurrent = pCurrent->GetNextSiblingElement();
        }
        return pCurrent;
    }
};

/// A generated class with one property, which it keeps in the form in which the metadata hand it over.
class CRecordingObject : public CXmlGeneratedClass
{
public:
    CRecordingObject()
        : CInstanceMonitor(L"CRecordingObject")
    {
    }

    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override
    {
        m_nLastIndex = nPropertyIndex;
        if (bRead)
        {
            value = m_value;
            return;
        }
        ++m_nStores;
        m_strStores += StateOf(value);
        if (m_bRefuse)
            throw CQvInvalidParamException(L"refused");
        m_value = value;
    }

    CParentElementInfo* GetClassInfo() const override { return nullptr; }
    CElementInfo** GetClassElementInfo() const override { return nullptr; }
    CAttributeInfo** GetClassAttributeInfo() const override { return nullptr; }
    void Init() override {}
    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return Namespace; }
    std::wstring GetTargetNamespace() const override { return L"urn:target"; }

    QvVariant m_value;
    int m_nStores = 0;
    /// What each store was given: "value", "null", "unread child" or "read child", each behind a blank.
    std::string m_strStores;
    int m_nLastIndex = -1;
    /// The setter throws instead of storing.
    bool m_bRefuse = false;

private:
    static const char* StateOf(const QvVariant& value)
    {
        if (value.GetTypeAsEnum() != ItemType_XmlObjectBase)
            return " value";
        const auto* const pChild = dynamic_cast<CRecordingChild*>(value.XmlObjectPtr());
        return pChild == nullptr ? " null" : pChild->m_nReads == 0 ? " unread child" : " read child";
    }
};

/// A document `<root xmlns="urn:t">...</root>`, and a cursor over the children of its root.
class CChildren
{
public:
    explicit CChildren(const std::wstring& strChildren)
    {
        m_document.LoadXml((L"<root xmlns=\"urn:t\">" + strChildren + L"</root>").c_str());
        m_pCurrent = Parent()->GetFirstElement();
    }

    CXmlElement* Parent() { return m_document.GetDocumentElement(); }
    CXmlElement** Cursor() { return &m_pCurrent; }

    /// Position of the cursor: 0 for the first child; '-' behind the last.
    char Position()
    {
        char cPosition = '0';
        for (CXmlElement* p = Parent()->GetFirstElement(); p != nullptr; p = p->GetNextSiblingElement(), ++cPosition)
            if (p == m_pCurrent)
                return cPosition;
        return m_pCurrent == nullptr ? '-' : '?';
    }

private:
    CXmlDocument m_document;
    CXmlElement* m_pCurrent = nullptr;
};

/// Lets a record read at the cursor.
inline bool Read(CElementInfo& record, CRecordingObject& object, CChildren& children, XmlElementType eParentType,
                 const CXmlSerializationContext& context = CXmlSerializationContext(),
                 const wchar_t* lpctParentNamespace = Namespace)
{
    return record.ElementFromXml(context, &object, children.Parent(), children.Cursor(), lpctParentNamespace,
                                 eParentType);
}

/// Options of a conversion, in the form of one expression.
inline CXmlSerializationContext IgnoringUnknownElements()
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    return context;
}

inline CXmlSerializationContext IgnoringMissingMandatoryElements()
{
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    return context;
}

/// An enumeration as generated code has them; it knows 5 alone.
inline const wchar_t* FiveToString(int nValue)
{
    return nValue == 5 ? L"5" : L"unknown";
}

inline int FiveFromString(const wchar_t* lpctValue)
{
    if (std::wcscmp(lpctValue, L"5") != 0)
        throw CQvInvalidValueException(std::wstring(L"no such value: ") + lpctValue);
    return 5;
}

enum class Creator
{
    GivesChild,
    GivesNull
};

/// What the creators below shall do, and what they were asked for.
struct SCreations
{
    Creator eCreator = Creator::GivesChild;
    int nCount = 0;
    int nClassId = 0;
    std::wstring strName;
};
inline SCreations g_creations;

inline CSmartPtr<CXmlObjectBase> CreateChild(int nClassId, const wchar_t* lpctElementName)
{
    ++g_creations.nCount;
    g_creations.nClassId = nClassId;
    g_creations.strName = lpctElementName;
    return g_creations.eCreator == Creator::GivesNull ? nullptr : new CRecordingChild(lpctElementName);
}

inline CSmartPtr<CXmlObjectBase> CreateChildFromElement(CXmlElement* pElement)
{
    return CreateChild(0, pElement->GetLocalName().c_str());
}

} // namespace QvTest
