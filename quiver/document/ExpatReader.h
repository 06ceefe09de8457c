#pragma once

#include "quiver/document/DoctypeGuard.h"
#include "quiver/foundation/MemoryLeakHelp.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

struct XML_ParserStruct;

namespace QvXmlLib9
{

class CXmlElement;
class CXmlTreeBuilder;

/// What a document may want of its parser.
struct SExpatOptions
{
    bool bNamespaces;
    /// The marks of CDATA sections become part of the text.
    bool bKeepCDATA;
};

/// How many of the bytes that the parser was given lie behind one of its indices. These may have fewer bits than a long
/// document takes, and begin anew then.
template <class Index>
std::size_t GetBytesBehind(std::uint64_t nGiven, Index nIndex)
{
    using Bits = std::make_unsigned_t<Index>;
    return static_cast<std::size_t>(static_cast<Bits>(static_cast<Bits>(nGiven) - static_cast<Bits>(nIndex)));
}

/// Runs expat over the input of a document and hands what expat reports to the builder of its tree. Lives for one parse.
class CExpatReader : public CInstanceMonitor
{
public:
    /// @param doc the tree; it must live as long as the reader.
    CExpatReader(CXmlTreeBuilder& doc, const SExpatOptions& options);
    ~CExpatReader() override;
    CExpatReader(const CExpatReader&) = delete;
    CExpatReader& operator=(const CExpatReader&) = delete;

    /// Makes the parser that the options call for.
    void Init();

    /// Parses the next piece of the document.
    /// @param bFinal whether it is the last one.
    /// @throws CQvException the parser's message as "%s at line %d"; or what the filter has thrown.
    void Parse(std::string_view data, bool bFinal);

private:
    struct SParserDeleter
    {
        void operator()(XML_ParserStruct* pParser) const;
    };

    static void OnStartElement(void* pUserData, const char* lpcName, const char** ppAttributes);
    static void OnEndElement(void* pUserData, const char* lpcName);
    static void OnStartNamespace(void* pUserData, const char* lpcPrefix, const char* lpcURI);
    static void OnText(void* pUserData, const char* lpcText, int nLength);
    static void OnStartCdata(void* pUserData);
    static void OnEndCdata(void* pUserData);
    static void OnEntityDeclaration(void* pUserData, const char* lpcName, int nIsParameterEntity, const char* lpcText,
                                    int nLength, const char* lpcBase, const char* lpcSystemId, const char* lpcPublicId,
                                    const char* lpcNotation);
    static void OnAttributeDeclaration(void* pUserData, const char* lpcElement, const char* lpcAttribute,
                                       const char* lpcType, const char* lpcDefault, int nIsRequired);

    template <class Action>
    static void Handle(void* pUserData, Action action);
    template <class Action>
    static void HandleText(void* pUserData, Action action);

    void AddAttributes(CXmlElement* pElement, const char** ppAttributes);
    void CountNamespace(std::size_t nUnits);
    void CountHandedOver(std::size_t nUnits);
    void Throw_IfOutOfProportion(std::uint64_t nUnits);
    void NoteNamespace(std::size_t nUnits);
    bool HasLongNamespace() const;
    void CheckPrefixes(std::size_t nPrefixes);
    std::size_t CountPrefixesAhead() const;
    void Feed(std::string_view piece, bool bFinal);
    void Give(std::string_view piece, bool bFinal);
    void Run(std::string_view piece, bool bFinal);
    [[noreturn]] void Fail();

    CXmlTreeBuilder& m_doc;
    const SExpatOptions m_options;
    std::unique_ptr<XML_ParserStruct, SParserDeleter> m_parser;
    /// Bytes given to the parser, and how many of them belong to a token whose end it has not seen yet.
    std::uint64_t m_nGiven = 0;
    std::size_t m_nUnfinished = 0;
    /// How many prefixed names that token may have, once there is a long namespace; and the longest in units.
    std::size_t m_nUnfinishedPrefixes = 0;
    std::size_t m_nLongestNamespace = 0;
    CDoctypeGuard m_doctype;
    /// How much the parser has made of little: namespaces of names, declarations, defaults; and what that may
    /// come to before it is compared with the input again.
    std::uint64_t m_nHandedOver = 0;
    std::uint64_t m_nAllowance;
    /// Input that the parser has not been given yet.
    std::string m_strDeferred;
    /// What a handler has thrown, on its way past the parser's frames.
    std::exception_ptr m_pFailure;
    /// Working space, so that declarations repeated on every element cost no allocation.
    std::wstring m_strPrefix;
    std::wstring m_strURI;
};

} // namespace QvXmlLib9
