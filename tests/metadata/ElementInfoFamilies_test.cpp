// Every class of the three families, with every kind of parent and every option that a member consults, in both
// directions, against tables written by hand. What is peculiar to one member has a test by name with its family.

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>
#include <type_traits>

namespace QvTest
{
namespace
{

// --- The records ---------------------------------------------------------------------------------

using RecordMaker = CElementInfo* (*)();

constexpr auto Own = ElementType_Element;
constexpr auto Pseudo = ElementType_Pseudo;

template <class TRecord>
CElementInfo* Prim()
{
    return new TRecord(L"own", Namespace, Index, ItemType_i4, nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                       CPrimitiveRestrictions());
}

template <class TRecord>
CElementInfo* Enum()
{
    return new TRecord(L"own", Namespace, Index, &FiveToString, &FiveFromString);
}

template <class TRecord, XmlElementType t_eType, bool t_bContentRequired>
CElementInfo* ClsMnd()
{
    return new TRecord(L"own", Namespace, Index, t_eType, &CreateChild, ClassId, t_bContentRequired);
}

template <class TRecord, XmlElementType t_eType>
CElementInfo* ClsOpt()
{
    return new TRecord(L"own", Namespace, Index, t_eType, &CreateChild, ClassId);
}

template <class TRecord, XmlElementType t_eType = Own>
CElementInfo* AbsCls()
{
    if constexpr (std::is_same_v<TRecord, CElementInfoAllAbsClsMnd>)
        return new TRecord(L"own", Namespace, Index, t_eType, &CreateChildFromElement, 0);
    else
        return new TRecord(L"own", Namespace, Index, t_eType, &CreateChildFromElement);
}

template <class TRecord>
CElementInfo* AnyUntpd()
{
    return new TRecord(L"AnyElement", Namespace, Index, L"##targetNamespace", Namespace);
}

template <class TRecord>
CElementInfo* NamedUntpd()
{
    return new TRecord(L"own", Namespace, Index, L"##targetNamespace", Namespace);
}

template <class TRecord>
CElementInfo* Col()
{
    return new TRecord(L"own", Namespace, Index);
}

template <class TRecord>
CElementInfo* AnyCol()
{
    return new TRecord(L"AnyElement", Namespace, Index);
}

template <class TRecord, XmlElementType t_eType = Own>
CElementInfo* ClsCol()
{
    return new TRecord(L"own", Namespace, Index, t_eType);
}

// --- The property --------------------------------------------------------------------------------

using Filler = void (*)(CRecordingObject&);

void Unset(CRecordingObject& object)
{
    object.m_value.SetInvalid();
}

void Five(CRecordingObject& object)
{
    object.m_value.SetI4(5);
}

void Null(CRecordingObject& object)
{
    object.m_value.SetXmlObject(nullptr);
}

void Child(CRecordingObject& object)
{
    object.m_value.SetXmlObject(new CRecordingChild);
}

/// An open element as the constructor of a generated class makes it for a mandatory member.
void Unread(CRecordingObject& object)
{
    object.m_value.SetXmlObject(new CElement(L"unread", Namespace, L"##targetNamespace", Namespace));
}

void Open(CRecordingObject& object)
{
    object.m_value.SetXmlObject(new CElement(L"open", L"urn:open"));
}

/// A collection of numbers with `t_nItems` items, which needs one at least.
template <int t_nItems>
void Numbers(CRecordingObject& object)
{
    CSmartPtr<Ci4Col> spNumbers = new Ci4Col(L"own", Namespace, 1, -1, L"", -1, -1, L"", L"", L"", L"", -1,
                                             CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
    for (int n = 0; n != t_nItems; ++n)
        spNumbers->Add(5);
    object.m_value.SetXmlCollection(spNumbers);
}

/// A collection of objects with `t_nItems` items, which needs `t_nMinOccurs`.
template <int t_nItems, int t_nMinOccurs = 1>
void Objects(CRecordingObject& object)
{
    CSmartPtr<CRecordingCol> spObjects = new CRecordingCol(L"own", t_nMinOccurs, -1);
    for (int n = 0; n != t_nItems; ++n)
        spObjects->Add();
    object.m_value.SetXmlCollection(spObjects);
}

template <int t_nItems>
void OpenElements(CRecordingObject& object)
{
    CSmartPtr<CElementCol> spElements = new CElementCol(Namespace, L"##targetNamespace", Namespace, 0, -1);
    for (int n = 0; n != t_nItems; ++n)
        spElements->Add(L"open", L"urn:open");
    object.m_value.SetXmlCollection(spElements);
}

/// Whether a child or an open element shows that it was read.
bool HasBeenRead(CXmlObjectBase* pObject)
{
    if (const auto* const pChild = dynamic_cast<CRecordingChild*>(pObject))
        return pChild->m_nReads == 1;
    const auto* const pElement = dynamic_cast<CElement*>(pObject);
    return pElement != nullptr && pElement->GetNamespace() == Namespace && pElement->GetText() == L"5";
}

/// The letter of the reading table for what was stored.
char LetterOfStored(const QvVariant& value)
{
    if (value.GetTypeAsEnum() == ItemType_i4)
        return value.GetI4() == 5 ? 'v' : '?';
    CXmlObjectBase* const pObject = value.XmlObjectPtr();
    return pObject == nullptr ? 'x' : HasBeenRead(pObject) ? 'v' : '?';
}

/// The same for a property to which nothing was stored.
char LetterOfKept(const QvVariant& value)
{
    if (!value.IsValid())
        return '.';
    if (value.GetTypeAsEnum() == ItemType_XmlCollection)
        return static_cast<char>('0' + value.XmlCollectionPtr()->GetCount());
    CXmlObjectBase* const pObject = value.XmlObjectPtr();
    if (pObject == nullptr || !HasBeenRead(pObject))
        return '.';
    const auto* const pChild = dynamic_cast<CRecordingChild*>(pObject);
    return pChild == nullptr || pChild->m_strParent == L"own" || pChild->m_nTaken != 0 ? 'f' : 'r';
}

// --- Outcomes ------------------------------------------------------------------------------------

/// The letters of the tables for what a record throws. A record that has no name of its own is a wildcard.
const struct
{
    char cLetter;
    const wchar_t* lpctFailure;
} Failures[] = {
    {'!', L"Validation: Failed to find a required element [own]"},
    {'!', L"Validation: Failed to find a required element [AnyElement]"},
    {'S', L"Validation: Failed to find a suitable substitution element for [own]"},
    {'W', L"Validation: Failed to find the required element from namespace [urn:t]"},
    {'C', L"Validation: The Minimum number of [own] elements allowed in this collection is 1"},
    {'C', L"Validation: The Minimum number of [own] elements allowed in this collection is 2"},
    {'X', L"Failure: CElementInfoAllAbsClsMnd::ElementFromXml, has not been implemented fully, contact "
          L"support@quiver-xml.example"},
    {'X', L"Failure: CElementInfoAllAbsClsOpt::ElementFromXml, has not been implemented fully, contact "
          L"support@quiver-xml.example"},
    {'M', L"Validation: Failed to find the mandatory element [own]"},
    {'M', L"Validation: Failed to find the mandatory element [AnyElement]"},
    {'N', L"Failure: Not implemented, should never be called"},
};

/// 'T' or 'F' for what `Run` returns, the letter of what it throws otherwise.
template <class TRun>
char ResultOf(TRun Run)
{
    bool bResult = false;
    const std::wstring strFailure = FailureOf([&] { bResult = Run(); });
    if (strFailure.empty())
        return bResult ? 'T' : 'F';
    for (const auto& failure : Failures)
        if (strFailure == failure.lpctFailure)
            return failure.cLetter;
    ADD_FAILURE() << Show(strFailure);
    return '?';
}

/// A row's name without what test names cannot hold.
template <class TRow>
std::string RowName(const testing::TestParamInfo<TRow>& info)
{
    std::string strName;
    for (const char c : std::string(info.param.lpcName))
        if (std::isalnum(static_cast<unsigned char>(c)) != 0)
            strName += c;
    return strName;
}

// --- Reading -------------------------------------------------------------------------------------

/// What becomes of four documents in ten columns. A cell has three letters: the result, the cursor, the property.
///
/// Result: T true, F false; thrown: ! no required element, S no substitution element, W nothing from the namespace of a
/// wildcard, C too few items, X a member that is never read.
///
/// Cursor: 0 on the first child, 1 on the second, - behind the last.
///
/// Property: . as it was; v a value, or a child that has been read, was stored; x null was stored last; f the child
/// that was there was filled in place; r that child was asked to read and took nothing; a digit for the count of items
/// in a collection.
struct SReadingRow
{
    const char* lpcName;
    RecordMaker Make;
    Filler Prepare;
    Creator eCreator;
    const char* alpcCells[4];
};

/// The member's own element ahead of another; the other one ahead of it; no child; an element of the member's name from
/// another namespace ahead of the other one.
const wchar_t* const Documents[] = {L"<own>5</own><next>5</next>", L"<next>5</next><own>5</own>", L"",
                                    L"<own xmlns='urn:other'>5</own><next>5</next>"};

/// A parent with an element of its own, then a pseudo parent; for each no option first, then one after the other.
const struct
{
    XmlElementType eParentType;
    void (CXmlSerializationContext::*pfnSetOption)(bool);
} Columns[] = {
    {Own, nullptr},
    {Own, &CXmlSerializationContext::SetIgnoreUnknownElements},
    {Own, &CXmlSerializationContext::SetIgnoreMissingMandatoryElements},
    {Own, &CXmlSerializationContext::SetIgnoreNamespaces},
    {Own, &CXmlSerializationContext::SetIgnoreInvalidCollectionCounts},
    {Pseudo, nullptr},
    {Pseudo, &CXmlSerializationContext::SetIgnoreUnknownElements},
    {Pseudo, &CXmlSerializationContext::SetIgnoreMissingMandatoryElements},
    {Pseudo, &CXmlSerializationContext::SetIgnoreNamespaces},
    {Pseudo, &CXmlSerializationContext::SetIgnoreInvalidCollectionCounts},
};

// clang-format off
const SReadingRow ReadingRows[] = {
    // Sequence
    {"SeqPrimMnd", &Prim<CElementInfoSeqPrimMnd>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "!0. T-v T0. !0. !0.  F0. T-v F0. F0. F0.",
        "!-. !-. T-. !-. !-.  F-. F-. F-. F-. F-.",
        "!0. !-. T0. T1v !0.  F0. F-. F0. T1v F0."}},
    {"SeqPrimOpt", &Prim<CElementInfoSeqPrimOpt>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T1v T0.  T0. T0. T0. T1v T0."}},
    {"SeqEnumMnd", &Enum<CElementInfoSeqEnumMnd>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "!0. T-v T0. !0. !0.  F0. F0. F0. F0. F0.",
        "!-. !-. T-. !-. !-.  F-. F-. F-. F-. F-.",
        "!0. !-. T0. T1v !0.  F0. F0. F0. T1v F0."}},
    {"SeqEnumOpt", &Enum<CElementInfoSeqEnumOpt>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T1v T0.  T0. T0. T0. T1v T0."}},
    {"SeqClsMnd", &ClsMnd<CElementInfoSeqClsMnd, Own, true>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "!0. T-f T0. !0. !0.  F0. F0. F0. F0. F0.",
        "!-. !-. T-. !-. !-.  F-. F-. F-. F-. F-.",
        "!0. !-. T0. T1f !0.  F0. F0. F0. T1f F0."}},
    {"SeqClsMnd, content not required", &ClsMnd<CElementInfoSeqClsMnd, Own, false>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "!0. T-f T0. !0. !0.  F0. F0. F0. F0. F0.",
        "!-. !-. T-. !-. !-.  F-. F-. F-. F-. F-.",
        "!0. !-. T0. T1f !0.  F0. F0. F0. T1f F0."}},
    {"SeqClsMnd, pseudo", &ClsMnd<CElementInfoSeqClsMnd, Pseudo, true>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "!0r !0r !0r !0r !0r  F0r F0r F0r F0r F0r",
        "!-. !-. !-. !-. !-.  F-. F-. F-. F-. F-.",
        "!0r !0r !0r T1f !0r  F0r F0r F0r T1f F0r"}},
    {"SeqClsMnd, pseudo, content not required", &ClsMnd<CElementInfoSeqClsMnd, Pseudo, false>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "T0r F0r T0r T0r T0r  T0r T0r T0r T0r T0r",
        "T-r T-r T-r T-r T-r  T-r T-r T-r T-r T-r",
        "T0r F0r T0r T1f T0r  T0r T0r T0r T1f T0r"}},
    {"SeqClsOpt", &ClsOpt<CElementInfoSeqClsOpt, Own>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T1v T0.  T0. T0. T0. T1v T0."}},
    {"SeqClsOpt, pseudo", &ClsOpt<CElementInfoSeqClsOpt, Pseudo>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T1v T0.  T0. T0. T0. T1v T0."}},
    {"SeqAbsClsMnd", &AbsCls<CElementInfoSeqAbsClsMnd>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "S0. S0. S0. S0. S0.  F0. F0. F0. F0. F0.",
        "S-. S-. S-. S-. S-.  F-. F-. F-. F-. F-.",
        "S0. S0. S0. T1v S0.  F0. F0. F0. T1v F0."}},
    {"SeqAbsClsMnd, pseudo", &AbsCls<CElementInfoSeqAbsClsMnd, Pseudo>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "S0. S0. S0. S0. S0.  F0. F0. F0. F0. F0.",
        "S-. S-. S-. S-. S-.  F-. F-. F-. F-. F-.",
        "S0. S0. S0. T1v S0.  F0. F0. F0. T1v F0."}},
    {"SeqAbsClsMnd, no class fits", &AbsCls<CElementInfoSeqAbsClsMnd>, &Null, Creator::GivesNull, {
        "S0. S0. S0. S0. S0.  F0. F0. F0. F0. F0.",
        "S0. S0. S0. S0. S0.  F0. F0. F0. F0. F0.",
        "S-. S-. S-. S-. S-.  F-. F-. F-. F-. F-.",
        "S0. S0. S0. S0. S0.  F0. F0. F0. F0. F0."}},
    {"SeqAbsClsOpt", &AbsCls<CElementInfoSeqAbsClsOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T1v T0.  T0. T0. T0. T1v T0."}},
    {"SeqAbsClsOpt, no class fits", &AbsCls<CElementInfoSeqAbsClsOpt>, &Null, Creator::GivesNull, {
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0."}},
    {"SeqUntpdMnd", &AnyUntpd<CElementInfoSeqUntpdMnd>, &Unread, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "!-. !-. !-. !-. !-.  !-. !-. !-. !-. !-.",
        "W0. W0. W0. W0. W0.  F0. F0. F0. F0. F0."}},
    {"SeqUntpdMnd, named", &NamedUntpd<CElementInfoSeqUntpdMnd>, &Unread, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "W0. W0. W0. W0. W0.  F0. F0. F0. F0. F0.",
        "!-. !-. !-. !-. !-.  !-. !-. !-. !-. !-.",
        "W0. W0. W0. W0. W0.  F0. F0. F0. F0. F0."}},
    {"SeqUntpdOpt", &AnyUntpd<CElementInfoSeqUntpdOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0."}},
    {"SeqUntpdOpt, named", &NamedUntpd<CElementInfoSeqUntpdOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0.",
        "T-. T-. T-. T-. T-.  T-. T-. T-. T-. T-.",
        "T0. T0. T0. T0. T0.  T0. T0. T0. T0. T0."}},
    {"SeqCol", &Col<CElementInfoSeqCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "C00 C00 C00 C00 T00  F00 F00 F00 F00 T00",
        "C-0 C-0 C-0 C-0 T-0  F-0 F-0 F-0 F-0 T-0",
        "C00 C00 C00 T11 T00  F00 F00 F00 T11 T00"}},
    {"SeqPrimCol", &Col<CElementInfoSeqPrimCol>, &Numbers<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "C00 C00 C00 C00 T00  F00 F00 F00 F00 T00",
        "C-0 C-0 C-0 C-0 T-0  F-0 F-0 F-0 F-0 T-0",
        "C00 C00 C00 T11 T00  F00 F00 F00 T11 T00"}},
    {"SeqEnumCol", &Col<CElementInfoSeqEnumCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "C00 C00 C00 C00 T00  F00 F00 F00 F00 T00",
        "C-0 C-0 C-0 C-0 T-0  F-0 F-0 F-0 F-0 T-0",
        "C00 C00 C00 T11 T00  F00 F00 F00 T11 T00"}},
    {"SeqClsCol", &ClsCol<CElementInfoSeqClsCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "C00 C00 C00 C00 T00  F00 F00 F00 F00 T00",
        "C-0 C-0 C-0 C-0 T-0  F-0 F-0 F-0 F-0 T-0",
        "C00 C00 C00 T11 T00  F00 F00 F00 T11 T00"}},
    {"SeqAbsClsCol", &ClsCol<CElementInfoSeqAbsClsCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "C00 C00 C00 C00 T00  F00 F00 F00 F00 T00",
        "C-0 C-0 C-0 C-0 T-0  F-0 F-0 F-0 F-0 T-0",
        "C00 C00 C00 T11 T00  F00 F00 F00 T11 T00"}},
    {"SeqAbsClsCol, two items needed", &ClsCol<CElementInfoSeqAbsClsCol>, &Objects<0, 2>, Creator::GivesChild, {
        "C11 C11 C11 C11 T11  F11 F11 F11 F11 T11",
        "C00 C00 C00 C00 T00  F00 F00 F00 F00 T00",
        "C-0 C-0 C-0 C-0 T-0  F-0 F-0 F-0 F-0 T-0",
        "C00 C00 C00 C11 T00  F00 F00 F00 F11 T00"}},
    {"SeqUntpdCol", &AnyCol<CElementInfoSeqUntpdCol>, &OpenElements<0>, Creator::GivesChild, {
        "T-2 T-2 T-2 T-2 T-2  T-2 T-2 T-2 T-2 T-2",
        "T-2 T-2 T-2 T-2 T-2  T-2 T-2 T-2 T-2 T-2",
        "T-0 T-0 T-0 T-0 T-0  T-0 T-0 T-0 T-0 T-0",
        "T-2 T-2 T-2 T-2 T-2  T-2 T-2 T-2 T-2 T-2"}},
    {"SeqUntpdCol, named", &Col<CElementInfoSeqUntpdCol>, &OpenElements<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "T00 T00 T00 T00 T00  T00 T00 T00 T00 T00",
        "T-0 T-0 T-0 T-0 T-0  T-0 T-0 T-0 T-0 T-0",
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11"}},
    // Choice
    {"ChoicePrimOpt", &Prim<CElementInfoChoicePrimOpt>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"ChoiceEnumOpt", &Enum<CElementInfoChoiceEnumOpt>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"ChoiceClsOpt", &ClsOpt<CElementInfoChoiceClsOpt, Own>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"ChoiceClsOpt, pseudo", &ClsOpt<CElementInfoChoiceClsOpt, Pseudo>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0x F0x F0x F0x F0x  F0x F0x F0x F0x F0x",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0x F0x F0x T1v F0x  F0x F0x F0x T1v F0x"}},
    {"ChoiceAbsClsOpt", &AbsCls<CElementInfoChoiceAbsClsOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"ChoiceAbsClsOpt, no class fits", &AbsCls<CElementInfoChoiceAbsClsOpt>, &Null, Creator::GivesNull, {
        "F0x F0x F0x F0x F0x  F0x F0x F0x F0x F0x",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. F0x F0.  F0. F0. F0. F0x F0."}},
    {"ChoiceUntpdOpt", &AnyUntpd<CElementInfoChoiceUntpdOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0x F0x F0x F0x F0x  F0x F0x F0x F0x F0x"}},
    {"ChoiceUntpdOpt, named", &NamedUntpd<CElementInfoChoiceUntpdOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0x F0x F0x F0x F0x  F0x F0x F0x F0x F0x",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0x F0x F0x F0x F0x  F0x F0x F0x F0x F0x"}},
    {"ChoiceCol", &Col<CElementInfoChoiceCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 T11 F00  F00 F00 F00 T11 F00"}},
    {"ChoicePrimCol", &Col<CElementInfoChoicePrimCol>, &Numbers<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 T11 F00  F00 F00 F00 T11 F00"}},
    {"ChoiceEnumCol", &Col<CElementInfoChoiceEnumCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 T11 F00  F00 F00 F00 T11 F00"}},
    {"ChoiceClsCol", &ClsCol<CElementInfoChoiceClsCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 T11 F00  F00 F00 F00 T11 F00"}},
    {"ChoiceAbsClsCol", &ClsCol<CElementInfoChoiceAbsClsCol>, &Objects<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 T11 F00  F00 F00 F00 T11 F00"}},
    {"ChoiceAbsClsCol, two items needed", &ClsCol<CElementInfoChoiceAbsClsCol>, &Objects<0, 2>, Creator::GivesChild, {
        "C11 C11 C11 C11 T11  F01 F01 F01 F01 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 C11 F00  F00 F00 F00 F01 F00"}},
    {"ChoiceUntpdCol", &AnyCol<CElementInfoChoiceUntpdCol>, &OpenElements<0>, Creator::GivesChild, {
        "T-2 T-2 T-2 T-2 T-2  T-2 T-2 T-2 T-2 T-2",
        "T-2 T-2 T-2 T-2 T-2  T-2 T-2 T-2 T-2 T-2",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "T-2 T-2 T-2 T-2 T-2  T-2 T-2 T-2 T-2 T-2"}},
    {"ChoiceUntpdCol, named", &Col<CElementInfoChoiceUntpdCol>, &OpenElements<0>, Creator::GivesChild, {
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "T11 T11 T11 T11 T11  T11 T11 T11 T11 T11"}},
    // All
    {"AllPrimMnd", &Prim<CElementInfoAllPrimMnd>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"AllPrimOpt", &Prim<CElementInfoAllPrimOpt>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"AllEnumMnd", &Enum<CElementInfoAllEnumMnd>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"AllEnumOpt", &Enum<CElementInfoAllEnumOpt>, &Unset, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"AllClsMnd", &ClsMnd<CElementInfoAllClsMnd, Own, true>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1f F0.  F0. F0. F0. T1f F0."}},
    {"AllClsMnd, content not required", &ClsMnd<CElementInfoAllClsMnd, Own, false>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1f F0.  F0. F0. F0. T1f F0."}},
    {"AllClsMnd, pseudo", &ClsMnd<CElementInfoAllClsMnd, Pseudo, true>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "F0r F0r F0r F0r F0r  F0r F0r F0r F0r F0r",
        "F-r F-r F-r F-r F-r  F-r F-r F-r F-r F-r",
        "F0r F0r F0r T1f F0r  F0r F0r F0r T1f F0r"}},
    {"AllClsMnd, pseudo, content not required", &ClsMnd<CElementInfoAllClsMnd, Pseudo, false>, &Child, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "F0r F0r F0r F0r F0r  F0r F0r F0r F0r F0r",
        "F-r F-r F-r F-r F-r  F-r F-r F-r F-r F-r",
        "F0r F0r F0r T1f F0r  F0r F0r F0r T1f F0r"}},
    {"AllClsOpt", &ClsOpt<CElementInfoAllClsOpt, Own>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"AllClsOpt, pseudo", &ClsOpt<CElementInfoAllClsOpt, Pseudo>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. T1v F0.  F0. F0. F0. T1v F0."}},
    {"AllAbsClsMnd", &AbsCls<CElementInfoAllAbsClsMnd>, &Null, Creator::GivesChild, {
        "X0. X0. X0. X0. X0.  X0. X0. X0. X0. X0.",
        "X0. X0. X0. X0. X0.  X0. X0. X0. X0. X0.",
        "X-. X-. X-. X-. X-.  X-. X-. X-. X-. X-.",
        "X0. X0. X0. X0. X0.  X0. X0. X0. X0. X0."}},
    {"AllAbsClsOpt", &AbsCls<CElementInfoAllAbsClsOpt>, &Null, Creator::GivesChild, {
        "X0. X0. X0. X0. X0.  X0. X0. X0. X0. X0.",
        "X0. X0. X0. X0. X0.  X0. X0. X0. X0. X0.",
        "X-. X-. X-. X-. X-.  X-. X-. X-. X-. X-.",
        "X0. X0. X0. X0. X0.  X0. X0. X0. X0. X0."}},
    {"AllUntpdMnd", &AnyUntpd<CElementInfoAllUntpdMnd>, &Unread, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0."}},
    {"AllUntpdMnd, named", &NamedUntpd<CElementInfoAllUntpdMnd>, &Unread, Creator::GivesChild, {
        "T1f T1f T1f T1f T1f  T1f T1f T1f T1f T1f",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0."}},
    {"AllUntpdOpt", &AnyUntpd<CElementInfoAllUntpdOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0."}},
    {"AllUntpdOpt, named", &NamedUntpd<CElementInfoAllUntpdOpt>, &Null, Creator::GivesChild, {
        "T1v T1v T1v T1v T1v  T1v T1v T1v T1v T1v",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0.",
        "F-. F-. F-. F-. F-.  F-. F-. F-. F-. F-.",
        "F0. F0. F0. F0. F0.  F0. F0. F0. F0. F0."}},
    {"AllCol", &Col<CElementInfoAllCol>, &Objects<0>, Creator::GivesChild, {
        "F11 F11 F11 F11 F11  F11 F11 F11 F11 F11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 F11 F00  F00 F00 F00 F11 F00"}},
    {"AllPrimCol", &Col<CElementInfoAllPrimCol>, &Numbers<0>, Creator::GivesChild, {
        "F11 F11 F11 F11 F11  F11 F11 F11 F11 F11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 F11 F00  F00 F00 F00 F11 F00"}},
    {"AllClsCol", &ClsCol<CElementInfoAllClsCol>, &Objects<0>, Creator::GivesChild, {
        "F11 F11 F11 F11 F11  F11 F11 F11 F11 F11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 F11 F00  F00 F00 F00 F11 F00"}},
    {"AllAbsClsCol", &ClsCol<CElementInfoAllAbsClsCol>, &Objects<0, 2>, Creator::GivesChild, {
        "F11 F11 F11 F11 F11  F11 F11 F11 F11 F11",
        "F00 F00 F00 F00 F00  F00 F00 F00 F00 F00",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F00 F00 F00 F11 F00  F00 F00 F00 F11 F00"}},
    {"AllUntpdCol", &Col<CElementInfoAllUntpdCol>, &OpenElements<0>, Creator::GivesChild, {
        "F-2 F-2 F-2 F-2 F-2  F-2 F-2 F-2 F-2 F-2",
        "F-2 F-2 F-2 F-2 F-2  F-2 F-2 F-2 F-2 F-2",
        "F-0 F-0 F-0 F-0 F-0  F-0 F-0 F-0 F-0 F-0",
        "F-2 F-2 F-2 F-2 F-2  F-2 F-2 F-2 F-2 F-2"}},
};
// clang-format on

class Reading : public testing::TestWithParam<SReadingRow>
{
};

TEST_P(Reading, GivesTheResultTheCursorAndThePropertyOfItsRow)
{
    const SReadingRow& row = GetParam();
    const std::unique_ptr<CElementInfo> pRecord(row.Make());
    for (std::size_t nDocument = 0; nDocument != std::size(Documents); ++nDocument)
    {
        std::istringstream cells(row.alpcCells[nDocument]);
        for (const auto& column : Columns)
        {
            SCOPED_TRACE(testing::Message() << "document " << nDocument << ", column " << (&column - Columns));
            CXmlSerializationContext context;
            if (column.pfnSetOption != nullptr)
                (context.*column.pfnSetOption)(true);
            g_creations = SCreations();
            g_creations.eCreator = row.eCreator;
            CChildren children(Documents[nDocument]);
            CRecordingObject object;
            row.Prepare(object);

            const char cResult = ResultOf(
                [&]
                {
                    return pRecord->ElementFromXml(context, &object, children.Parent(), children.Cursor(), Namespace,
                                                   column.eParentType);
                });

            const char cProperty =
                object.m_nStores != 0 ? LetterOfStored(object.m_value) : LetterOfKept(object.m_value);
            std::string strCell;
            ASSERT_TRUE(cells >> strCell) << "the row has a cell for each column";
            EXPECT_EQ(strCell, (std::string{cResult, children.Position(), cProperty}));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ElementInfo, Reading, testing::ValuesIn(ReadingRows), RowName<SReadingRow>);

// --- Writing -------------------------------------------------------------------------------------

/// What a record returns and writes.
struct SWritingRow
{
    const char* lpcName;
    RecordMaker Make;
    Filler Clear;
    Filler Fill;
    /// For the empty property, for the same with IgnoreInvalidCollectionCounts, for the filled one, and so on.
    const wchar_t* alpctExpected[4];
};

constexpr const wchar_t* Number = L"T<{urn:t}own\n5:5\n>\n";
constexpr const wchar_t* Word = L"T<{urn:t}own\n5:23\n>\n";
constexpr const wchar_t* Plain = L"T<{urn:t}own\nchild:23\n>\n";
constexpr const wchar_t* OptionalChoice = L"T<{urn:t}own\noptional choice:23\n>\n";
constexpr const wchar_t* OpenElement = L"T<{urn:open}open\n:23\n>\n";
constexpr const wchar_t* Items = L"T<{urn:t}own\n1 items:23\n>\n";

// clang-format off
const SWritingRow WritingRows[] = {
    // Sequence
    {"SeqPrimMnd",                    &Prim<CElementInfoSeqPrimMnd>,                  &Unset, &Five,                        {L"F", L"F", Number, Number}},
    {"SeqPrimOpt",                    &Prim<CElementInfoSeqPrimOpt>,                  &Unset, &Five,                        {L"F", L"F", Number, Number}},
    {"SeqEnumMnd",                    &Enum<CElementInfoSeqEnumMnd>,                  &Unset, &Five,                        {L"F", L"F", Word, Word}},
    {"SeqEnumOpt",                    &Enum<CElementInfoSeqEnumOpt>,                  &Unset, &Five,                        {L"F", L"F", Word, Word}},
    {"SeqClsMnd",                     &ClsMnd<CElementInfoSeqClsMnd, Own, true>,      &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"SeqClsMnd, pseudo",             &ClsMnd<CElementInfoSeqClsMnd, Pseudo, true>,   &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"SeqClsOpt",                     &ClsOpt<CElementInfoSeqClsOpt, Own>,            &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"SeqClsOpt, pseudo",             &ClsOpt<CElementInfoSeqClsOpt, Pseudo>,         &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"SeqAbsClsMnd",                  &AbsCls<CElementInfoSeqAbsClsMnd>,              &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"SeqAbsClsOpt",                  &AbsCls<CElementInfoSeqAbsClsOpt>,              &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"SeqUntpdMnd",                   &AnyUntpd<CElementInfoSeqUntpdMnd>,             &Null, &Open,                         {L"F", L"F", OpenElement, OpenElement}},
    {"SeqUntpdOpt",                   &AnyUntpd<CElementInfoSeqUntpdOpt>,             &Null, &Open,                         {L"F", L"F", OpenElement, OpenElement}},
    {"SeqCol",                        &Col<CElementInfoSeqCol>,                       &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"SeqPrimCol",                    &Col<CElementInfoSeqPrimCol>,                   &Numbers<0>, &Numbers<1>,             {L"C", L"F", Number, Number}},
    {"SeqEnumCol",                    &Col<CElementInfoSeqEnumCol>,                   &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"SeqClsCol",                     &ClsCol<CElementInfoSeqClsCol>,                 &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"SeqAbsClsCol",                  &ClsCol<CElementInfoSeqAbsClsCol>,              &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"SeqAbsClsCol, two items needed",&ClsCol<CElementInfoSeqAbsClsCol>,              &Objects<0, 2>, &Objects<1, 2>,       {L"C", L"F", L"C", Items}},
    {"SeqUntpdCol",                   &AnyCol<CElementInfoSeqUntpdCol>,               &OpenElements<0>, &OpenElements<1>,   {L"F", L"F", OpenElement, OpenElement}},
    // Choice
    {"ChoicePrimOpt",                 &Prim<CElementInfoChoicePrimOpt>,               &Unset, &Five,                        {L"F", L"F", Number, Number}},
    {"ChoiceEnumOpt",                 &Enum<CElementInfoChoiceEnumOpt>,               &Unset, &Five,                        {L"F", L"F", Word, Word}},
    {"ChoiceClsOpt",                  &ClsOpt<CElementInfoChoiceClsOpt, Own>,         &Null, &Child,                        {L"F", L"F", OptionalChoice, OptionalChoice}},
    {"ChoiceClsOpt, pseudo",          &ClsOpt<CElementInfoChoiceClsOpt, Pseudo>,      &Null, &Child,                        {L"F", L"F", OptionalChoice, OptionalChoice}},
    {"ChoiceAbsClsOpt",               &AbsCls<CElementInfoChoiceAbsClsOpt>,           &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"ChoiceUntpdOpt",                &AnyUntpd<CElementInfoChoiceUntpdOpt>,          &Null, &Open,                         {L"F", L"F", OpenElement, OpenElement}},
    {"ChoiceCol",                     &Col<CElementInfoChoiceCol>,                    &Objects<0>, &Objects<1>,             {L"F", L"F", Items, Items}},
    {"ChoicePrimCol",                 &Col<CElementInfoChoicePrimCol>,                &Numbers<0>, &Numbers<1>,             {L"F", L"F", Number, Number}},
    {"ChoiceEnumCol",                 &Col<CElementInfoChoiceEnumCol>,                &Objects<0>, &Objects<1>,             {L"F", L"F", Items, Items}},
    {"ChoiceClsCol",                  &ClsCol<CElementInfoChoiceClsCol>,              &Objects<0>, &Objects<1>,             {L"F", L"F", Items, Items}},
    {"ChoiceAbsClsCol",               &ClsCol<CElementInfoChoiceAbsClsCol>,           &Objects<0>, &Objects<1>,             {L"F", L"F", Items, Items}},
    {"ChoiceAbsClsCol, two items needed",&ClsCol<CElementInfoChoiceAbsClsCol>,           &Objects<0, 2>, &Objects<1, 2>,       {L"F", L"F", Items, Items}},
    {"ChoiceUntpdCol",                &AnyCol<CElementInfoChoiceUntpdCol>,            &OpenElements<0>, &OpenElements<1>,   {L"F", L"F", OpenElement, OpenElement}},
    // All
    {"AllPrimMnd",                    &Prim<CElementInfoAllPrimMnd>,                  &Unset, &Five,                        {L"F", L"F", Number, Number}},
    {"AllPrimOpt",                    &Prim<CElementInfoAllPrimOpt>,                  &Unset, &Five,                        {L"F", L"F", Number, Number}},
    {"AllEnumMnd",                    &Enum<CElementInfoAllEnumMnd>,                  &Unset, &Five,                        {L"F", L"F", Word, Word}},
    {"AllEnumOpt",                    &Enum<CElementInfoAllEnumOpt>,                  &Unset, &Five,                        {L"F", L"F", Word, Word}},
    {"AllClsMnd",                     &ClsMnd<CElementInfoAllClsMnd, Own, true>,      &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"AllClsMnd, pseudo",             &ClsMnd<CElementInfoAllClsMnd, Pseudo, true>,   &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"AllClsOpt",                     &ClsOpt<CElementInfoAllClsOpt, Own>,            &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"AllClsOpt, pseudo",             &ClsOpt<CElementInfoAllClsOpt, Pseudo>,         &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"AllAbsClsMnd",                  &AbsCls<CElementInfoAllAbsClsMnd>,              &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"AllAbsClsOpt",                  &AbsCls<CElementInfoAllAbsClsOpt>,              &Null, &Child,                        {L"F", L"F", Plain, Plain}},
    {"AllUntpdMnd",                   &AnyUntpd<CElementInfoAllUntpdMnd>,             &Null, &Open,                         {L"F", L"F", OpenElement, OpenElement}},
    {"AllUntpdOpt",                   &AnyUntpd<CElementInfoAllUntpdOpt>,             &Null, &Open,                         {L"F", L"F", OpenElement, OpenElement}},
    {"AllCol",                        &Col<CElementInfoAllCol>,                       &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"AllPrimCol",                    &Col<CElementInfoAllPrimCol>,                   &Numbers<0>, &Numbers<1>,             {L"C", L"F", Number, Number}},
    {"AllClsCol",                     &ClsCol<CElementInfoAllClsCol>,                 &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"AllAbsClsCol",                  &ClsCol<CElementInfoAllAbsClsCol>,              &Objects<0>, &Objects<1>,             {L"C", L"F", Items, Items}},
    {"AllAbsClsCol, two items needed",&ClsCol<CElementInfoAllAbsClsCol>,              &Objects<0, 2>, &Objects<1, 2>,       {L"C", L"F", L"C", Items}},
    {"AllUntpdCol",                   &AnyCol<CElementInfoAllUntpdCol>,               &OpenElements<0>, &OpenElements<1>,   {L"F", L"F", OpenElement, OpenElement}},
};
// clang-format on

class Writing : public testing::TestWithParam<SWritingRow>
{
};

TEST_P(Writing, GivesTheResultAndTheOutputOfItsRow)
{
    const SWritingRow& row = GetParam();
    const std::unique_ptr<CElementInfo> pRecord(row.Make());
    for (const std::size_t n : {0U, 1U, 2U, 3U})
    {
        SCOPED_TRACE(n);
        CXmlSerializationContext context;
        context.SetIgnoreInvalidCollectionCounts(n % 2 != 0);
        CRecordingObject object;
        (n < 2 ? row.Clear : row.Fill)(object);
        CRecordingWriter writer;
        const char cResult = ResultOf([&] { return pRecord->ElementToXml(context, &object, &writer); });
        EXPECT_TEXT(row.alpctExpected[n], static_cast<wchar_t>(cResult) + writer.m_strCalls);
        EXPECT_EQ(object.m_nStores, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(ElementInfo, Writing, testing::ValuesIn(WritingRows), RowName<SWritingRow>);

// --- Attributes of pseudo children ---------------------------------------------------------------

struct SAttributesRow
{
    const char* lpcName;
    RecordMaker Make;
    Filler Prepare;
    const wchar_t* lpctExpected;
};

constexpr const wchar_t* OneAttribute = L" {}of=own:23\n";
constexpr const wchar_t* TwoAttributes = L" {}of=own:23\n {}of=own:23\n";

// clang-format off
const SAttributesRow AttributesRows[] = {
    {"SeqClsMnd, pseudo", &ClsMnd<CElementInfoSeqClsMnd, Pseudo, true>, &Child, OneAttribute},
    {"SeqClsMnd, pseudo, null", &ClsMnd<CElementInfoSeqClsMnd, Pseudo, true>, &Null, L""},
    {"SeqClsMnd", &ClsMnd<CElementInfoSeqClsMnd, Own, true>, &Child, L""},
    {"SeqClsOpt, pseudo", &ClsOpt<CElementInfoSeqClsOpt, Pseudo>, &Child, OneAttribute},
    {"SeqClsOpt, pseudo, null", &ClsOpt<CElementInfoSeqClsOpt, Pseudo>, &Null, L""},
    {"SeqClsOpt", &ClsOpt<CElementInfoSeqClsOpt, Own>, &Child, L""},
    {"SeqAbsClsMnd, pseudo", &AbsCls<CElementInfoSeqAbsClsMnd, Pseudo>, &Child, OneAttribute},
    {"SeqAbsClsMnd", &AbsCls<CElementInfoSeqAbsClsMnd, Own>, &Child, L""},
    {"SeqAbsClsOpt, pseudo", &AbsCls<CElementInfoSeqAbsClsOpt, Pseudo>, &Child, OneAttribute},
    {"SeqAbsClsOpt", &AbsCls<CElementInfoSeqAbsClsOpt, Own>, &Child, L""},
    {"SeqClsCol, pseudo", &ClsCol<CElementInfoSeqClsCol, Pseudo>, &Objects<2>, TwoAttributes},
    {"SeqClsCol, pseudo, empty", &ClsCol<CElementInfoSeqClsCol, Pseudo>, &Objects<0>, L""},
    {"SeqClsCol", &ClsCol<CElementInfoSeqClsCol, Own>, &Objects<2>, L""},
    {"SeqAbsClsCol, pseudo", &ClsCol<CElementInfoSeqAbsClsCol, Pseudo>, &Objects<2>, TwoAttributes},
    {"SeqAbsClsCol", &ClsCol<CElementInfoSeqAbsClsCol, Own>, &Objects<2>, L""},
    {"SeqCol", &Col<CElementInfoSeqCol>, &Objects<2>, L""},
    {"SeqPrimCol", &Col<CElementInfoSeqPrimCol>, &Numbers<1>, L""},
    {"SeqEnumCol", &Col<CElementInfoSeqEnumCol>, &Objects<2>, L""},
    {"SeqUntpdCol", &AnyCol<CElementInfoSeqUntpdCol>, &OpenElements<1>, L""},
    {"SeqPrimMnd", &Prim<CElementInfoSeqPrimMnd>, &Five, L""},
    {"SeqEnumMnd", &Enum<CElementInfoSeqEnumMnd>, &Five, L""},
    {"SeqUntpdMnd", &AnyUntpd<CElementInfoSeqUntpdMnd>, &Open, L""},

    {"ChoiceClsOpt, pseudo", &ClsOpt<CElementInfoChoiceClsOpt, Pseudo>, &Child, OneAttribute},
    {"ChoiceClsOpt, pseudo, null", &ClsOpt<CElementInfoChoiceClsOpt, Pseudo>, &Null, L""},
    {"ChoiceClsOpt", &ClsOpt<CElementInfoChoiceClsOpt, Own>, &Child, L""},
    {"ChoiceAbsClsOpt, pseudo", &AbsCls<CElementInfoChoiceAbsClsOpt, Pseudo>, &Child, OneAttribute},
    {"ChoiceAbsClsOpt", &AbsCls<CElementInfoChoiceAbsClsOpt, Own>, &Child, L""},
    {"ChoiceClsCol, pseudo", &ClsCol<CElementInfoChoiceClsCol, Pseudo>, &Objects<2>, TwoAttributes},
    {"ChoiceClsCol", &ClsCol<CElementInfoChoiceClsCol, Own>, &Objects<2>, L""},
    {"ChoiceAbsClsCol, pseudo", &ClsCol<CElementInfoChoiceAbsClsCol, Pseudo>, &Objects<2>, TwoAttributes},
    {"ChoiceAbsClsCol", &ClsCol<CElementInfoChoiceAbsClsCol, Own>, &Objects<2>, L""},
    {"ChoicePrimOpt", &Prim<CElementInfoChoicePrimOpt>, &Five, L""},
    {"ChoiceUntpdOpt", &AnyUntpd<CElementInfoChoiceUntpdOpt>, &Open, L""},
    {"ChoiceCol", &Col<CElementInfoChoiceCol>, &Objects<2>, L""},

    {"AllClsMnd, pseudo", &ClsMnd<CElementInfoAllClsMnd, Pseudo, true>, &Child, OneAttribute},
    {"AllClsMnd, pseudo, null", &ClsMnd<CElementInfoAllClsMnd, Pseudo, true>, &Null, L""},
    {"AllClsMnd", &ClsMnd<CElementInfoAllClsMnd, Own, true>, &Child, L""},
    {"AllClsOpt, pseudo", &ClsOpt<CElementInfoAllClsOpt, Pseudo>, &Child, OneAttribute},
    {"AllClsOpt", &ClsOpt<CElementInfoAllClsOpt, Own>, &Child, L""},
    {"AllAbsClsMnd, pseudo", &AbsCls<CElementInfoAllAbsClsMnd, Pseudo>, &Child, OneAttribute},
    {"AllAbsClsMnd", &AbsCls<CElementInfoAllAbsClsMnd, Own>, &Child, L""},
    {"AllAbsClsOpt, pseudo", &AbsCls<CElementInfoAllAbsClsOpt, Pseudo>, &Child, OneAttribute},
    {"AllAbsClsOpt", &AbsCls<CElementInfoAllAbsClsOpt, Own>, &Child, L""},
    {"AllClsCol, pseudo", &ClsCol<CElementInfoAllClsCol, Pseudo>, &Objects<2>, TwoAttributes},
    {"AllClsCol", &ClsCol<CElementInfoAllClsCol, Own>, &Objects<2>, L""},
    {"AllAbsClsCol, pseudo", &ClsCol<CElementInfoAllAbsClsCol, Pseudo>, &Objects<2>, TwoAttributes},
    {"AllAbsClsCol", &ClsCol<CElementInfoAllAbsClsCol, Own>, &Objects<2>, L""},
    {"AllPrimMnd", &Prim<CElementInfoAllPrimMnd>, &Five, L""},
    {"AllUntpdMnd", &AnyUntpd<CElementInfoAllUntpdMnd>, &Open, L""},
    {"AllCol", &Col<CElementInfoAllCol>, &Objects<2>, L""},
};
// clang-format on

class PseudoAttributes : public testing::TestWithParam<SAttributesRow>
{
};

TEST_P(PseudoAttributes, ReachTheOpenElementAsItsRowSays)
{
    const SAttributesRow& row = GetParam();
    const std::unique_ptr<CElementInfo> pRecord(row.Make());
    CRecordingObject object;
    row.Prepare(object);
    CRecordingWriter writer;
    pRecord->PseudoChildAttributeToXml(CXmlSerializationContext(), &object, &writer);
    EXPECT_TEXT(row.lpctExpected, writer.m_strCalls);
}

INSTANTIATE_TEST_SUITE_P(ElementInfo, PseudoAttributes, testing::ValuesIn(AttributesRows), RowName<SAttributesRow>);

// --- Validation ----------------------------------------------------------------------------------

struct SValidationRow
{
    const char* lpcName;
    RecordMaker Make;
    /// Found with and without a failure asked for, missing with and without. M is the failure of a mandatory element, N
    /// that of a record that does not validate.
    const char* lpcCells;
};

// clang-format off
const SValidationRow ValidationRows[] = {
    {"SeqPrimMnd", &Prim<CElementInfoSeqPrimMnd>, "N N N N"},
    {"SeqClsOpt", &ClsOpt<CElementInfoSeqClsOpt, Own>, "N N N N"},
    {"SeqUntpdCol", &AnyCol<CElementInfoSeqUntpdCol>, "N N N N"},
    {"ChoicePrimOpt", &Prim<CElementInfoChoicePrimOpt>, "N N N N"},
    {"ChoiceAbsClsOpt", &AbsCls<CElementInfoChoiceAbsClsOpt>, "N N N N"},
    {"ChoiceClsCol", &ClsCol<CElementInfoChoiceClsCol>, "N N N N"},
    {"AllPrimMnd", &Prim<CElementInfoAllPrimMnd>, "T T M F"},
    {"AllEnumMnd", &Enum<CElementInfoAllEnumMnd>, "T T M F"},
    {"AllClsMnd", &ClsMnd<CElementInfoAllClsMnd, Own, true>, "T T M F"},
    {"AllClsMnd, content not required", &ClsMnd<CElementInfoAllClsMnd, Own, false>, "T T T F"},
    {"AllClsMnd, pseudo", &ClsMnd<CElementInfoAllClsMnd, Pseudo, true>, "T T M F"},
    {"AllClsMnd, pseudo, content not required", &ClsMnd<CElementInfoAllClsMnd, Pseudo, false>, "T T M F"},
    {"AllAbsClsMnd", &AbsCls<CElementInfoAllAbsClsMnd>, "T T M F"},
    {"AllUntpdMnd", &AnyUntpd<CElementInfoAllUntpdMnd>, "T T M F"},
    {"AllPrimOpt", &Prim<CElementInfoAllPrimOpt>, "T T T T"},
    {"AllEnumOpt", &Enum<CElementInfoAllEnumOpt>, "T T T T"},
    {"AllClsOpt", &ClsOpt<CElementInfoAllClsOpt, Own>, "T T T T"},
    {"AllAbsClsOpt", &AbsCls<CElementInfoAllAbsClsOpt>, "T T T T"},
    {"AllUntpdOpt", &AnyUntpd<CElementInfoAllUntpdOpt>, "T T T T"},
    {"AllCol", &Col<CElementInfoAllCol>, "N N N N"},
    {"AllPrimCol", &Col<CElementInfoAllPrimCol>, "N N N N"},
    {"AllClsCol", &ClsCol<CElementInfoAllClsCol>, "N N N N"},
    {"AllAbsClsCol", &ClsCol<CElementInfoAllAbsClsCol>, "N N N N"},
    {"AllUntpdCol", &Col<CElementInfoAllUntpdCol>, "N N N N"},
};
// clang-format on

class Validation : public testing::TestWithParam<SValidationRow>
{
};

TEST_P(Validation, GivesTheVerdictsOfItsRow)
{
    const SValidationRow& row = GetParam();
    const std::unique_ptr<CElementInfo> pRecord(row.Make());
    const CRecordingObject object;
    // The options that excuse something elsewhere excuse nothing here.
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    context.SetIgnoreInvalidCollectionCounts(true);
    std::string strCells;
    for (const bool bFound : {true, false})
        for (const bool bThrowIfMissing : {true, false})
            (strCells += strCells.empty() ? "" : " ") +=
                ResultOf([&] { return pRecord->Validate(context, &object, bFound, bThrowIfMissing); });
    EXPECT_EQ(strCells, row.lpcCells);
}

INSTANTIATE_TEST_SUITE_P(ElementInfo, Validation, testing::ValuesIn(ValidationRows), RowName<SValidationRow>);

// --- Empty choices -------------------------------------------------------------------------------

/// A choice of one alternative, which owns its record.
class COneAlternative : public CRecordingObject
{
public:
    explicit COneAlternative(RecordMaker Make)
        : CInstanceMonitor(L"COneAlternative")
        , m_pRecord(Make())
    {
    }
    CElementInfo** GetClassElementInfo() const override { return m_apElements; }

    using CXmlGeneratedClass::DoesElementContainOptionalElements;

private:
    std::unique_ptr<CElementInfo> m_pRecord;
    mutable CElementInfo* m_apElements[2] = {m_pRecord.get(), nullptr};
};

bool EndsWith(const std::string& strText, const std::string& strEnd)
{
    return strText.size() >= strEnd.size() && strText.substr(strText.size() - strEnd.size()) == strEnd;
}

class EmptyChoices : public testing::TestWithParam<SWritingRow>
{
};

TEST_P(EmptyChoices, AreAllowedByOptionalAlternativesAndByCollectionsThatMayBeEmpty)
{
    const SWritingRow& row = GetParam();
    const std::string strName(row.lpcName);
    const std::string strRecord = strName.substr(0, strName.find(','));
    const bool bChoice = strRecord.compare(0, 6, "Choice") == 0;

    for (const int nMinOccurs : {0, 1})
    {
        COneAlternative object(row.Make);
        if (EndsWith(strRecord, "Col"))
            object.m_value.SetXmlCollection(new CRecordingCol(L"own", nMinOccurs, 3));
        const bool bExpected =
            bChoice && (EndsWith(strRecord, "Opt") || (EndsWith(strRecord, "Col") && nMinOccurs == 0));
        EXPECT_EQ(object.DoesElementContainOptionalElements(), bExpected) << "minOccurs " << nMinOccurs;
    }
}

INSTANTIATE_TEST_SUITE_P(ElementInfo, EmptyChoices, testing::ValuesIn(WritingRows), RowName<SWritingRow>);

// --- Completeness --------------------------------------------------------------------------------

/// The records that rows are about: what stands ahead of the first comma of their names.
template <class TRow, std::size_t t_nRows>
std::set<std::string> RecordsOf(const TRow (&rows)[t_nRows])
{
    std::set<std::string> records;
    for (const TRow& row : rows)
        records.insert(std::string(row.lpcName).substr(0, std::string(row.lpcName).find(',')));
    return records;
}

TEST(ElementInfoFamilies, EveryConcreteClassHasRowsInBothDirections)
{
    static_assert(std::is_abstract_v<CElementInfoSeq> && std::is_abstract_v<CElementInfoSeqNonCol>);
    static_assert(std::is_abstract_v<CElementInfoChoice>);
    static_assert(std::is_abstract_v<CElementInfoAll> && std::is_abstract_v<CElementInfoAllNonCol>);
    static_assert(std::is_abstract_v<CElementInfoAllEnumCol>);
    static_assert(std::is_abstract_v<CElementInfoChoiceOpt>);
    static_assert(std::is_abstract_v<CElementInfoAllMnd> && std::is_abstract_v<CElementInfoAllOpt>);
    const std::set<std::string> abstracts{"Seq",    "SeqNonCol", "Choice",    "ChoiceOpt", "All",
                                          "AllMnd", "AllOpt",    "AllNonCol", "AllEnumCol"};

    std::set<std::string> concretes;
    for (const char* lpcUnit : {"ElementInfoSeq", "ElementInfoChoice", "ElementInfoAll"})
    {
        std::ifstream header(std::string(QUIVER_SOURCE_DIR "/quiver/metadata/") + lpcUnit + ".h");
        const std::string strDeclaration = "class QVXMLLIB_API CElementInfo";
        for (std::string strLine; std::getline(header, strLine);)
        {
            if (strLine.compare(0, strDeclaration.size(), strDeclaration) != 0)
                continue;
            const std::string strRest = strLine.substr(strDeclaration.size());
            const std::string strRecord = strRest.substr(0, strRest.find(' '));
            if (abstracts.count(strRecord) == 0)
                concretes.insert(strRecord);
        }
    }

    EXPECT_EQ(concretes.size(), 42U);
    EXPECT_EQ(RecordsOf(ReadingRows), concretes);
    EXPECT_EQ(RecordsOf(WritingRows), concretes);
}

} // namespace
} // namespace QvTest
