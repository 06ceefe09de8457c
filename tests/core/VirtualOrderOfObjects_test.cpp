// The order of the virtual operations of objects, collections and writers: generated code and applications are compiled
// elsewhere and rely on it.

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/document/XmlElement.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/XmlTextWriter.h"
#include "quiver/values/QvVariant.h"
#include "tests/support/VirtualSlots.h"

#include <gtest/gtest.h>

namespace QvTest
{
namespace
{

using namespace QvXmlLib9;

using Context = CXmlSerializationContext;

/// Names the protected operations of objects.
struct CObject : CXmlObjectBase
{
    using CXmlObjectBase::AttributesToXml_Int;
    using CXmlObjectBase::FromXml_Int;
    using CXmlObjectBase::GetTargetNamespace;
    using CXmlObjectBase::OnEvent;
    using CXmlObjectBase::ToXml_Int;
};

/// The operations of CXmlObjectBase, of which the destructor is the 15th, take 20 places.
constexpr std::ptrdiff_t SlotsOfObject = 14 + SlotsOfDestructor + 5;

TEST(VirtualOrderOfObjects, ObjectBaseHasItsPublicOperationsAheadOfTheDestructor)
{
    EXPECT_EQ(VirtualSlot(&CObject::OnEvent), 0);
    EXPECT_EQ(VirtualSlot(static_cast<CXmlObjectBase* (CXmlObjectBase::*)()>(&CXmlObjectBase::GetBase)), 1);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::ToXmlFile), 2);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::ToFastInfosetFile), 3);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::ToXml), 4);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::ToXmlStream), 5);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::ToFastInfosetStream), 6);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::FromXmlFile), 7);
    using FromText = void (CXmlObjectBase::*)(const wchar_t*, const Context&);
    EXPECT_EQ(VirtualSlot(static_cast<FromText>(&CXmlObjectBase::FromXml)), 8);
    using FromBytes = void (CXmlObjectBase::*)(const char*, const Context&);
    EXPECT_EQ(VirtualSlot(static_cast<FromBytes>(&CXmlObjectBase::FromXml)), 9);
    using FromData = void (CXmlObjectBase::*)(const CBinaryData&, const Context&);
    EXPECT_EQ(VirtualSlot(static_cast<FromData>(&CXmlObjectBase::FromXmlStream)), 10);
    using FromMemory = void (CXmlObjectBase::*)(unsigned char*, unsigned long, const Context&);
    EXPECT_EQ(VirtualSlot(static_cast<FromMemory>(&CXmlObjectBase::FromXmlStream)), 11);
    using FromOpenElement = void (CXmlObjectBase::*)(const CElement*, const Context&);
    EXPECT_EQ(VirtualSlot(static_cast<FromOpenElement>(&CXmlObjectBase::FromXmlElement)), 12);
    using FromParsedElement = void (CXmlObjectBase::*)(const CXmlElement*, const Context&);
    EXPECT_EQ(VirtualSlot(static_cast<FromParsedElement>(&CXmlObjectBase::FromXmlElement)), 13);
}

TEST(VirtualOrderOfObjects, ObjectBaseHasTheOperationsThatDoTheWorkBehindTheDestructor)
{
    EXPECT_EQ(VirtualSlot(&CObject::GetTargetNamespace), 14 + SlotsOfDestructor);
    EXPECT_EQ(VirtualSlot(&CXmlObjectBase::GetNamespace), 14 + SlotsOfDestructor + 1);
    using Attributes = void (CXmlObjectBase::*)(CXmlWriter*, const Context&) const;
    EXPECT_EQ(VirtualSlot(static_cast<Attributes>(&CObject::AttributesToXml_Int)), 14 + SlotsOfDestructor + 2);
    using Write = void (CXmlObjectBase::*)(CXmlWriter*, bool, const wchar_t*, const Context&, bool) const;
    EXPECT_EQ(VirtualSlot(static_cast<Write>(&CObject::ToXml_Int)), 14 + SlotsOfDestructor + 3);
    using Read = CXmlElement* (CXmlObjectBase::*)(CXmlElement*, CXmlElement*, const Context&, bool);
    EXPECT_EQ(VirtualSlot(static_cast<Read>(&CObject::FromXml_Int)), 14 + SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CXmlObjectBase>(), SlotsOfObject);
}

TEST(VirtualOrderOfObjects, InterfacesHaveTheirOperationsAlone)
{
    EXPECT_EQ(VirtualSlot(&IEventSink::OnEvent), 0);
    EXPECT_EQ(VirtualSlot(&INillable::IsNil), 0);
    EXPECT_EQ(VirtualSlot(&INillable::SetNil), 1);
}

TEST(VirtualOrderOfObjects, GeneratedClassAddsItsContract)
{
    EXPECT_EQ(VirtualSlot(&CXmlGeneratedClass::AccessProperty), SlotsOfObject);
    EXPECT_EQ(VirtualSlot(&CXmlGeneratedClass::GetClassInfo), SlotsOfObject + 1);
    EXPECT_EQ(VirtualSlot(&CXmlGeneratedClass::GetClassElementInfo), SlotsOfObject + 2);
    EXPECT_EQ(VirtualSlot(&CXmlGeneratedClass::GetClassAttributeInfo), SlotsOfObject + 3);
    EXPECT_EQ(VirtualSlot(&CXmlGeneratedClass::Init), SlotsOfObject + 4);
    EXPECT_EQ(CountOfSlots<CXmlGeneratedClass>(), SlotsOfObject + 5);
}

/// Names the protected operations of collections.
struct CNumbers : Ci4Col
{
    using CXmlTypeCollection::AddFromString;
};
struct CDates : CdatetimeBaseCol
{
    using CdatetimeBaseCol::ItemToString;
};
struct CElements : CElementCol
{
    using CElementCol::FromXmlLockElementName_Int;
};

constexpr std::ptrdiff_t SlotsOfCollection = SlotsOfObject + 5;

TEST(VirtualOrderOfObjects, CollectionsAddCountingAndRemoving)
{
    EXPECT_EQ(VirtualSlot(&CXmlCollectionBase::GetCount), SlotsOfObject);
    EXPECT_EQ(VirtualSlot(&CXmlCollectionBase::Clear), SlotsOfObject + 1);
    EXPECT_EQ(VirtualSlot(&CXmlCollectionBase::Remove), SlotsOfObject + 2);
    EXPECT_EQ(VirtualSlot(&CXmlCollectionBase::ValidateCount), SlotsOfObject + 3);
    EXPECT_EQ(VirtualSlot(&CXmlCollectionBase::IsValidCount), SlotsOfObject + 4);
    EXPECT_EQ(CountOfSlots<CXmlCollectionBase>(), SlotsOfCollection);
    EXPECT_EQ(CountOfSlots<CXmlCollection>(), SlotsOfCollection);
    EXPECT_EQ(CountOfSlots<CAttributeCol>(), SlotsOfCollection);
}

TEST(VirtualOrderOfObjects, TypedCollectionsAddTheirConversions)
{
    EXPECT_EQ(VirtualSlot(&CNumbers::AddFromString), SlotsOfCollection);
    EXPECT_EQ(CountOfSlots<Ci4Col>(), SlotsOfCollection + 1);
    EXPECT_EQ(CountOfSlots<CstringCol>(), SlotsOfCollection + 1);

    EXPECT_EQ(VirtualSlot(&CdatetimeBaseCol::Add), SlotsOfCollection + 1);
    EXPECT_EQ(VirtualSlot(&CdatetimeBaseCol::AddAt), SlotsOfCollection + 2);
    EXPECT_EQ(VirtualSlot(&CdatetimeBaseCol::Item), SlotsOfCollection + 3);
    EXPECT_EQ(VirtualSlot(&CDates::ItemToString), SlotsOfCollection + 4);
    EXPECT_EQ(CountOfSlots<CdateCol>(), SlotsOfCollection + 5);
}

TEST(VirtualOrderOfObjects, ElementCollectionAddsItsLockedReading)
{
    EXPECT_EQ(VirtualSlot(&CElements::FromXmlLockElementName_Int), SlotsOfCollection);
    EXPECT_EQ(CountOfSlots<CElementCol>(), SlotsOfCollection + 1);
}

TEST(VirtualOrderOfObjects, WriterHasItsOperationsBehindTheDestructor)
{
    EXPECT_EQ(VirtualSlot(&CXmlWriter::Open), SlotsOfDestructor);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::Close), SlotsOfDestructor + 1);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::SetDefaultNamespace), SlotsOfDestructor + 2);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::AddNamespaceMapping), SlotsOfDestructor + 3);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteComment), SlotsOfDestructor + 4);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteProcessingInstruction), SlotsOfDestructor + 5);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteInlineSchema), SlotsOfDestructor + 6);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::StartElement), SlotsOfDestructor + 7);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteText), SlotsOfDestructor + 8);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::EndElement), SlotsOfDestructor + 9);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteAttribute), SlotsOfDestructor + 10);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteXsiType), SlotsOfDestructor + 11);
    EXPECT_EQ(VirtualSlot(&CXmlWriter::WriteXsiNil), SlotsOfDestructor + 12);
    EXPECT_EQ(CountOfSlots<CXmlWriter>(), SlotsOfDestructor + 13);
    EXPECT_EQ(CountOfSlots<CXmlTextWriter>(), SlotsOfDestructor + 13);
}

TEST(VirtualOrderOfObjects, TextStreamHasItsOperationsBehindTheDestructor)
{
    EXPECT_EQ(VirtualSlot(&CTextStream::Open), SlotsOfDestructor);
    EXPECT_EQ(VirtualSlot(&CTextStream::Close), SlotsOfDestructor + 1);
    EXPECT_EQ(VirtualSlot(&CTextStream::Flush), SlotsOfDestructor + 2);
    EXPECT_EQ(CountOfSlots<CTextStream>(), SlotsOfDestructor + 3);
}

TEST(VirtualOrderOfObjects, ValuesAndNodesHaveNothingVirtualButTheDestructor)
{
    EXPECT_EQ(CountOfSlots<QvVariant>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CDateTime>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CDateTimeSpan>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CDecimal>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CBigInteger>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CPrimitiveRestrictions>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CXmlSerializationContext>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CXmlElement>(), SlotsOfDestructor);
    EXPECT_EQ(CountOfSlots<CXmlAttribute>(), SlotsOfDestructor);
}

} // namespace
} // namespace QvTest
