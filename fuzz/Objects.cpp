#include "fuzz/Objects.h"

#include "fuzz/FuzzInput.h"
#include "fuzz/Values.h"

#include "Gpx.h"
#include "GpxRoots.h"
#include "Invoice.h"
#include "InvoiceRoots.h"
#include "Kinds.h"
#include "KindsRoots.h"
#include "Order.h"
#include "OrderRoots.h"
#include "Settings.h"
#include "SettingsRoots.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <type_traits>
#include <vector>

using namespace QvXmlLib9;

namespace fuzz
{

namespace
{

/// Sets a member by a decision: to what `Make` makes, or if that is refused to what is known to be fine.
template <class TSet, class TMake, class TFine>
void Set(CDecisions& decisions, TSet Setter, TMake Make, const TFine& fine)
{
    if (decisions.Below(4) != 0 || !Succeeds([&] { Setter(Make(decisions)); }))
        Setter(fine);
}

/// Sets a member that may be absent.
template <class TSet, class TMake>
void Maybe(CDecisions& decisions, TSet Setter, TMake Make)
{
    if (decisions.Bool())
        Succeeds([&] { Setter(Make(decisions)); });
}

/// What stands in a document in place of a number, beside numbers.
template <class TValue, class TObject, class TSetter>
auto Into(TObject& object, TSetter pfnSet)
{
    return [&object, pfnSet](const TValue& value)
    {
        (object.*pfnSet)(value);
    };
}

// --- Open content ---------------------------------------------------------------------------------------------------

const wchar_t* const s_namespaces[] = {
    L"urn:example:window", L"urn:a", L"urn:b", L"", L"http://www.w3.org/2001/XMLSchema",
};

const wchar_t* const s_otherNamespaces[] = {L"urn:a", L"urn:b", L"http://www.w3.org/2001/XMLSchema"};

const wchar_t* const s_openNames[] = {L"a", L"b", L"window", L"x-y.z", L"\xE4", L"\x4E00", L"a", L"settings"};

/// @param lpctNamespace what a wildcard lets through: writing does not ask it, and reading does.
CSmartPtr<CElement> MakeElement(CDecisions& decisions, const wchar_t* lpctNamespace, int nDepth = 0)
{
    const CSmartPtr<CElement> spElement = new CElement(decisions.OneOf(s_openNames), lpctNamespace);
    const std::size_t nAttributes = decisions.Below(4);
    for (std::size_t n = 0; n < nAttributes; ++n)
    {
        // Two of one name are no XML.
        const std::wstring strName = decisions.OneOf(s_openNames) + std::to_wstring(n);
        spElement->GetAttributes()->Add(strName.c_str(), MakeText(decisions).c_str(), decisions.OneOf(s_namespaces));
    }
    const std::size_t nChildren = nDepth < 4 ? decisions.Below(4) : 0;
    if (nChildren == 0)
        spElement->SetText(MakeText(decisions).c_str());
    for (std::size_t n = 0; n < nChildren; ++n)
        spElement->GetChildElements()->Add(MakeElement(decisions, decisions.OneOf(s_namespaces), nDepth + 1));
    return spElement;
}

/// For a wildcard of other namespaces. Collections take attributes of any; reading does not.
void AddAttributes(CAttributeCol& attributes, CDecisions& decisions)
{
    const wchar_t* const namespaces[] = {L"urn:a", L"urn:b"};
    const std::size_t nAttributes = decisions.Below(3);
    for (std::size_t n = 0; n < nAttributes; ++n)
    {
        const std::wstring strName = decisions.OneOf(s_openNames) + std::to_wstring(n);
        Succeeds([&] { attributes.Add(strName.c_str(), MakeText(decisions).c_str(), decisions.OneOf(namespaces)); });
    }
}

// --- Invoices -------------------------------------------------------------------------------------------------------

CSmartPtr<invoice::CAddress> MakeAddress(CDecisions& decisions, const wchar_t* lpctName)
{
    using invoice::CAddress;
    const CSmartPtr<CAddress> spAddress = new CAddress(lpctName);
    Set(decisions, Into<std::wstring>(*spAddress, &CAddress::SetStreet), MakeText, L"Street 1");
    Set(decisions, Into<std::wstring>(*spAddress, &CAddress::SetCity), MakeText, L"City");
    Maybe(decisions, Into<std::wstring>(*spAddress, &CAddress::SetZip), MakeText);
    // Numbers that no country has, too.
    const auto MakeCountry = [](CDecisions& from)
    {
        return static_cast<invoice::ECountry>(from.Below(6));
    };
    Set(decisions, Into<invoice::ECountry>(*spAddress, &CAddress::SetCountry), MakeCountry, invoice::ECountry::GB);
    return spAddress;
}

CSmartPtr<invoice::CParty> MakeParty(CDecisions& decisions)
{
    using invoice::CCompany;
    using invoice::CPerson;
    if (decisions.Bool())
    {
        const CSmartPtr<CCompany> spCompany = new CCompany(L"buyer");
        Set(decisions, Into<std::wstring>(*spCompany, &CCompany::SetName), MakeText, L"Company");
        Maybe(decisions, Into<std::wstring>(*spCompany, &CCompany::SetContact), MakeText);
        spCompany->SetAddress(MakeAddress(decisions, L"address"));
        Maybe(decisions, Into<std::wstring>(*spCompany, &CCompany::SetVat), MakeText);
        return CSmartPtr<invoice::CParty>(spCompany);
    }
    const CSmartPtr<CPerson> spPerson = new CPerson(L"buyer");
    Set(decisions, Into<std::wstring>(*spPerson, &CPerson::SetFirstName), MakeText, L"First");
    Set(decisions, Into<std::wstring>(*spPerson, &CPerson::SetLastName), MakeText, L"Last");
    Maybe(decisions, Into<CDateTime>(*spPerson, &CPerson::SetBorn), MakeDate);
    if (decisions.Bool())
        spPerson->SetAddress(MakeAddress(decisions, L"address"));
    return CSmartPtr<invoice::CParty>(spPerson);
}

CSmartPtr<invoice::CLine> MakeLine(CDecisions& decisions)
{
    using invoice::CProductLine;
    using invoice::CServiceLine;
    if (decisions.Bool())
    {
        const CSmartPtr<CProductLine> spLine = new CProductLine(L"line");
        Set(decisions, Into<std::wstring>(*spLine, &CProductLine::SetText), MakeText, L"Text");
        Set(decisions, Into<int>(*spLine, &CProductLine::SetQuantity), MakeInteger<int>, 100000);
        Set(decisions, Into<CDecimal>(*spLine, &CProductLine::SetUnitPrice), MakeDecimal, CDecimal(L"0.01"));
        Set(decisions, Into<std::wstring>(*spLine, &CProductLine::SetArticle), MakeText, L"1234-56");
        return CSmartPtr<invoice::CLine>(spLine);
    }
    const CSmartPtr<CServiceLine> spLine = new CServiceLine(L"line");
    Set(decisions, Into<std::wstring>(*spLine, &CServiceLine::SetText), MakeText, L"Text");
    CDateTimeSpan hour;
    hour.ParseXSDDuration(L"PT1H");
    Set(decisions, Into<CDateTimeSpan>(*spLine, &CServiceLine::SetTime), MakeDuration, hour);
    Set(decisions, Into<CDecimal>(*spLine, &CServiceLine::SetHourlyRate), MakeDecimal, CDecimal(L"80"));
    Maybe(decisions, Into<CDateTime>(*spLine, &CServiceLine::SetPerformed), MakeDate);
    return CSmartPtr<invoice::CLine>(spLine);
}

CObject MakeInvoice(CDecisions& decisions)
{
    using invoice::CInvoice;
    const CSmartPtr<CInvoice> spInvoice = new CInvoice;
    const CDateTime day(2024, 2, 29);
    Set(decisions, Into<CDateTime>(*spInvoice, &CInvoice::SetIssued), MakeDate, day);
    spInvoice->SetSeller(MakeAddress(decisions, L"seller"));
    spInvoice->SetBuyer(MakeParty(decisions));
    if (decisions.Bool())
    {
        const CSmartPtr<invoice::CDelivery> spDelivery = new invoice::CDelivery;
        Set(decisions, Into<CDateTime>(*spDelivery, &invoice::CDelivery::SetDate), MakeDate, day);
        Maybe(decisions, Into<std::wstring>(*spDelivery, &invoice::CDelivery::SetCarrier), MakeText);
        if (decisions.Bool())
            spDelivery->SetAddress(MakeAddress(decisions, L"address"));
        spInvoice->SetDelivery(spDelivery);
    }
    const std::size_t nLines = decisions.Below(4);
    for (std::size_t n = 0; n < nLines; ++n)
        spInvoice->GetLine()->Add(MakeLine(decisions));
    const CSmartPtr<invoice::CPayment> spPayment = new invoice::CPayment;
    switch (decisions.Below(4))
    {
    case 0:
    {
        const CSmartPtr<invoice::CTransfer> spTransfer = new invoice::CTransfer;
        Set(decisions, Into<std::wstring>(*spTransfer, &invoice::CTransfer::SetIban), MakeText,
            L"AT611904300234573201");
        Maybe(decisions, Into<CDateTime>(*spTransfer, &invoice::CTransfer::SetDue), MakeDate);
        spPayment->SetTransfer(spTransfer);
        break;
    }
    case 1:
        Set(decisions, Into<std::wstring>(*spPayment, &invoice::CPayment::SetCard), MakeText, L"************1234");
        break;
    case 2:
        spPayment->SetCash(decisions.Bool());
        break;
    default:
        break; // nothing chosen: it cannot be written
    }
    spInvoice->SetPayment(spPayment);
    Set(decisions, Into<CDecimal>(*spInvoice, &CInvoice::SetTotal), MakeDecimal, CDecimal(L"-1"));
    Maybe(decisions, Into<std::wstring>(*spInvoice, &CInvoice::SetRemark), MakeText);
    Set(decisions, Into<std::wstring>(*spInvoice, &CInvoice::SetNumber), MakeText, L"AB-1234");
    const auto MakeLanguage = [](CDecisions& from)
    {
        return static_cast<invoice::ELanguage>(static_cast<int>(from.Below(5)) - 1);
    };
    Maybe(decisions, Into<invoice::ELanguage>(*spInvoice, &CInvoice::SetLanguage), MakeLanguage);
    return CObject(spInvoice);
}

// --- Orders ---------------------------------------------------------------------------------------------------------

CSmartPtr<order::CAddress> MakeOrderAddress(CDecisions& decisions, const wchar_t* lpctName)
{
    using order::CAddress;
    const CSmartPtr<CAddress> spAddress = new CAddress(lpctName);
    Set(decisions, Into<std::wstring>(*spAddress, &CAddress::SetName), MakeText, L"Name");
    Set(decisions, Into<std::wstring>(*spAddress, &CAddress::SetStreet), MakeText, L"Street");
    Set(decisions, Into<std::wstring>(*spAddress, &CAddress::SetCity), MakeText, L"City");
    Maybe(decisions, Into<std::wstring>(*spAddress, &CAddress::SetPostcode), MakeText);
    return spAddress;
}

CObject MakeOrder(CDecisions& decisions)
{
    using order::CItem;
    using order::CPurchaseOrder;
    const CSmartPtr<CPurchaseOrder> spOrder = new CPurchaseOrder;
    spOrder->SetShipTo(MakeOrderAddress(decisions, L"shipTo"));
    if (decisions.Bool())
        spOrder->SetBillTo(MakeOrderAddress(decisions, L"billTo"));
    Maybe(decisions, Into<bool>(*spOrder, &CPurchaseOrder::SetExpress), MakeBool);
    Maybe(decisions, Into<std::wstring>(*spOrder, &CPurchaseOrder::SetComment), MakeText);
    const std::size_t nItems = decisions.Below(4);
    for (std::size_t n = 0; n < nItems; ++n)
    {
        const CSmartPtr<CItem> spItem = spOrder->GetItem()->AddNew();
        Set(decisions, Into<std::wstring>(*spItem, &CItem::SetProduct), MakeText, L"Product");
        Set(decisions, Into<int>(*spItem, &CItem::SetQuantity), MakeInteger<int>, 999);
        Set(decisions, Into<double>(*spItem, &CItem::SetPrice), MakeDouble, 0.1);
        Maybe(decisions, Into<std::wstring>(*spItem, &CItem::SetNote), MakeText);
        Set(decisions, Into<std::wstring>(*spItem, &CItem::SetPart), MakeText, L"123-AB");
    }
    Set(decisions, Into<int>(*spOrder, &CPurchaseOrder::SetNumber), MakeInteger<int>, 7);
    Maybe(decisions, Into<std::wstring>(*spOrder, &CPurchaseOrder::SetCurrency), MakeText);
    return CObject(spOrder);
}

// --- Tracks ---------------------------------------------------------------------------------------------------------

CObject MakeTracks(CDecisions& decisions)
{
    using gpx::CGpx;
    using gpx::CPoint;
    const CSmartPtr<CGpx> spGpx = new CGpx;
    Maybe(decisions, Into<CDateTime>(*spGpx, &CGpx::SetTime), MakeDate);
    Maybe(decisions, Into<std::wstring>(*spGpx, &CGpx::SetKeywords), MakeText);
    Set(decisions, Into<std::wstring>(*spGpx, &CGpx::SetVersion), MakeText, L"1.1");
    Set(decisions, Into<std::wstring>(*spGpx, &CGpx::SetCreator), MakeText, L"c");
    const std::size_t nTracks = decisions.Below(3);
    for (std::size_t nTrack = 0; nTrack < nTracks; ++nTrack)
    {
        const CSmartPtr<gpx::CTrack> spTrack = spGpx->GetTrk()->AddNew();
        Maybe(decisions, Into<std::wstring>(*spTrack, &gpx::CTrack::SetName), MakeText);
        Maybe(decisions, Into<std::wstring>(*spTrack, &gpx::CTrack::SetDesc), MakeText);
        const CSmartPtr<gpx::CSegment> spSegment = spTrack->GetTrkseg()->AddNew();
        const std::size_t nPoints = decisions.Below(4);
        for (std::size_t n = 0; n < nPoints; ++n)
        {
            const CSmartPtr<CPoint> spPoint = spSegment->GetTrkpt()->AddNew();
            Maybe(decisions, Into<CDecimal>(*spPoint, &CPoint::SetEle), MakeDecimal);
            Maybe(decisions, Into<CDateTime>(*spPoint, &CPoint::SetTime), MakeDate);
            Maybe(decisions, Into<std::wstring>(*spPoint, &CPoint::SetName), MakeText);
            Maybe(decisions, Into<unsigned int>(*spPoint, &CPoint::SetSat), MakeInteger<unsigned int>);
            const auto MakeFix = [](CDecisions& from)
            {
                return static_cast<gpx::EFix>(from.Below(5));
            };
            Maybe(decisions, Into<gpx::EFix>(*spPoint, &CPoint::SetFix), MakeFix);
            if (decisions.Bool())
            {
                const CSmartPtr<gpx::CExtensions> spExtensions = new gpx::CExtensions;
                Succeeds([&]
                         { spExtensions->GetAny()->Add(MakeElement(decisions, decisions.OneOf(s_otherNamespaces))); });
                spPoint->SetExtensions(spExtensions);
            }
            Set(decisions, Into<CDecimal>(*spPoint, &CPoint::SetLat), MakeDecimal, CDecimal(L"-90"));
            Set(decisions, Into<CDecimal>(*spPoint, &CPoint::SetLon), MakeDecimal, CDecimal(L"179.99999999"));
        }
    }
    return CObject(spGpx);
}

// --- Settings -------------------------------------------------------------------------------------------------------

CObject MakeSettings(CDecisions& decisions)
{
    using settings::CPlugin;
    using settings::CSettings;
    const CSmartPtr<CSettings> spSettings = new CSettings;
    Set(decisions, Into<std::wstring>(*spSettings, &CSettings::SetTitle), MakeText, L"Title");
    if (decisions.Bool())
        Succeeds([&] { spSettings->SetAny(MakeElement(decisions, L"urn:example:window")); });
    const std::size_t nPlugins = decisions.Below(3);
    for (std::size_t n = 0; n < nPlugins; ++n)
    {
        const CSmartPtr<CPlugin> spPlugin = spSettings->GetPlugin()->AddNew();
        spPlugin->SetEnabled(decisions.Bool());
        Maybe(decisions, Into<int>(*spPlugin, &CPlugin::SetPriority), MakeInteger<int>);
        if (!Succeeds([&] { spPlugin->SetAny(MakeElement(decisions, decisions.OneOf(s_otherNamespaces))); }))
            spPlugin->SetAny(CSmartPtr<CElement>(new CElement(L"own", L"urn:own")));
        Set(decisions, Into<std::wstring>(*spPlugin, &CPlugin::SetId), MakeText, L"a.b");
        AddAttributes(*spPlugin->GetAnyAttribute(), decisions);
    }
    const std::size_t nNotes = decisions.Below(3);
    for (std::size_t n = 0; n < nNotes; ++n)
        Succeeds([&] { spSettings->GetAny2()->Add(MakeElement(decisions, decisions.OneOf(s_otherNamespaces))); });
    Set(decisions, Into<int>(*spSettings, &CSettings::SetVersion), MakeInteger<int>, 1);
    AddAttributes(*spSettings->GetAnyAttribute(), decisions);
    return CObject(spSettings);
}

// --- Every kind -----------------------------------------------------------------------------------------------------

using kinds::CEntry;

template <auto t_pfnSet, auto t_pfnMake>
void Put(CEntry& entry, CDecisions& decisions)
{
    Succeeds([&] { (entry.*t_pfnSet)(t_pfnMake(decisions)); });
}

using PutMember = void (*)(CEntry& entry, CDecisions& decisions);

const PutMember s_putMembers[] = {
    &Put<&CEntry::SetString, &MakeText>,
    &Put<&CEntry::SetAString, &MakeText>,
    &Put<&CEntry::SetNormalizedString, &MakeText>,
    &Put<&CEntry::SetANormalizedString, &MakeText>,
    &Put<&CEntry::SetToken, &MakeText>,
    &Put<&CEntry::SetAToken, &MakeText>,
    &Put<&CEntry::SetLanguage, &MakeName>,
    &Put<&CEntry::SetALanguage, &MakeName>,
    &Put<&CEntry::SetName, &MakeName>,
    &Put<&CEntry::SetAName, &MakeName>,
    &Put<&CEntry::SetNCName, &MakeName>,
    &Put<&CEntry::SetANCName, &MakeName>,
    &Put<&CEntry::SetID, &MakeName>,
    &Put<&CEntry::SetAID, &MakeName>,
    &Put<&CEntry::SetIDREF, &MakeName>,
    &Put<&CEntry::SetAIDREF, &MakeName>,
    &Put<&CEntry::SetNMTOKEN, &MakeName>,
    &Put<&CEntry::SetANMTOKEN, &MakeName>,
    &Put<&CEntry::SetIDREFS, &MakeNames>,
    &Put<&CEntry::SetAIDREFS, &MakeNames>,
    &Put<&CEntry::SetNMTOKENS, &MakeNames>,
    &Put<&CEntry::SetANMTOKENS, &MakeNames>,
    &Put<&CEntry::SetAnyURI, &MakeText>,
    &Put<&CEntry::SetAAnyURI, &MakeText>,
    &Put<&CEntry::SetQName, &MakeQName>,
    &Put<&CEntry::SetAQName, &MakeQName>,
    &Put<&CEntry::SetBoolean, &MakeBool>,
    &Put<&CEntry::SetABoolean, &MakeBool>,
    &Put<&CEntry::SetFloat, &MakeFloat>,
    &Put<&CEntry::SetAFloat, &MakeFloat>,
    &Put<&CEntry::SetDouble, &MakeDouble>,
    &Put<&CEntry::SetADouble, &MakeDouble>,
    &Put<&CEntry::SetDecimal, &MakeDecimal>,
    &Put<&CEntry::SetADecimal, &MakeDecimal>,
    &Put<&CEntry::SetInteger, &MakeBigInteger>,
    &Put<&CEntry::SetAInteger, &MakeBigInteger>,
    &Put<&CEntry::SetNonPositiveInteger, &MakeBigInteger>,
    &Put<&CEntry::SetANonPositiveInteger, &MakeBigInteger>,
    &Put<&CEntry::SetNegativeInteger, &MakeBigInteger>,
    &Put<&CEntry::SetANegativeInteger, &MakeBigInteger>,
    &Put<&CEntry::SetNonNegativeInteger, &MakeBigInteger>,
    &Put<&CEntry::SetANonNegativeInteger, &MakeBigInteger>,
    &Put<&CEntry::SetPositiveInteger, &MakeBigInteger>,
    &Put<&CEntry::SetAPositiveInteger, &MakeBigInteger>,
    &Put<&CEntry::SetLong, &MakeInteger<long long>>,
    &Put<&CEntry::SetALong, &MakeInteger<long long>>,
    &Put<&CEntry::SetInt, &MakeInteger<int>>,
    &Put<&CEntry::SetAInt, &MakeInteger<int>>,
    &Put<&CEntry::SetShort, &MakeInteger<short>>,
    &Put<&CEntry::SetAShort, &MakeInteger<short>>,
    &Put<&CEntry::SetByte, &MakeInteger<signed char>>,
    &Put<&CEntry::SetAByte, &MakeInteger<signed char>>,
    &Put<&CEntry::SetUnsignedLong, &MakeInteger<unsigned long long>>,
    &Put<&CEntry::SetAUnsignedLong, &MakeInteger<unsigned long long>>,
    &Put<&CEntry::SetUnsignedInt, &MakeInteger<unsigned int>>,
    &Put<&CEntry::SetAUnsignedInt, &MakeInteger<unsigned int>>,
    &Put<&CEntry::SetUnsignedShort, &MakeInteger<unsigned short>>,
    &Put<&CEntry::SetAUnsignedShort, &MakeInteger<unsigned short>>,
    &Put<&CEntry::SetUnsignedByte, &MakeInteger<unsigned char>>,
    &Put<&CEntry::SetAUnsignedByte, &MakeInteger<unsigned char>>,
    &Put<&CEntry::SetDuration, &MakeDuration>,
    &Put<&CEntry::SetADuration, &MakeDuration>,
    &Put<&CEntry::SetDateTime, &MakeDate>,
    &Put<&CEntry::SetADateTime, &MakeDate>,
    &Put<&CEntry::SetDate, &MakeDate>,
    &Put<&CEntry::SetADate, &MakeDate>,
    &Put<&CEntry::SetTime, &MakeDate>,
    &Put<&CEntry::SetATime, &MakeDate>,
    &Put<&CEntry::SetGYearMonth, &MakeDate>,
    &Put<&CEntry::SetAGYearMonth, &MakeDate>,
    &Put<&CEntry::SetGYear, &MakeDate>,
    &Put<&CEntry::SetAGYear, &MakeDate>,
    &Put<&CEntry::SetGMonthDay, &MakeDate>,
    &Put<&CEntry::SetAGMonthDay, &MakeDate>,
    &Put<&CEntry::SetGDay, &MakeDate>,
    &Put<&CEntry::SetAGDay, &MakeDate>,
    &Put<&CEntry::SetGMonth, &MakeDate>,
    &Put<&CEntry::SetAGMonth, &MakeDate>,
    &Put<&CEntry::SetHexBinary, &MakeBinary>,
    &Put<&CEntry::SetAHexBinary, &MakeBinary>,
    &Put<&CEntry::SetBase64Binary, &MakeBinary>,
    &Put<&CEntry::SetABase64Binary, &MakeBinary>,
    &Put<&CEntry::SetDoubles, &MakeDoubles>,
    &Put<&CEntry::SetADoubles, &MakeDoubles>,
    &Put<&CEntry::SetEither, &MakeText>,
    &Put<&CEntry::SetAEither, &MakeText>,
};

CObject MakeKinds(CDecisions& decisions)
{
    using kinds::CKinds;
    const CSmartPtr<CKinds> spKinds = new CKinds;
    const std::size_t nEntries = decisions.Below(4);
    for (std::size_t nEntry = 0; nEntry < nEntries; ++nEntry)
    {
        const CSmartPtr<CEntry> spEntry = spKinds->GetEntry()->AddNew();
        // Those of MakeQName. A prefix without a meaning is written as it is.
        spEntry->DeclarePrefix(L"p", decisions.OneOf(s_otherNamespaces));
        spEntry->DeclarePrefix(L"xs", L"http://www.w3.org/2001/XMLSchema");
        const std::size_t nMembers = decisions.Below(12);
        for (std::size_t n = 0; n < nMembers; ++n)
            decisions.OneOf(s_putMembers)(*spEntry, decisions);
    }
    const std::size_t nAmounts = decisions.Below(3);
    for (std::size_t n = 0; n < nAmounts; ++n)
    {
        const CSmartPtr<kinds::CAmount> spAmount = spKinds->GetAmount()->AddNew();
        Set(decisions, Into<CDecimal>(*spAmount, &kinds::CAmount::SetValue), MakeDecimal, CDecimal(L"1"));
        const auto MakeUnit = [](CDecisions& from)
        {
            return static_cast<kinds::EUnit>(from.Below(3));
        };
        Maybe(decisions, Into<kinds::EUnit>(*spAmount, &kinds::CAmount::SetUnit), MakeUnit);
    }
    const std::size_t nOthers = decisions.Below(3);
    for (std::size_t n = 0; n < nOthers; ++n)
        Succeeds([&] { spKinds->GetAny()->Add(MakeElement(decisions, decisions.OneOf(s_otherNamespaces))); });
    return CObject(spKinds);
}

/// Whether two values are the same for whoever asks for them. A number may be none, and a zero may have a sign.
template <class TValue>
bool IsSame(const TValue& left, const TValue& right)
{
    if constexpr (std::is_floating_point_v<TValue>)
        return std::memcmp(&left, &right, sizeof(left)) == 0 || (std::isnan(left) && std::isnan(right));
    else if constexpr (std::is_same_v<TValue, CDateTime> || std::is_same_v<TValue, CDateTimeSpan> ||
                       std::is_same_v<TValue, CDecimal>)
        return left.ToString() == right.ToString();
    else
        return left == right;
}

template <class TItem>
bool IsSame(const std::vector<TItem>& left, const std::vector<TItem>& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const TItem& a, const TItem& b) { return IsSame(a, b); });
}

template <auto t_pfnGet>
bool HaveSame(const CEntry& left, const CEntry& right)
{
    const auto& leftValue = (left.*t_pfnGet)();
    const auto& rightValue = (right.*t_pfnGet)();
    return leftValue.has_value() == rightValue.has_value() && (!leftValue || IsSame(*leftValue, *rightValue));
}

using CompareMember = bool (*)(const CEntry& left, const CEntry& right);

// Without names with prefixes: those are written under other prefixes, and read so.
const CompareMember s_compareMembers[] = {
    &HaveSame<&CEntry::GetString>,
    &HaveSame<&CEntry::GetAString>,
    &HaveSame<&CEntry::GetNormalizedString>,
    &HaveSame<&CEntry::GetANormalizedString>,
    &HaveSame<&CEntry::GetToken>,
    &HaveSame<&CEntry::GetAToken>,
    &HaveSame<&CEntry::GetLanguage>,
    &HaveSame<&CEntry::GetALanguage>,
    &HaveSame<&CEntry::GetName>,
    &HaveSame<&CEntry::GetAName>,
    &HaveSame<&CEntry::GetNCName>,
    &HaveSame<&CEntry::GetANCName>,
    &HaveSame<&CEntry::GetID>,
    &HaveSame<&CEntry::GetAID>,
    &HaveSame<&CEntry::GetIDREF>,
    &HaveSame<&CEntry::GetAIDREF>,
    &HaveSame<&CEntry::GetNMTOKEN>,
    &HaveSame<&CEntry::GetANMTOKEN>,
    &HaveSame<&CEntry::GetIDREFS>,
    &HaveSame<&CEntry::GetAIDREFS>,
    &HaveSame<&CEntry::GetNMTOKENS>,
    &HaveSame<&CEntry::GetANMTOKENS>,
    &HaveSame<&CEntry::GetAnyURI>,
    &HaveSame<&CEntry::GetAAnyURI>,

    &HaveSame<&CEntry::GetBoolean>,
    &HaveSame<&CEntry::GetABoolean>,
    &HaveSame<&CEntry::GetFloat>,
    &HaveSame<&CEntry::GetAFloat>,
    &HaveSame<&CEntry::GetDouble>,
    &HaveSame<&CEntry::GetADouble>,
    &HaveSame<&CEntry::GetDecimal>,
    &HaveSame<&CEntry::GetADecimal>,
    &HaveSame<&CEntry::GetInteger>,
    &HaveSame<&CEntry::GetAInteger>,
    &HaveSame<&CEntry::GetNonPositiveInteger>,
    &HaveSame<&CEntry::GetANonPositiveInteger>,
    &HaveSame<&CEntry::GetNegativeInteger>,
    &HaveSame<&CEntry::GetANegativeInteger>,
    &HaveSame<&CEntry::GetNonNegativeInteger>,
    &HaveSame<&CEntry::GetANonNegativeInteger>,
    &HaveSame<&CEntry::GetPositiveInteger>,
    &HaveSame<&CEntry::GetAPositiveInteger>,
    &HaveSame<&CEntry::GetLong>,
    &HaveSame<&CEntry::GetALong>,
    &HaveSame<&CEntry::GetInt>,
    &HaveSame<&CEntry::GetAInt>,
    &HaveSame<&CEntry::GetShort>,
    &HaveSame<&CEntry::GetAShort>,
    &HaveSame<&CEntry::GetByte>,
    &HaveSame<&CEntry::GetAByte>,
    &HaveSame<&CEntry::GetUnsignedLong>,
    &HaveSame<&CEntry::GetAUnsignedLong>,
    &HaveSame<&CEntry::GetUnsignedInt>,
    &HaveSame<&CEntry::GetAUnsignedInt>,
    &HaveSame<&CEntry::GetUnsignedShort>,
    &HaveSame<&CEntry::GetAUnsignedShort>,
    &HaveSame<&CEntry::GetUnsignedByte>,
    &HaveSame<&CEntry::GetAUnsignedByte>,
    &HaveSame<&CEntry::GetDuration>,
    &HaveSame<&CEntry::GetADuration>,
    &HaveSame<&CEntry::GetDateTime>,
    &HaveSame<&CEntry::GetADateTime>,
    &HaveSame<&CEntry::GetDate>,
    &HaveSame<&CEntry::GetADate>,
    &HaveSame<&CEntry::GetTime>,
    &HaveSame<&CEntry::GetATime>,
    &HaveSame<&CEntry::GetGYearMonth>,
    &HaveSame<&CEntry::GetAGYearMonth>,
    &HaveSame<&CEntry::GetGYear>,
    &HaveSame<&CEntry::GetAGYear>,
    &HaveSame<&CEntry::GetGMonthDay>,
    &HaveSame<&CEntry::GetAGMonthDay>,
    &HaveSame<&CEntry::GetGDay>,
    &HaveSame<&CEntry::GetAGDay>,
    &HaveSame<&CEntry::GetGMonth>,
    &HaveSame<&CEntry::GetAGMonth>,
    &HaveSame<&CEntry::GetHexBinary>,
    &HaveSame<&CEntry::GetAHexBinary>,
    &HaveSame<&CEntry::GetBase64Binary>,
    &HaveSame<&CEntry::GetABase64Binary>,
    &HaveSame<&CEntry::GetDoubles>,
    &HaveSame<&CEntry::GetADoubles>,
    &HaveSame<&CEntry::GetEither>,
    &HaveSame<&CEntry::GetAEither>,
};

bool AreSameKinds(const CXmlObjectBase& leftObject, const CXmlObjectBase& rightObject)
{
    const auto& left = static_cast<const kinds::CKinds&>(leftObject);
    const auto& right = static_cast<const kinds::CKinds&>(rightObject);
    if (left.GetEntry()->GetCount() != right.GetEntry()->GetCount())
        return false;
    for (int n = 0; n < left.GetEntry()->GetCount(); ++n)
    {
        const CEntry& leftEntry = *left.GetEntry()->Item(n);
        const CEntry& rightEntry = *right.GetEntry()->Item(n);
        for (const CompareMember pfnCompare : s_compareMembers)
        {
            if (!pfnCompare(leftEntry, rightEntry))
                return false;
        }
    }
    return true;
}

/// What is written of the others tells enough.
bool AreSameByText(const CXmlObjectBase&, const CXmlObjectBase&)
{
    return true;
}

template <class TObject>
CObject MakeEmpty()
{
    return new TObject;
}

} // namespace

const SClasses s_classes[s_nClasses] = {
    {"examples/invoice/invoice.xsd", &MakeInvoice, &MakeEmpty<invoice::CInvoice>, &invoice::CInvoiceRoots::CreateRoot,
     &AreSameByText},
    {"examples/purchase_order/order.xsd", &MakeOrder, &MakeEmpty<order::CPurchaseOrder>,
     &order::COrderRoots::CreateRoot, &AreSameByText},
    {"examples/gpx_track/gpx.xsd", &MakeTracks, &MakeEmpty<gpx::CGpx>, &gpx::CGpxRoots::CreateRoot, &AreSameByText},
    {"examples/open_content/settings.xsd", &MakeSettings, &MakeEmpty<settings::CSettings>,
     &settings::CSettingsRoots::CreateRoot, &AreSameByText},
    {"fuzz/kinds.xsd", &MakeKinds, &MakeEmpty<kinds::CKinds>, &kinds::CKindsRoots::CreateRoot, &AreSameKinds},
};

CXmlSerializationContext MakeContext(CDecisions& decisions)
{
    CXmlSerializationContext context;
    const unsigned int nOptions = decisions.Byte();
    context.SetIgnoreInvalidCollectionCounts((nOptions & 1) != 0);
    context.SetIgnoreMissingChoice((nOptions & 2) != 0);
    context.SetNoOptionalAttributeDefaultOutput((nOptions & 4) != 0);
    context.SetIgnoreUnknownAttributes((nOptions & 8) != 0);
    if ((nOptions & 48) == 16)
        context.SetIgnoreUnknownElements(true);
    if ((nOptions & 48) == 32)
        context.SetIgnoreMissingMandatoryElements(true);
    if ((nOptions & 64) != 0)
    {
        context.GetNamespaceAliases().Add(L"w", L"urn:example:window");
        context.GetNamespaceAliases().Add(L"xs", L"http://www.w3.org/2001/XMLSchema");
    }
    if ((nOptions & 128) != 0)
        context.SetDefaultNamespaceURI(decisions.OneOf(s_namespaces));
    return context;
}

bool SetInfosetOptions(CXmlSerializationContext& context, CDecisions& decisions)
{
    CFastInfosetContext& infoset = context.GetFIContext();
    const unsigned int nOptions = decisions.Byte();
    if ((nOptions & 1) != 0)
        infoset.SetSuggestedValues();
    const unsigned long lengths[] = {0, 1, 6, 100, 1000000};
    infoset.SetAttributeMaxAddLength(decisions.OneOf(lengths));
    infoset.SetElementMaxAddLength(decisions.OneOf(lengths));
    if ((nOptions & 2) != 0)
    {
        CFIVocabulary& vocabulary = *infoset.GetVocabulary();
        vocabulary.AddElement(L"", L"urn:fuzz:kinds", L"kinds");
        vocabulary.AddElement(L"", L"urn:example:invoice", L"seller");
        vocabulary.AddAttribute(L"", L"", L"number");
        vocabulary.AddElementValue(L"0");
        vocabulary.AddAttributeValue(L"a");
        infoset.SetUseGeneratedVocabulary(true);
    }
    const std::size_t nEncodings = (nOptions & 4) != 0 ? decisions.Below(4) : 0;
    for (std::size_t n = 0; n < nEncodings; ++n)
    {
        const auto eType = static_cast<ItemType>(decisions.Below(ItemType_integer + 1));
        const auto dwType = static_cast<std::uint32_t>(decisions.Below(3));
        const auto dwIndex = static_cast<std::uint32_t>(1 + decisions.Below(dwType == 1 ? 2 : 10));
        infoset.SetEncoding(eType, {dwType, dwIndex});
    }
    return nEncodings == 0;
}

bool IsChangedOnPurpose(const std::wstring& strXml)
{
    return strXml.find(L'\t') != std::wstring::npos || strXml.find(L"><![CDATA[") != std::wstring::npos ||
           strXml.find(L">P<") != std::wstring::npos || strXml.find(L"\"P\"") != std::wstring::npos;
}

} // namespace fuzz
