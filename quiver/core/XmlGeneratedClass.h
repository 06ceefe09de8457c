#pragma once

#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/CriticalSection.h"

namespace QvXmlLib9Data
{
class CParentElementInfo;
enum XmlElementType : int;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

class CReadBudget;
struct QvVariant;

/// An object whose element may carry `xsi:nil`. A generated class derives from it when its schema element is nillable;
/// the walker finds it by a run-time cast.
class QVXMLLIB_API INillable
{
public:
    virtual bool IsNil() const = 0;
    virtual void SetNil(bool bNil) = 0;

protected:
    INillable() = default;
    INillable(const INillable&) = default;
    INillable& operator=(const INillable&) = default;
    ~INillable() = default;
};

/// The same for classes that take every text which the type boolean has: "1" and "0" too, with white space around them.
class QVXMLLIB_API INillableBoolean : public INillable
{
protected:
    INillableBoolean() = default;
    INillableBoolean(const INillableBoolean&) = default;
    INillableBoolean& operator=(const INillableBoolean&) = default;
    ~INillableBoolean() = default;
};

/// Base of every class that a schema generator writes. Such a class holds properties and tables of metadata and no
/// serialisation code: this base walks the tables. To write, it asks each record to write its member; to read, it hands
/// each record a cursor over the child elements and lets it consume what is its own.
///
/// A generated class implements the five pure operations below, overrides `GetBase`, `GetTargetNamespace` and
/// `GetNamespace`, sets its element name in its constructor, and derives from INillable where its element is nillable.
/// `examples/purchase_order` shows what one looks like.
///
/// Failures are wrapped once for each element level: "Failed to process the element [%s]" on reading, "Failed to
/// convert the element [%s] to XML" on writing, with the cause as inner exception.
///
/// The order of the virtual operations is a contract with generated code.
class QVXMLLIB_API CXmlGeneratedClass : public CXmlObjectBase
{
public:
    /// Reads or stores one property.
    /// @param nPropertyIndex the index that was given to the metadata record.
    /// @param bRead true: `value` receives the property, an unset optional one as an invalid variant; false: the
    ///        property takes `value`.
    virtual void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) = 0;

    /// The one record that describes the class.
    virtual QvXmlLib9Data::CParentElementInfo* GetClassInfo() const = 0;

    /// The records of the child elements in schema order, ended by a null pointer. Called often: return a static.
    virtual QvXmlLib9Data::CElementInfo** GetClassElementInfo() const = 0;

    /// The records of the attributes, ended by a null pointer.
    virtual QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const = 0;

    /// Puts every property back to its initial state. Called at the start of every read.
    virtual void Init() = 0;

protected:
    CXmlGeneratedClass();
    CXmlGeneratedClass(const CXmlGeneratedClass& source);
    CXmlGeneratedClass& operator=(const CXmlGeneratedClass& source);
    ~CXmlGeneratedClass() override;

    void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const override;
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;
    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    /// Offers each attribute of the element to the attribute records, handles `xsi:nil`, and lets each record report
    /// what is missing.
    void ProcessAttributesFromXml(const CXmlSerializationContext& context, CXmlElement* pElement,
                                  bool bFailIfAttributeUnknown);

    /// Whether any element record claims the element.
    bool IsElementInList(const CXmlSerializationContext& context, CXmlElement* pElement) const;

    /// Whether one of the alternatives of a choice may be empty, so that the choice may stay empty.
    bool DoesElementContainOptionalElements() const;

    /// The object's side that may be nil, null if its class has none; as fast as a call.
    const INillable* FindNillable(const QvXmlLib9Data::CParentElementInfo& info) const;

    /// Reads a property of a const object.
    void ReadProperty(int nPropertyIndex, QvVariant& value) const;

    /// Frees a class's metadata: the class record, and both tables with their records. Null pointers are passed over,
    /// and all three are null afterwards.
    static void CleanMetaData(QvXmlLib9Data::CParentElementInfo*& pInfo, QvXmlLib9Data::CElementInfo**& ppElements,
                              QvXmlLib9Data::CAttributeInfo**& ppAttributes);

    /// Guards the first building of the metadata in generated classes. The library itself never takes it. It is there
    /// before any object in static storage is made, and stays when all of them are gone.
    static CQVCriticalSection& m_csInit;

private:
    friend class QvXmlLib9Data::CAttributeInfo;
    friend class QvXmlLib9Data::CElementInfo;

    int GetClassElementInfoCount() const;

    void WriteRootPreamble(CXmlWriter* pWriter, const CXmlSerializationContext& context) const;
    void WriteContent(CXmlWriter* pWriter, const CXmlSerializationContext& context,
                      const QvXmlLib9Data::CParentElementInfo& info, bool bOptionalChoice) const;
    void ProcessAttributesToXml(const CXmlSerializationContext& context, QvXmlLib9Data::CElementInfo** ppElements,
                                QvXmlLib9Data::CAttributeInfo** ppAttributes, CXmlWriter* pWriter) const;
    void ProcessElementSeqToXml(const CXmlSerializationContext& context, QvXmlLib9Data::CElementInfo** ppElements,
                                CXmlWriter* pWriter) const;
    void ProcessElementAllToXml(const CXmlSerializationContext& context, QvXmlLib9Data::CElementInfo** ppElements,
                                CXmlWriter* pWriter) const;
    void ProcessElementChoiceToXml(const CXmlSerializationContext& context, QvXmlLib9Data::CElementInfo** ppElements,
                                   CXmlWriter* pWriter, bool bOptionalChoice) const;

    bool IsGroupWithoutAttributes(const CXmlSerializationContext& context,
                                  const QvXmlLib9Data::CParentElementInfo& info, const CXmlElement& element) const;
    static bool TakesOneElement(const QvXmlLib9Data::CElementInfo& info);
    static bool IsExhaustedBy(QvXmlLib9Data::CElementInfo** ppElements, QvXmlLib9Data::CElementInfo** ppFailed);
    static CXmlElement* SkipUnknown(CReadBudget* pBudget, const QvXmlLib9Data::CElementInfo& info,
                                    const CXmlElement* pParent, CXmlElement* pCurrent);

    /// What the records get as the namespace of their parent.
    std::wstring GetNamespaceForRecords() const;

    CXmlElement* ReadContent(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice);
    CXmlElement* ProcessElementSeqFromXml(const CXmlSerializationContext& context, CXmlElement* pParent,
                                          CXmlElement* pCurrent, QvXmlLib9Data::XmlElementType eElementType);
    CXmlElement* ProcessElementAllFromXml(const CXmlSerializationContext& context, CXmlElement* pParent,
                                          CXmlElement* pCurrent, QvXmlLib9Data::XmlElementType eElementType);
    CXmlElement* ProcessElementChoiceFromXml(const CXmlSerializationContext& context, CXmlElement* pParent,
                                             CXmlElement* pCurrent, QvXmlLib9Data::XmlElementType eElementType,
                                             bool bOptionalChoice);
};

} // namespace QvXmlLib9
