#pragma once

#include "quiver/document/ExpatReader.h"
#include "quiver/foundation/MemoryLeakHelp.h"

#include <cstdint>
#include <string_view>

namespace QvXmlLib9
{

class CXmlTreeBuilder;

/// Builds the tree of a document that lies in memory as a whole, in one pass over its bytes. It knows what most
/// documents are made of: UTF-8 and no document type. At the first thing that it does not know or does not like it
/// gives up, and says neither where nor why: expat is to read the document then, whose messages and refusals count.
/// Whatever it does not give up, expat accepts too, and reads the same tree from it.
///
///     CXmlScanner scanner(builder, options);
///     if (!scanner.ScanBytes(document))
///         // drop the tree, and read with CExpatReader
///
/// Lives for one load, and is counted as the reader whose place it takes.
class CXmlScanner : public CInstanceMonitor
{
public:
    /// @param builder builds without a filter; it must live as long as the scanner.
    CXmlScanner(CXmlTreeBuilder& builder, const SExpatOptions& options);
    CXmlScanner(const CXmlScanner&) = delete;
    CXmlScanner& operator=(const CXmlScanner&) = delete;

    /// Scans a document as it is stored: a byte order mark may stand ahead, and the encoding that the document declares
    /// must be UTF-8.
    /// @return false if it gave up; what has been built is then of no use.
    bool ScanBytes(std::string_view document);

    /// Scans the UTF-8 form of a document that is UTF-16 to its reader, and may say that it is.
    bool ScanText(std::string_view document);

    /// Looks at the bytes one by one, as it is done where the machine has no wide instructions.
    void UsePlainCode() { m_bPlainCode = true; }

    /// What a scan has made so far.
    struct SMade
    {
        std::int64_t nElements = 0;
        std::int64_t nAttributes = 0;

        /// Takes it all out of the instance counts, and the scanner as well. All of them must have died.
        void Forget() const;
    };
    const SMade& GetMade() const { return m_made; }

private:
    bool Scan(std::string_view document, std::string_view encoding);

    CXmlTreeBuilder& m_builder;
    const SExpatOptions m_options;
    bool m_bPlainCode = false;
    SMade m_made;
};

} // namespace QvXmlLib9
