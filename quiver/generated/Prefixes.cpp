#include "quiver/generated/Prefixes.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/generated/LexicalForm.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/output/XmlWriter.h"

#include <functional>
#include <map>

namespace QvXmlLib9
{

namespace
{

/// One name of a text, which may be a list of them.
struct SName
{
    std::wstring_view prefix;
    std::wstring_view local;

    explicit SName(std::wstring_view name)
        : local(name)
    {
        const std::size_t nColon = name.find(L':');
        if (nColon == std::wstring_view::npos)
            return;
        prefix = name.substr(0, nColon);
        local = name.substr(nColon + 1);
    }
};

/// A name that says its namespace itself: `{urn:a}name`.
bool IsExpandedName(std::wstring_view item)
{
    const std::size_t nEnd = item.rfind(L'}');
    return !item.empty() && item.front() == L'{' && nEnd != std::wstring_view::npos &&
           HasForm(CSimpleType::Form_NCName, item.substr(nEnd + 1));
}

thread_local const CNameScope* t_pScope = nullptr;

std::wstring Join(std::wstring_view prefix, std::wstring_view local)
{
    std::wstring strName(prefix);
    if (!prefix.empty())
        strName += L':';
    return strName += local;
}

/// Whether the items of a text are all names. Those of a union need not be.
bool HasOnlyNames(const CSimpleType& type)
{
    return type.GetForm() == CSimpleType::Form_QName ||
           (type.GetForm() == CSimpleType::Form_List && type.GetItem().GetForm() == CSimpleType::Form_QName);
}

/// Whether an item of a text is a name. In a union one without a prefix may be anything.
bool IsName(std::wstring_view item, const CSimpleType& type)
{
    return HasForm(CSimpleType::Form_QName, item) && (HasOnlyNames(type) || item.find(L':') != std::wstring_view::npos);
}

/// Whether `{urn:a}name` is a name in a text. A union may have another type that takes it as it stands, so that a
/// document may have held it.
bool MayHoldExpandedNames(const std::wstring& strText, const CSimpleType& type)
{
    if (strText.find(L'{') == std::wstring::npos)
        return false;
    if (HasOnlyNames(type))
        return true;
    const CNameScope scope = CNameScope::OfADocument();
    return !type.IsValid(strText);
}

/// A text with each of its names replaced.
/// @param IsToReplace which of its items are names.
template <class TIsName, class TReplace>
std::wstring ReplaceNames(const std::wstring& strText, TIsName IsToReplace, TReplace Replace)
{
    std::wstring strResult;
    std::size_t nDone = 0;
    for (const std::wstring_view item : SplitList(strText))
    {
        if (!IsToReplace(item))
            continue;
        const std::size_t nStart = static_cast<std::size_t>(item.data() - strText.data());
        strResult.append(strText, nDone, nStart - nDone);
        strResult += Replace(item);
        nDone = nStart + item.size();
    }
    return strResult.append(strText, nDone, std::wstring::npos);
}

} // namespace

// --- Tables ----------------------------------------------------------------------------------------------------------

/// A hostile document may give one prefix another namespace at each value, so nothing here is searched from the beginning.
struct CPrefixes::STables
{
    std::map<std::wstring, std::wstring, std::less<>> uris;
    /// The first prefix that a namespace got. The empty one is no such: not every name can do without a prefix.
    std::map<std::wstring, std::wstring, std::less<>> prefixes;
    /// The number that the next namespace of a prefix that is taken tries.
    std::map<std::wstring, int, std::less<>> numbers;

    bool Add(const std::wstring& strPrefix, const std::wstring& strUri)
    {
        const auto [it, bNew] = uris.try_emplace(strPrefix, strUri);
        if (bNew && !strPrefix.empty())
            prefixes.try_emplace(strUri, strPrefix);
        return bNew || it->second == strUri;
    }
};

CPrefixes::CPrefixes() = default;
CPrefixes::~CPrefixes() = default;

CPrefixes::CPrefixes(const CPrefixes& source)
    : m_pTables(source.m_pTables != nullptr ? std::make_unique<STables>(*source.m_pTables) : nullptr)
{
}

CPrefixes& CPrefixes::operator=(const CPrefixes& source)
{
    m_pTables = CPrefixes(source).m_pTables;
    return *this;
}

CPrefixes::STables& CPrefixes::Tables()
{
    if (m_pTables == nullptr)
        m_pTables = std::make_unique<STables>();
    return *m_pTables;
}

const CPrefixes& CPrefixes::None()
{
    // Never destroyed: static objects may be written while they die.
    static const CPrefixes& s_none = *new CPrefixes;
    return s_none;
}

const std::wstring* CPrefixes::Find(std::wstring_view prefix) const
{
    if (m_pTables == nullptr)
        return nullptr;
    const auto it = m_pTables->uris.find(prefix);
    return it == m_pTables->uris.end() ? nullptr : &it->second;
}

void CPrefixes::Set(const std::wstring& strPrefix, const std::wstring& strUri)
{
    STables& tables = Tables();
    if (tables.Add(strPrefix, strUri))
        return;
    // The namespace that the prefix stood for may have others.
    std::wstring& strOld = tables.uris.find(strPrefix)->second;
    if (const auto it = tables.prefixes.find(strOld); it != tables.prefixes.end() && it->second == strPrefix)
    {
        tables.prefixes.erase(it);
        for (const auto& [strOther, strOtherUri] : tables.uris)
        {
            if (strOther != strPrefix && !strOther.empty() && strOtherUri == strOld)
                tables.prefixes.try_emplace(strOld, strOther);
        }
    }
    strOld = strUri;
    if (!strPrefix.empty())
        tables.prefixes.try_emplace(strUri, strPrefix);
}

/// @return the prefix under which the namespace is known from now on.
std::wstring CPrefixes::Add(std::wstring_view prefix, const std::wstring& strUri)
{
    STables& tables = Tables();
    std::wstring strPrefix(prefix);
    // A name without a prefix that belongs to no namespace cannot get one.
    if (tables.Add(strPrefix, strUri) || strUri.empty())
        return strPrefix;
    if (const auto it = tables.prefixes.find(strUri); it != tables.prefixes.end())
        return it->second;
    const std::wstring strStem = prefix.empty() ? L"ns" : strPrefix;
    int& nNumber = tables.numbers.try_emplace(strStem, 1).first->second;
    do
        strPrefix = strStem + std::to_wstring(nNumber++);
    while (!tables.Add(strPrefix, strUri));
    return strPrefix;
}

// --- Names -----------------------------------------------------------------------------------------------------------

std::wstring CPrefixes::MakeName(std::wstring_view prefix, const std::wstring& strUri, std::wstring_view local)
{
    return Join(Add(prefix, strUri), local);
}

std::pair<std::wstring_view, std::wstring_view> CPrefixes::Resolve(std::wstring_view name) const
{
    const SName parts(name);
    const std::wstring* const pUri = Find(parts.prefix);
    return {pUri != nullptr ? std::wstring_view(*pUri) : std::wstring_view(), parts.local};
}

bool CPrefixes::Note(std::wstring& text, const CSimpleType& type, const CXmlElement& element,
                     const CXmlSerializationContext& context, const wchar_t* lpctName)
{
    if (element.GetDocument() == nullptr || context.GetSchemaType() == SchemaType_NoNamespaces)
        return false;
    const std::wstring strNoted = ReplaceNames(
        text, [&](std::wstring_view item) { return IsName(item, type); },
        [&](std::wstring_view item)
        {
            const SName name(item);
            static const std::wstring& s_strNone = *new std::wstring;
            const std::wstring* pUri = element.FindPrefix(name.prefix);
            if (pUri == nullptr && name.prefix.empty())
                pUri = &s_strNone;
            if (pUri == nullptr && HasOnlyNames(type))
                throw CQvInvalidValueException(
                    FormatString(L"Invalid Value for %s [%s]", lpctName, text.c_str()),
                    CQvException(FormatString(L"The prefix %s is not declared", std::wstring(name.prefix).c_str())));
            return Join(pUri != nullptr ? Add(name.prefix, *pUri) : std::wstring(name.prefix), name.local);
        });
    if (strNoted == text)
        return false;
    text = strNoted;
    return true;
}

std::wstring CPrefixes::DeclareExpanded(std::wstring_view name, CXmlWriter& writer) const
{
    const std::size_t nEnd = name.rfind(L'}');
    const std::wstring_view uri = name.substr(1, nEnd - 1);
    std::wstring_view prefix = uri.empty() ? L"" : L"ns";
    if (m_pTables != nullptr && !uri.empty())
    {
        const auto it = m_pTables->prefixes.find(uri);
        if (it != m_pTables->prefixes.end())
            prefix = it->second;
    }
    return Join(writer.DeclareForValue(prefix, uri), name.substr(nEnd + 1));
}

std::wstring CPrefixes::Declare(const std::wstring& strText, const CSimpleType& type, CXmlWriter& writer) const
{
    const bool bExpanded = MayHoldExpandedNames(strText, type);
    return ReplaceNames(
        strText, [&](std::wstring_view item) { return IsName(item, type) || (bExpanded && IsExpandedName(item)); },
        [&](std::wstring_view item)
        {
            if (bExpanded && IsExpandedName(item))
                return DeclareExpanded(item, writer);
            const SName name(item);
            const std::wstring* const pUri = Find(name.prefix);
            return Join(pUri != nullptr ? writer.DeclareForValue(name.prefix, *pUri) : std::wstring(name.prefix),
                        name.local);
        });
}

std::wstring CPrefixes::DeclareValue(std::wstring_view text, const CSimpleType& type, const wchar_t* lpctName,
                                     CXmlWriter& writer) const
{
    std::wstring strText(text);
    if (type.HasValues())
    {
        const CNameScope scope(*this);
        type.Check(strText, lpctName);
    }
    return Declare(strText, type, writer);
}

// --- Comparing names -------------------------------------------------------------------------------------------------

CNameScope::CNameScope(const CXmlElement& element)
    : m_bTakesExpanded(false)
    , m_pElement(&element)
    , m_pOuter(std::exchange(t_pScope, this))
{
}

CNameScope::CNameScope(const CPrefixes& prefixes)
    : m_pPrefixes(&prefixes)
    , m_pOuter(std::exchange(t_pScope, this))
{
}

CNameScope::CNameScope()
    : m_pOuter(std::exchange(t_pScope, this))
{
}

CNameScope::CNameScope(bool bTakesExpanded)
    : m_bTakesExpanded(bTakesExpanded)
    , m_pOuter(std::exchange(t_pScope, this))
{
}

CNameScope::~CNameScope()
{
    t_pScope = m_pOuter;
}

const std::wstring* CNameScope::Find(std::wstring_view prefix) const
{
    static const std::wstring& s_strNone = *new std::wstring;
    const std::wstring* pUri = nullptr;
    if (m_pPrefixes != nullptr)
        pUri = m_pPrefixes->Find(prefix);
    else if (m_pElement != nullptr && m_pElement->GetDocument() != nullptr)
    {
        pUri = m_pElement->FindPrefix(prefix);
        if (pUri == nullptr && prefix.empty())
            pUri = &s_strNone;
    }
    return pUri;
}

bool CNameScope::IsSame(std::wstring_view name, std::wstring_view listed)
{
    if (name == listed || !IsExpandedName(listed) || IsExpandedName(name))
        return name == listed;
    const SName parts(name);
    const std::size_t nEnd = listed.rfind(L'}');
    if (parts.local != listed.substr(nEnd + 1))
        return false;
    const std::wstring* const pUri = t_pScope != nullptr ? t_pScope->Find(parts.prefix) : nullptr;
    return pUri == nullptr || *pUri == listed.substr(1, nEnd - 1);
}

bool CNameScope::IsExpanded(std::wstring_view text)
{
    return (t_pScope == nullptr || t_pScope->m_bTakesExpanded) && IsExpandedName(text);
}

} // namespace QvXmlLib9
