// Any document read into classes of groups within groups, under the options that the first byte picks: groups that
// repeat, that look at the attributes of their element, and that begin like another alternative.

#include "fuzz/FuzzInput.h"

#include "quiver/QvXmlLib.h"
#include "tests/support/FlexClass.h"

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace
{

constexpr int s_nClasses = 6;

const QvTest::CShape& ShapeOf(int nClass);

CSmartPtr<CXmlObjectBase> Create(int nClass, const wchar_t* lpctName)
{
    const auto Init = [nClass](QvTest::CFlexClass& self)
    {
        // The mandatory groups, which are there from the start.
        if (nClass == 2 || nClass == 3)
            self[0].SetXmlObject(Create(nClass - 1, L""));
    };
    return new QvTest::CFlexClass(ShapeOf(nClass), lpctName, Init);
}

template <class TRecord>
CElementInfo* Text(const wchar_t* lpctName, int nProperty)
{
    return new TRecord(lpctName, L"", nProperty, ItemType_string, nullptr, CWhitespaceUtils::WhitespaceRule_None,
                       CPrimitiveRestrictions());
}

CElementInfo* Alternative(int nClass)
{
    return new CElementInfoChoiceClsOpt(L"", L"", nClass, ElementType_Pseudo, &Create, nClass);
}

struct SGroup : QvTest::CShape
{
    SGroup()
        : CShape(GroupType_Sequence, ElementType_Pseudo, L"", L"", -1, false)
    {
    }
};

/// 0: an element, which is a choice of the groups 3 to 5; 1 to 3: groups within groups; 4 and 5: groups that begin with
/// such an element in its turn.
struct SShapes
{
    SShapes()
    {
        root.AddObject(Alternative(3), 3).AddObject(Alternative(4), 4).AddObject(Alternative(5), 5);
        groups[1].Add(Text<CElementInfoSeqPrimOpt>(L"a", 0)).Add(Text<CElementInfoSeqPrimMnd>(L"b", 1));
        for (int n = 2; n <= 3; ++n)
            groups[n].AddObject(new CElementInfoSeqClsMnd(L"", L"", 0, ElementType_Pseudo, &Create, n - 1, true), 0);
        groups[3].Add(new CAttributeInfoPrimitive(L"n", L"", 1, true, ItemType_string, nullptr,
                                                  CWhitespaceUtils::WhitespaceRule_None, CPrimitiveRestrictions(),
                                                  L""));
        for (int n = 4; n <= 5; ++n)
        {
            groups[n].AddObject(new CElementInfoSeqClsOpt(L"e", L"", 0, ElementType_Element, &Create, 0), 0);
            groups[n].AddObject(new CElementInfoSeqClsOpt(L"", L"", 1, ElementType_Pseudo, &Create, n - 1), 1);
            groups[n].Add(Text<CElementInfoSeqPrimMnd>(n == 4 ? L"x" : L"y", 2));
        }
    }

    QvTest::CShape root{GroupType_Choice, ElementType_Element, L"e", L"", -1, false};
    SGroup groups[s_nClasses];
};

const QvTest::CShape& ShapeOf(int nClass)
{
    static const SShapes s_shapes;
    return nClass == 0 ? s_shapes.root : s_shapes.groups[nClass];
}

/// What generated code does when it is loaded.
const bool s_bRegistered = (Register(9, 0), true);

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize == 0 || !s_bRegistered)
        return 0;
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements((pData[0] & 1) != 0);
    context.SetIgnoreMissingChoice((pData[0] & 2) != 0);
    const std::wstring strXml = fuzz::Text(pData + 1, nSize - 1);
    const CSmartPtr<CXmlObjectBase> spObject = Create(0, L"e");
    fuzz::Succeeds([&] { spObject->FromXml(strXml.c_str(), context); });
    fuzz::Succeeds([&] { spObject->ToXml(false, false, EOLType_LF, context); });
    return 0;
}
