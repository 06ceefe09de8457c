#include "quiver/output/XmlWriter.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/output/UnitText.h"

#include <cstring>
#include <set>

namespace QvXmlLib9
{

namespace
{

CInstanceClass s_contextClass(L"CXmlWriterContext");

constexpr wchar_t s_szXmlNamespace[] = L"http://www.w3.org/XML/1998/namespace";

/// What names are found by; different for most names that differ. Never 0.
std::uint64_t KeyOf(std::wstring_view svName)
{
    std::uint64_t nFirst = 0;
    std::uint64_t nLast = 0;
    constexpr std::size_t nUnits = sizeof(nFirst) / sizeof(wchar_t);
    if (svName.size() >= nUnits)
    {
        std::memcpy(&nFirst, svName.data(), sizeof(nFirst));
        std::memcpy(&nLast, svName.data() + svName.size() - nUnits, sizeof(nLast));
    }
    else if (!svName.empty())
    {
        nFirst = static_cast<std::uint64_t>(svName.front());
        nLast = static_cast<std::uint64_t>(svName.back());
    }
    const std::uint64_t nKey = (nFirst ^ (nLast << 7 | nLast >> 57) ^ svName.size()) * 0x9E3779B97F4A7C15U;
    return (nKey ^ nKey >> 32) | 1;
}

/// Comparison of names, which are a few units long: too short for a call to pay off.
bool AreEqual(std::wstring_view svName, std::wstring_view svOther)
{
    if (svName.size() != svOther.size())
        return false;
    constexpr std::size_t nStep = sizeof(std::uint64_t) / sizeof(wchar_t);
    const std::size_t nLength = svName.size();
    if (nLength < nStep || nLength > 16)
        return svName == svOther;
    const auto fnAreEqual = [&](std::size_t n)
    {
        return std::memcmp(svName.data() + n, svOther.data() + n, sizeof(std::uint64_t)) == 0;
    };
    for (std::size_t n = 0; n + nStep < nLength; n += nStep)
    {
        if (!fnAreEqual(n))
            return false;
    }
    return fnAreEqual(nLength - nStep);
}

} // namespace

CXmlWriter::CXmlWriter(const wchar_t* lpctClassName, PfnDeclareForValue pfnDeclareForValue)
    : CInstanceMonitor(lpctClassName)
    , m_pfnDeclareForValue(pfnDeclareForValue)
{
    m_mapNamespaces.emplace(s_szXmlNamespace, L"xml");
}

CXmlWriter::~CXmlWriter()
{
    DropContextsTo(0);
}

void CXmlWriter::Open()
{
}

void CXmlWriter::Close()
{
    if (m_pContext != nullptr)
        throw CQvException(L"An Element has not been closed.");
}

void CXmlWriter::SetDefaultNamespace(std::wstring_view svNamespace)
{
    std::wstring strBuffer;
    const std::wstring_view svUnits = ToUnitText(svNamespace, strBuffer);
    if (m_pContext == nullptr)
    {
        m_strDefaultNamespace = svUnits;
        return;
    }
    SetScopeDefaultNamespace(*m_pContext, svUnits);
}

void CXmlWriter::SetScopeDefaultNamespace(CXmlWriterContext& context, std::wstring_view svNamespace)
{
    if (HasInnerScopes(context))
    {
        ChangeOuterScope(context, [&](SScope& scope) { scope.strDefaultNamespace = svNamespace; });
        return;
    }
    BeginScope(context);
    if (!context.m_bOwnsDefaultNamespace)
    {
        m_defaultNamespaces.emplace_back();
        context.m_bOwnsDefaultNamespace = true;
    }
    m_defaultNamespaces.back() = svNamespace;
    ++m_nScopeVersion;
}

void CXmlWriter::AddNamespaceMapping(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    std::wstring strPrefixBuffer;
    std::wstring strNamespaceBuffer;
    const std::wstring_view svPrefixUnits = ToUnitText(svPrefix, strPrefixBuffer);
    const std::wstring_view svNamespaceUnits = ToUnitText(svNamespace, strNamespaceBuffer);
    if (m_pContext != nullptr)
        SetNamespaceMapValue(*m_pContext, svNamespaceUnits, svPrefixUnits);
    else
        m_mapNamespaces[std::wstring(svNamespaceUnits)] = svPrefixUnits;
}

std::wstring CXmlWriter::GeneratePrefix(const NamespaceMap& map)
{
    std::set<std::wstring_view> prefixes;
    for (const auto& [strNamespace, strPrefix] : map)
        prefixes.insert(strPrefix);
    unsigned int n = 0;
    std::wstring strPrefix = FormatPrefix(n);
    while (prefixes.count(strPrefix) != 0)
        strPrefix = FormatPrefix(++n);
    return strPrefix;
}

CXmlWriter::CXmlWriterContext* CXmlWriter::CreateContext(std::wstring_view svName, std::wstring_view svNamespace)
{
    const std::size_t nDepth = m_pContext == nullptr ? 0 : m_pContext->m_dwDepth + std::size_t{1};
    // A record that an exception kept from becoming the open element is still in use.
    if (m_contexts.size() != nDepth)
        DropContextsTo(nDepth);
    // So that what comes behind the count cannot fail.
    if (m_contexts.size() == m_contexts.capacity())
        m_contexts.reserve(m_contexts.size() * 2 + 8);
    CXmlWriterContext& context = TakeContext(svName);
    context.m_pct = s_contextClass.CountCreation();
    context.m_bInUse = true;
    m_contexts.push_back(&context);

    context.m_dwChildCount = 0;
    context.m_dwDepth = static_cast<std::uint32_t>(nDepth);
    context.m_bStartTagOpen = true;
    context.m_bAttributesOpen = false;
    context.m_bInheritsNamespaces = true;
    context.m_bOwnsDefaultNamespace = false;
    context.m_pParent = m_pContext;
    context.m_pWriter = this;
    SetContextNamespace(context, svNamespace);
    if (m_pContext == nullptr)
        BeginRootScope(context);
    return &context;
}

/// A record with a name, which most elements share with one that has ended. Elements follow each other in patterns, so
/// what came behind the last one before is tried first.
CXmlWriter::CXmlWriterContext& CXmlWriter::TakeContext(std::wstring_view svName)
{
    CXmlWriterContext* const pExpected = m_pLastTaken != nullptr ? m_pLastTaken->m_pFollower : nullptr;
    if (pExpected != nullptr && !pExpected->m_bInUse && AreEqual(pExpected->m_strElementName, svName))
        return *(m_pLastTaken = pExpected);
    CXmlWriterContext& context = FindContext(svName);
    if (m_pLastTaken != nullptr)
        m_pLastTaken->m_pFollower = context.m_bSpare ? nullptr : &context;
    m_pLastTaken = &context;
    return context;
}

CXmlWriter::CXmlWriterContext& CXmlWriter::FindContext(std::wstring_view svName)
{
    const std::uint64_t nKey = KeyOf(svName);
    SNamed* const pFirst = m_named.data() + (nKey >> 8) % (s_nNamed / s_nPlaces) * s_nPlaces;
    SNamed* pFree = nullptr;
    for (SNamed* pNamed = pFirst; pNamed != pFirst + s_nPlaces; ++pNamed)
    {
        if (pNamed->pContext != nullptr && pNamed->pContext->m_bInUse)
            continue;
        if (pNamed->nKey == nKey && AreEqual(pNamed->pContext->m_strElementName, svName))
            return *pNamed->pContext;
        if (pFree == nullptr || pNamed->pContext == nullptr)
            pFree = pNamed;
    }
    if (pFree != nullptr && pFree->pContext == nullptr)
    {
        m_pool.push_back(std::make_unique<CXmlWriterContext>());
        pFree->pContext = m_pool.back().get();
    }
    CXmlWriterContext& context = pFree != nullptr ? *pFree->pContext : TakeSpareContext();
    context.m_nTagVersion = 0;
    if (pFree != nullptr)
        pFree->nKey = 0;
    std::wstring strBuffer;
    context.m_strElementName = ToUnitText(svName, strBuffer);
    if (pFree != nullptr)
        pFree->nKey = nKey;
    return context;
}

CXmlWriter::CXmlWriterContext& CXmlWriter::TakeSpareContext()
{
    if (m_spare.empty())
    {
        if (m_spare.capacity() <= m_pool.size())
            m_spare.reserve(m_pool.size() * 2 + 8);
        m_pool.push_back(std::make_unique<CXmlWriterContext>());
        m_pool.back()->m_bSpare = true;
        return *m_pool.back();
    }
    CXmlWriterContext& context = *m_spare.back();
    m_spare.pop_back();
    return context;
}

void CXmlWriter::SetContextNamespace(CXmlWriterContext& context, std::wstring_view svNamespace)
{
    if (m_pContext != nullptr && m_pContext->m_svNamespace == svNamespace)
    {
        context.m_svNamespace = m_pContext->m_svNamespace;
        context.m_nNamespaceId = m_pContext->m_nNamespaceId;
        return;
    }
    if (context.m_strNamespaceBuffer != svNamespace || context.m_nNamespaceBufferId == 0)
    {
        std::wstring strBuffer;
        context.m_strNamespaceBuffer = ToUnitText(svNamespace, strBuffer);
        context.m_nNamespaceBufferId = ++m_nNamespaceIds;
    }
    context.m_svNamespace = context.m_strNamespaceBuffer;
    context.m_nNamespaceId = context.m_nNamespaceBufferId;
}

const CXmlWriter::SElementPrefix& CXmlWriter::GetElementPrefix(const CXmlWriterContext& context)
{
    if (m_nLastPrefixNamespaceId == context.m_nNamespaceId && m_nLastPrefixVersion == m_nScopeVersion)
        return m_lastPrefix;
    m_lastPrefix.bBare = context.m_svNamespace.empty() || context.m_svNamespace == GetDefaultNamespace();
    m_lastPrefix.pstrPrefix = m_lastPrefix.bBare ? nullptr : FindPrefix(context.m_svNamespace);
    m_nLastPrefixNamespaceId = context.m_nNamespaceId;
    m_nLastPrefixVersion = m_nScopeVersion;
    return m_lastPrefix;
}

void CXmlWriter::BeginRootScope(CXmlWriterContext& context)
{
    BeginScope(context);
    m_defaultNamespaces.push_back(m_strDefaultNamespace);
    context.m_bOwnsDefaultNamespace = true;
    for (const auto& [strNamespace, strPrefix] : m_mapNamespaces)
        m_scopes.Bind(strNamespace, strPrefix);
    ++m_nScopeVersion;
}

void CXmlWriter::BeginScope(CXmlWriterContext& context)
{
    if (!context.m_bInheritsNamespaces)
        return;
    context.m_bInheritsNamespaces = false;
    context.m_nOuterBindings = m_scopes.GetCount();
}

void CXmlWriter::PopContext()
{
    CXmlWriterContext& context = *m_pContext;
    if (m_contexts.back() != &context)
        DropContextsTo(context.m_dwDepth + std::size_t{1});
    m_pContext = context.m_pParent;
    // Nearly every element has declared nothing, and its record has a place by name.
    if (!context.m_bInheritsNamespaces || context.m_bSpare)
    {
        DropContextsTo(context.m_dwDepth);
        return;
    }
    m_contexts.pop_back();
    context.m_bInUse = false;
    CInstanceClass::CountDestruction(*context.m_pct);
}

void CXmlWriter::DropContextsTo(std::size_t nCount)
{
    while (m_contexts.size() > nCount)
    {
        CXmlWriterContext& context = *m_contexts.back();
        m_contexts.pop_back();
        if (!context.m_bInheritsNamespaces)
        {
            m_scopes.DropTo(context.m_nOuterBindings);
            ++m_nScopeVersion;
        }
        if (context.m_bOwnsDefaultNamespace)
            m_defaultNamespaces.pop_back();
        context.m_bInUse = false;
        CInstanceClass::CountDestruction(*context.m_pct);
        if (context.m_bSpare)
            m_spare.push_back(&context);
    }
}

const std::wstring& CXmlWriter::GetNamespaceMapValue(std::wstring_view svNamespace)
{
    const std::size_t nBinding = m_scopes.Find(svNamespace);
    return nBinding != CNamespaceScopes::s_nNotFound ? m_scopes.GetPrefix(nBinding) : Bind(svNamespace, L"");
}

void CXmlWriter::SetNamespaceMapValue(CXmlWriterContext& context, std::wstring_view svNamespace,
                                      std::wstring_view svPrefix)
{
    if (HasInnerScopes(context))
    {
        ChangeOuterScope(context, [&](SScope& scope) { scope.mapNamespaces[std::wstring(svNamespace)] = svPrefix; });
        return;
    }
    BeginScope(context);
    Bind(svNamespace, svPrefix);
}

const std::wstring& CXmlWriter::BindGeneratedPrefix(CXmlWriterContext& context, std::wstring_view svNamespace)
{
    BeginScope(context);
    return Bind(svNamespace, m_scopes.GeneratePrefix());
}

std::wstring CXmlWriter::DeclareForValue(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    return m_pfnDeclareForValue != nullptr ? m_pfnDeclareForValue(*this, svPrefix, svNamespace)
                                           : std::wstring(svPrefix);
}

const std::wstring& CXmlWriter::BindPrefix(CXmlWriterContext& context, std::wstring_view svNamespace,
                                           std::wstring_view svPrefix)
{
    if (svPrefix.empty() || svPrefix.substr(0, 3) == L"xml" || m_scopes.IsPrefixBound(svPrefix))
        return BindGeneratedPrefix(context, svNamespace);
    BeginScope(context);
    return Bind(svNamespace, svPrefix);
}

std::vector<std::pair<std::wstring, std::wstring>> CXmlWriter::GetOwnBindings(const CXmlWriterContext& context) const
{
    std::vector<std::pair<std::wstring, std::wstring>> bindings;
    for (std::size_t n = context.m_nOuterBindings; n < m_scopes.GetCount(); ++n)
        bindings.emplace_back(m_scopes.GetPrefix(n), m_scopes.GetNamespace(n));
    return bindings;
}

const std::wstring& CXmlWriter::Bind(std::wstring_view svNamespace, std::wstring_view svPrefix)
{
    ++m_nScopeVersion;
    return m_scopes.GetPrefix(m_scopes.Bind(svNamespace, svPrefix));
}

// --- Scopes that are not the innermost ------------------------------------------------------------------------------

bool CXmlWriter::HasInnerScopes(const CXmlWriterContext& context) const
{
    for (std::size_t n = context.m_dwDepth + std::size_t{1}; n < m_contexts.size(); ++n)
    {
        if (!m_contexts[n]->m_bInheritsNamespaces)
            return true;
    }
    return false;
}

/// The record whose scope holds in an element: its own, or that of the nearest enclosing one that has any.
CXmlWriter::CXmlWriterContext& CXmlWriter::GetScopeOwner(CXmlWriterContext& context) const
{
    CXmlWriterContext* pOwner = &context;
    while (pOwner->m_bInheritsNamespaces)
        pOwner = pOwner->m_pParent;
    return *pOwner;
}

/// How many of the bindings, from the first on, hold in an element.
std::size_t CXmlWriter::GetBindingsEnd(const CXmlWriterContext& context) const
{
    for (std::size_t n = context.m_dwDepth + std::size_t{1}; n < m_contexts.size(); ++n)
    {
        if (!m_contexts[n]->m_bInheritsNamespaces)
            return m_contexts[n]->m_nOuterBindings;
    }
    return m_scopes.GetCount();
}

const std::wstring& CXmlWriter::GetDefaultNamespace(const CXmlWriterContext& context) const
{
    // The root has one of its own.
    std::size_t nOwned = 0;
    for (std::size_t n = 0; n <= context.m_dwDepth; ++n)
        nOwned += m_contexts[n]->m_bOwnsDefaultNamespace ? 1 : 0;
    return m_defaultNamespaces[nOwned - 1];
}

CXmlWriter::NamespaceMap CXmlWriter::GetNamespaceMap(const CXmlWriterContext& context) const
{
    NamespaceMap map;
    for (std::size_t n = 0, nEnd = GetBindingsEnd(context); n < nEnd; ++n)
    {
        if (m_scopes.IsUnbinding(n))
            map.erase(m_scopes.GetNamespace(n));
        else
            map[m_scopes.GetNamespace(n)] = m_scopes.GetPrefix(n);
    }
    return map;
}

/// Changes a scope around others that have data of their own, which must stay as they are.
template <class TChange>
void CXmlWriter::ChangeOuterScope(const CXmlWriterContext& context, TChange Change)
{
    std::vector<SScope> scopes;
    for (std::size_t n = 0; n < m_contexts.size(); ++n)
    {
        CXmlWriterContext& inScope = *m_contexts[n];
        if (inScope.m_bInheritsNamespaces && &inScope != &context)
            continue;
        scopes.push_back({&inScope, GetDefaultNamespace(inScope), GetNamespaceMap(inScope)});
        if (&inScope == &context)
            Change(scopes.back());
    }
    RestoreScopes(scopes);
}

void CXmlWriter::RestoreScopes(const std::vector<SScope>& scopes)
{
    static const NamespaceMap& s_mapNone = *new NamespaceMap;
    m_scopes.DropTo(0);
    m_defaultNamespaces.clear();
    const NamespaceMap* pOuter = &s_mapNone;
    for (const SScope& scope : scopes)
    {
        scope.pContext->m_bInheritsNamespaces = false;
        scope.pContext->m_bOwnsDefaultNamespace = true;
        scope.pContext->m_nOuterBindings = m_scopes.GetCount();
        m_defaultNamespaces.push_back(scope.strDefaultNamespace);
        RestoreBindings(*pOuter, scope.mapNamespaces);
        pOuter = &scope.mapNamespaces;
    }
    ++m_nScopeVersion;
}

/// Makes the bindings of a scope of those of the enclosing one.
void CXmlWriter::RestoreBindings(const NamespaceMap& mapOuter, const NamespaceMap& mapInner)
{
    for (const auto& [strNamespace, strPrefix] : mapInner)
    {
        const auto it = mapOuter.find(strNamespace);
        if (it == mapOuter.end() || it->second != strPrefix)
            m_scopes.Bind(strNamespace, strPrefix);
    }
    for (const auto& [strNamespace, strPrefix] : mapOuter)
    {
        if (mapInner.find(strNamespace) == mapInner.end())
            m_scopes.Unbind(strNamespace);
    }
}

// --- CXmlWriterContext ----------------------------------------------------------------------------------------------

std::wstring CXmlWriter::CXmlWriterContext::GetDefaultNamespace() const
{
    return m_pWriter->GetDefaultNamespace(*this);
}

void CXmlWriter::CXmlWriterContext::SetDefaultNamespace(std::wstring_view svNamespace)
{
    std::wstring strBuffer;
    m_pWriter->SetScopeDefaultNamespace(*this, ToUnitText(svNamespace, strBuffer));
}

CXmlWriter::NamespaceMap CXmlWriter::CXmlWriterContext::GetNamespaceMap() const
{
    return m_pWriter->GetNamespaceMap(*this);
}

std::wstring CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const std::wstring& strNamespace)
{
    std::wstring strBuffer;
    const std::wstring_view svUnits = ToUnitText(strNamespace, strBuffer);
    if (!m_pWriter->HasInnerScopes(*this))
        return m_pWriter->GetNamespaceMapValue(svUnits);
    const NamespaceMap map = GetNamespaceMap();
    const auto it = map.find(std::wstring(svUnits));
    if (it != map.end())
        return it->second;
    m_pWriter->SetNamespaceMapValue(m_pWriter->GetScopeOwner(*this), svUnits, {});
    return {};
}

std::wstring CXmlWriter::CXmlWriterContext::GetNamespaceMapValue(const wchar_t* lpctNamespace)
{
    return GetNamespaceMapValue(std::wstring(lpctNamespace != nullptr ? lpctNamespace : L""));
}

void CXmlWriter::CXmlWriterContext::SetNamespaceMapValue(std::wstring_view svNamespace, std::wstring_view svPrefix)
{
    std::wstring strNamespaceBuffer;
    std::wstring strPrefixBuffer;
    m_pWriter->SetNamespaceMapValue(*this, ToUnitText(svNamespace, strNamespaceBuffer),
                                    ToUnitText(svPrefix, strPrefixBuffer));
}

// --- The open element -----------------------------------------------------------------------------------------------

CXmlWriter::CXmlWriterContext& CXmlWriter::GetOpenElement() const
{
    QV_ASSERT_MSG(m_pContext != nullptr, "m_pContext != NULL");
    if (m_pContext == nullptr)
        throw CQvException(L"No Element has been started.");
    return *m_pContext;
}

CXmlWriter::CXmlWriterContext& CXmlWriter::GetOpenStartTag() const
{
    CXmlWriterContext& context = GetOpenElement();
    if (!context.m_bStartTagOpen)
        throw CQvException(L"Attributes must be added before elements");
    return context;
}

} // namespace QvXmlLib9
