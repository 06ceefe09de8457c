#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/cpp/Layout.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quiver_gen::cpp
{

/// What the generated code is to be like.
struct SWriteOptions
{
    std::vector<std::string> schemas; ///< names of the schemas given, without folders: the files name them
    ESplit eSplit = ESplit::Namespace;
    std::string strStem;             ///< of the files of ESplit::None; empty for the name of the first schema
    std::size_t nParts = 1;          ///< sources of ESplit::None
    bool bUtf8 = false;              ///< accessors take and give text in UTF-8
    std::string strFactoryNamespace; ///< C++ namespace of the class that makes roots
    std::string strFactory;          ///< its name; empty for CFactory in the namespace of the first schema
    bool bProgram = false;           ///< a main.cpp, and a CMakeLists.txt with a program
    std::string strProgram;          ///< its target, empty for the name of the first schema
    std::string strLibrary;          ///< a CMakeLists.txt with a library target of this name; empty for none
};

/// A file with its name, which has no folder.
struct SFile
{
    std::string strName;
    std::string strText;
};

/// A class of the schema has the name that was asked for the factory.
struct CNameTaken
{
    std::string strName;
};

/// Writes the code of a binding. The same binding gives the same text.
/// @throws CNameTaken
std::vector<SFile> WriteCode(const binding::SBinding& binding, const SWriteOptions& options);

/// A name for files and targets, made of the name of a schema: `Order` for `order.xsd`.
std::string MakeStem(const std::string& strSchema);

} // namespace quiver_gen::cpp
