#pragma once

#include "quiver/foundation/Export.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

class CSimpleType;
class CXmlElement;
class CXmlSerializationContext;
class CXmlWriter;

/// What the prefixes of an object's values stand for. Values of type xs:QName are texts with a prefix; a document may
/// give a prefix another meaning at each element, an object has one for each.
class QVXMLLIB_API CPrefixes
{
public:
    CPrefixes();
    CPrefixes(const CPrefixes& source);
    CPrefixes& operator=(const CPrefixes& source);
    ~CPrefixes();

    /// Those of an object that has taken down none.
    static const CPrefixes& None();

    /// @return null for a prefix without a meaning of its own.
    const std::wstring* Find(std::wstring_view prefix) const;

    void Set(const std::wstring& strPrefix, const std::wstring& strUri);

    /// A name as a text, with a prefix that stands for its namespace here.
    /// @param prefix the one to take, unless it means something else already.
    std::wstring MakeName(std::wstring_view prefix, const std::wstring& strUri, std::wstring_view local);

    /// The namespace and the local name in a text that is one name. The namespace is empty for a prefix without a
    /// meaning.
    std::pair<std::wstring_view, std::wstring_view> Resolve(std::wstring_view name) const;

    /// Takes down what the prefixes in a text stand for at the element that it was read from. One that means something
    /// else here already gets another name.
    /// @param text the text as it was read; changed where a prefix got another name.
    /// @return whether it was changed.
    /// @throws CQvInvalidValueException "Invalid Value for %s [%s]" for a prefix that nobody declared.
    bool Note(std::wstring& text, const CSimpleType& type, const CXmlElement& element,
              const CXmlSerializationContext& context, const wchar_t* lpctName);

    /// A text as it is written on the open element, or inside it, with prefixes that are declared there.
    std::wstring Declare(const std::wstring& strText, const CSimpleType& type, CXmlWriter& writer) const;

    /// The same for a value, which must be one of the type's if that lists its values.
    /// @param lpctName what a message calls it.
    /// @throws CQvInvalidValueException for a name whose prefix stands for another namespace than the type asks for.
    std::wstring DeclareValue(std::wstring_view text, const CSimpleType& type, const wchar_t* lpctName,
                              CXmlWriter& writer) const;

private:
    struct STables;

    std::wstring DeclareExpanded(std::wstring_view name, CXmlWriter& writer) const;
    std::wstring Add(std::wstring_view prefix, const std::wstring& strUri);
    STables& Tables();

    std::unique_ptr<STables> m_pTables; ///< null for none, as most objects have
};

/// While it lives, the thread compares names by what their prefixes stand for. The values that a schema lists are written
/// `{namespace}name`; without a scope a name with a prefix is the same if its local name is, and what the prefix stands
/// for is asked when it is written.
class QVXMLLIB_API CNameScope
{
public:
    /// Names are those of a document, at an element of it.
    explicit CNameScope(const CXmlElement& element);
    /// Names are those of an object that has taken down its prefixes.
    explicit CNameScope(const CPrefixes& prefixes);
    /// Names are those of the schema.
    CNameScope();
    /// Texts are those of some document, of which no declaration is known.
    static CNameScope OfADocument() { return CNameScope(false); }
    ~CNameScope();
    CNameScope(const CNameScope&) = delete;
    CNameScope& operator=(const CNameScope&) = delete;

    /// Whether a name is the one that a schema lists.
    static bool IsSame(std::wstring_view name, std::wstring_view listed);

    /// Whether a text is `{namespace}name`, which documents do not write.
    static bool IsExpanded(std::wstring_view text);

private:
    explicit CNameScope(bool bTakesExpanded);

    const std::wstring* Find(std::wstring_view prefix) const;

    bool m_bTakesExpanded = true;
    const CXmlElement* m_pElement = nullptr;
    const CPrefixes* m_pPrefixes = nullptr;
    const CNameScope* m_pOuter;
};

} // namespace QvXmlLib9
