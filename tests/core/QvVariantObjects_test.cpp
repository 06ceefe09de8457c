#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/values/QvVariant.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace QvXmlLib9;

namespace
{

/// An object with nothing but its count; it tells when it goes.
class CProbe : public CXmlObjectBase
{
public:
    explicit CProbe(bool& bAlive)
        : CInstanceMonitor(L"CProbe")
        , m_bAlive(bAlive)
    {
        m_bAlive = true;
    }
    ~CProbe() override { m_bAlive = false; }

    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetTargetNamespace() const override { return {}; }
    std::wstring GetNamespace() const override { return {}; }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override
    {
        return nullptr;
    }

private:
    bool& m_bAlive;
};

long CountOf(CXmlObjectBase& object)
{
    const long lCount = object.AddRef() - 1;
    object.Release();
    return lCount;
}

CSmartPtr<Ci4Col> MakeCollection()
{
    return new Ci4Col(L"item", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                      CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
}

} // namespace

TEST(QvVariantObjects, HoldsAReferenceOnItsObject)
{
    bool bAlive = false;
    CSmartPtr<CProbe> spProbe = new CProbe(bAlive);
    {
        QvVariant value;
        value.SetXmlObject(spProbe);
        EXPECT_EQ(CountOf(*spProbe), 2);
        EXPECT_EQ(value.GetXmlObject(), static_cast<CXmlObjectBase*>(spProbe));
        EXPECT_EQ(value.XmlObjectPtr(), static_cast<CXmlObjectBase*>(spProbe));
        EXPECT_EQ(CountOf(*spProbe), 2);
        const QvVariant copy(value);
        EXPECT_EQ(CountOf(*spProbe), 3);
        const QvVariant moved(std::move(value));
        EXPECT_EQ(CountOf(*spProbe), 3);
    }
    EXPECT_EQ(CountOf(*spProbe), 1);
}

TEST(QvVariantObjects, TheLastReferenceDestroysTheObject)
{
    bool bAlive = false;
    QvVariant value;
    value.SetXmlObject(new CProbe(bAlive));
    EXPECT_TRUE(bAlive);
    value.SetXmlObject(value.XmlObjectPtr());
    EXPECT_TRUE(bAlive);
    value.SetI4(1);
    EXPECT_FALSE(bAlive);
    value.SetXmlObject(new CProbe(bAlive));
    QvVariant& same = value;
    value = same;
    EXPECT_FALSE(bAlive);
}

TEST(QvVariantObjects, ANullObjectIsAValue)
{
    QvVariant value;
    value.SetXmlObject(nullptr);
    EXPECT_TRUE(value.IsValid());
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    const QvVariant copy(value);
    EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlObjectBase);
    EXPECT_EQ(copy.GetXmlObject(), nullptr);
}

TEST(QvVariantObjects, ANullCollectionIsAValue)
{
    QvVariant value;
    value.SetXmlCollection(nullptr);
    EXPECT_TRUE(value.IsValid());
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    const QvVariant copy(value);
    EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlCollection);
}

TEST(QvVariantObjects, ACollectionIsAnObjectToo)
{
    const CSmartPtr<Ci4Col> spCollection = MakeCollection();
    {
        QvVariant value;
        value.SetXmlCollection(spCollection);
        EXPECT_EQ(CountOf(*spCollection), 2);
        EXPECT_EQ(value.GetXmlCollection(), static_cast<CXmlCollectionBase*>(spCollection));
        EXPECT_EQ(value.XmlCollectionPtr(), static_cast<CXmlCollectionBase*>(spCollection));
        EXPECT_EQ(value.GetXmlObject(), static_cast<CXmlObjectBase*>(spCollection));
        const QvVariant copy(value);
        EXPECT_EQ(CountOf(*spCollection), 3);
    }
    EXPECT_EQ(CountOf(*spCollection), 1);
}

TEST(QvVariantObjects, ObjectsAndCollectionsHaveNoNameAndNoText)
{
    QvVariant value;
    value.SetXmlCollection(nullptr);
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 28", [&] { value.GetType(); });
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 28 to convert to string", [&] { value.ToString(nullptr); });
    value.SetXmlObject(nullptr);
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 27", [&] { value.GetType(); });
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 27 to convert to string", [&] { value.ToString(nullptr); });
}

// --- The wrong getter -------------------------------------------------------------------------------------------

#if defined(QUIVER_DIAGNOSTICS)

TEST(QvVariantObjectsDeathTest, TheWrongGetterStopsDiagnosticBuilds)
{
    QvVariant value;
    EXPECT_DEATH(value.GetXmlObject(), "m_type == ItemType_XmlObjectBase,");
    EXPECT_DEATH(value.GetXmlCollection(), "m_type == ItemType_XmlCollection && m_pXmlCol != NULL,");
    value.SetXmlCollection(nullptr);
    EXPECT_DEATH(value.GetXmlCollection(), "m_type == ItemType_XmlCollection && m_pXmlCol != NULL,");
    value.SetXmlObject(nullptr);
    EXPECT_DEATH(value.GetXmlCollection(), "m_type == ItemType_XmlCollection && m_pXmlCol != NULL,");
}

#else

TEST(QvVariantObjects, TheWrongGetterGivesNull)
{
    QvVariant value;
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
    value.SetI8(-1);
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
    value.SetString(L"text");
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
    value.SetXmlObject(nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
    value.SetXmlCollection(nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
}

#endif
