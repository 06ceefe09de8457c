# What single tests need beyond the common libraries.

# BigNumberReference_test calculates again with GMP.
find_path(GMPXX_INCLUDE_DIR gmpxx.h REQUIRED)
find_library(GMP_LIBRARY gmp REQUIRED)
find_library(GMPXX_LIBRARY gmpxx REQUIRED)
mark_as_advanced(GMPXX_INCLUDE_DIR GMP_LIBRARY GMPXX_LIBRARY)
target_include_directories(BigNumberReference_test SYSTEM PRIVATE "${GMPXX_INCLUDE_DIR}")
target_link_libraries(BigNumberReference_test PRIVATE "${GMPXX_LIBRARY}" "${GMP_LIBRARY}")

# --- Values in another locale and time zone -------------------------------------------------------------------------
#
# What the values print and parse depends on neither, so their tests run once more where the decimal point is a comma
# and the day begins thirteen hours early. The locale is built here, so that no machine need have it installed. Neither
# sanitizers nor assertions see more there than in the first run, so the builds with them do without the second.

if(NOT WIN32 AND NOT QUIVER_SANITIZE AND NOT QUIVER_DIAGNOSTICS)
    find_program(QUIVER_LOCALEDEF localedef REQUIRED)
    set(_locale_directory "${CMAKE_CURRENT_BINARY_DIR}/locale")
    set(_locale_file "${_locale_directory}/de_DE.UTF-8/LC_NUMERIC")
    add_custom_command(OUTPUT "${_locale_file}"
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${_locale_directory}"
        COMMAND "${QUIVER_LOCALEDEF}" -i de_DE -f UTF-8 "${_locale_directory}/de_DE.UTF-8"
        COMMENT "Building the locale de_DE.UTF-8 for the tests"
        VERBATIM)
    add_custom_target(quiver_test_locale DEPENDS "${_locale_file}")

    file(GLOB _value_tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/values/*_test.cpp")
    foreach(_source ${_value_tests} "${CMAKE_CURRENT_SOURCE_DIR}/foundation/Functions_test.cpp")
        get_filename_component(_name "${_source}" NAME_WE)
        add_dependencies(${_name} quiver_test_locale)
        add_test(NAME ${_name}.German_Auckland COMMAND ${_name})
        set_tests_properties(${_name}.German_Auckland PROPERTIES TIMEOUT 600
            ENVIRONMENT "LOCPATH=${_locale_directory};LC_ALL=de_DE.UTF-8;TZ=Pacific/Auckland;QUIVER_ZONE_OFFSET=46800")
    endforeach()
endif()

# --- Patterns, by both libraries that match them --------------------------------------------------------------------

# Answers are compared with those of PCRE called directly, whichever library the build takes.
if(PCRE_FOUND)
    target_link_libraries(Pattern_test PRIVATE PCRE::PCRE)
    target_compile_definitions(Pattern_test PRIVATE QUIVER_TEST_WITH_PCRE)
endif()

# Where both are installed, the tests of patterns and facets run a second time with the one that the build does not take: its
# source precedes that of the library.
if(PCRE_FOUND AND PCRE2_FOUND)
    add_library(quiver_other_pattern_engine OBJECT
        "${PROJECT_SOURCE_DIR}/quiver/foundation/${QUIVER_OTHER_PATTERN_ENGINE}")
    target_link_libraries(quiver_other_pattern_engine
        PUBLIC PCRE::PCRE PCRE2::8BIT
        PRIVATE Quiver::QvXmlLib9_static quiver_build_settings)
    foreach(_name Pattern_test PatternFirstUse_test PrimitiveRestrictions_test RestrictionCheck_test SimpleType_test
            Constructs_test)
        if(TARGET ${_name})
            set(_other ${_name}.other_pcre)
            add_executable(${_other} $<TARGET_OBJECTS:${_name}> $<TARGET_OBJECTS:quiver_other_pattern_engine>)
            target_link_libraries(${_other} PRIVATE quiver_other_pattern_engine quiver_test_support
                $<TARGET_NAME_IF_EXISTS:quiver_gen>)
            add_test(NAME ${_other} COMMAND ${_other})
            set_tests_properties(${_other} PROPERTIES TIMEOUT 600)
        endif()
    endforeach()
endif()

# --- Generated classes ----------------------------------------------------------------------------------------------

# Tests of whole documents use the classes of the examples.
foreach(_name FirstUse_test ForkPosix_test InvoiceClasses_test MessageChains_test Threads_test)
    if(TARGET ${_name})
        target_link_libraries(${_name} PRIVATE quiver_example_classes)
    endif()
endforeach()

# --- Command-line programs ------------------------------------------------------------------------------------------

if(TARGET quiver_fi)
    target_link_libraries(QuiverFi_test PRIVATE quiver_fi)
    target_link_libraries(Progress_test PRIVATE quiver_tools)
    add_dependencies(QuiverFi_test quiver-fi)
    target_compile_definitions(QuiverFi_test PRIVATE
        QUIVER_VERSION="${PROJECT_VERSION}"
        QUIVER_FI_PROGRAM="$<TARGET_FILE:quiver-fi>")
endif()

if(TARGET FastInfosetInterop_test)
    # Another implementation of Fast Infoset reads what is written here and writes what is read here. Without it the
    # test is skipped, or fails where the environment has QUIVER_REQUIRE_JAVA.
    target_link_libraries(FastInfosetInterop_test PRIVATE quiver_fi quiver_example_classes)
    find_program(QUIVER_JAVA java)
    find_program(QUIVER_JAVAC javac)
    find_file(QUIVER_FASTINFOSET_JAR FastInfoset.jar PATHS /usr/share/java NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    mark_as_advanced(QUIVER_JAVA QUIVER_JAVAC QUIVER_FASTINFOSET_JAR)
    if(QUIVER_JAVA AND QUIVER_JAVAC AND QUIVER_FASTINFOSET_JAR)
        set(_interop_directory "${CMAKE_CURRENT_BINARY_DIR}/interop")
        add_custom_command(OUTPUT "${_interop_directory}/Interop.class"
            COMMAND "${QUIVER_JAVAC}" -encoding UTF-8 -cp "${QUIVER_FASTINFOSET_JAR}" -d "${_interop_directory}"
                "${CMAKE_CURRENT_SOURCE_DIR}/interop/Interop.java"
            DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/interop/Interop.java"
            COMMENT "Compiling the other side of the Fast Infoset tests"
            VERBATIM)
        add_custom_target(quiver_test_interop DEPENDS "${_interop_directory}/Interop.class")
        add_dependencies(FastInfosetInterop_test quiver_test_interop)
        target_compile_definitions(FastInfosetInterop_test PRIVATE
            QUIVER_JAVA="${QUIVER_JAVA}"
            QUIVER_INTEROP_CLASSPATH="${_interop_directory}:${QUIVER_FASTINFOSET_JAR}")
    else()
        target_compile_definitions(FastInfosetInterop_test PRIVATE QUIVER_JAVA="" QUIVER_INTEROP_CLASSPATH="")
    endif()
endif()

# --- Support of generated classes -----------------------------------------------------------------------------------

# Classes as the schema compiler writes them.
add_library(quiver_sample_classes STATIC "${CMAKE_CURRENT_SOURCE_DIR}/generated/SampleClasses.cpp")
target_link_libraries(quiver_sample_classes PUBLIC Quiver::QvXmlLib9_static PRIVATE quiver_build_settings)
foreach(_name Alternatives_test ClassDescription_test GeneratedClass_test Member_test Records_test RepeatedCol_test)
    target_link_libraries(${_name} PRIVATE quiver_sample_classes)
endforeach()

# --- Code of the documentation --------------------------------------------------------------------------------------

# The C++ blocks of a page, one behind the other, make a header.
find_program(QUIVER_AWK awk REQUIRED)
mark_as_advanced(QUIVER_AWK)
set(_snippets "${CMAKE_CURRENT_BINARY_DIR}/docs/generated_code_snippets.h")
add_custom_command(OUTPUT "${_snippets}"
    COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/docs"
    COMMAND "${QUIVER_AWK}" -f "${CMAKE_CURRENT_SOURCE_DIR}/docs/snippets.awk"
        "${PROJECT_SOURCE_DIR}/docs/generated_code.md" > "${_snippets}"
    DEPENDS "${PROJECT_SOURCE_DIR}/docs/generated_code.md" "${CMAKE_CURRENT_SOURCE_DIR}/docs/snippets.awk"
    COMMENT "Taking the code out of docs/generated_code.md"
    VERBATIM)
target_sources(GeneratedCode_test PRIVATE "${_snippets}")
target_include_directories(GeneratedCode_test PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/docs")

# Snippets of the other pages use the classes of the examples, or of schemas of their own.
add_library(quiver_docs_classes STATIC EXCLUDE_FROM_ALL)
target_link_libraries(quiver_docs_classes PUBLIC quiver_example_classes PRIVATE quiver_build_settings)
quiver_generate(TARGET quiver_docs_classes SCHEMAS docs/library.xsd FACTORY library::CLibraryRoots)
quiver_generate(TARGET quiver_docs_classes SCHEMAS docs/ticket_1.xsd FACTORY ticket1::CTicket1Roots
    NAMESPACES urn:example:ticket=ticket1)
quiver_generate(TARGET quiver_docs_classes SCHEMAS docs/ticket_2.xsd FACTORY ticket2::CTicket2Roots
    NAMESPACES urn:example:ticket=ticket2)
quiver_generate(TARGET quiver_docs_classes SCHEMAS ../examples/large_file/readings.xsd FACTORY weather::CReadingsRoots)
target_link_libraries(FormGuides_test PRIVATE quiver_docs_classes)
target_link_libraries(ReadingGuides_test PRIVATE quiver_docs_classes)
foreach(_name FastInfosetPage_test FormGuides_test ReadingGuides_test ReadmeSnippets_test ThreadsGuide_test)
    target_link_libraries(${_name} PRIVATE quiver_example_classes)
    target_compile_definitions(${_name} PRIVATE QUIVER_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endforeach()

# Commands on the pages. They are the same in every build, and compile classes where the reader does.
if(TARGET quiver_fi AND NOT WIN32 AND NOT QUIVER_SANITIZE AND NOT QUIVER_DIAGNOSTICS)
    file(GLOB _pages CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/README.md"
        "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/docs/guides/*.md")
    foreach(_page ${_pages})
        file(STRINGS "${PROJECT_SOURCE_DIR}/${_page}" _commands REGEX "^ *<!-- run( |:)")
        if(_commands)
            string(MAKE_C_IDENTIFIER "${_page}" _name)
            add_test(NAME page_${_name} COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/docs/run_page.sh"
                "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}" "${_page}")
            set_tests_properties(page_${_name} PROPERTIES TIMEOUT 600)
        endif()
    endforeach()
endif()

# --- The rooms of quiver-gen ----------------------------------------------------------------------------------------

if(TARGET quiver_fi)
    add_library(quiver_gen_test_support STATIC "${CMAKE_CURRENT_SOURCE_DIR}/support/SampleBinding.cpp")
    target_link_libraries(quiver_gen_test_support PUBLIC quiver_gen PRIVATE quiver_build_settings)
    file(GLOB _gen_tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/tools/gen/*_test.cpp")
    foreach(_source ${_gen_tests})
        get_filename_component(_name "${_source}" NAME_WE)
        if(TARGET ${_name})
            target_link_libraries(${_name} PRIVATE quiver_gen_test_support)
        endif()
    endforeach()
    add_dependencies(Generator_test quiver_gen_tool)
    target_compile_definitions(Generator_test PRIVATE
        QUIVER_VERSION="${PROJECT_VERSION}"
        QUIVER_GEN_PROGRAM="$<TARGET_FILE:quiver_gen_tool>")

    target_link_libraries(CheckExamples_test PRIVATE quiver_example_classes)
    target_compile_definitions(CheckExamples_test PRIVATE QUIVER_EXAMPLES="${PROJECT_SOURCE_DIR}/examples")

    # Generated code is compiled with every warning an error, by the compiler of the build and by another one if the
    # machine has it.
    if(TARGET CppCompiles_test)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
            find_program(QUIVER_OTHER_CXX g++)
        else()
            find_program(QUIVER_OTHER_CXX NAMES clang++ clang++-14)
        endif()
        mark_as_advanced(QUIVER_OTHER_CXX)
        set(_other_cxx "${QUIVER_OTHER_CXX}")
        if(MINGW AND QUIVER_OTHER_CXX)
            # Clang compiles for Windows with the headers of the compiler of the build, but for those that are a compiler's own.
            string(APPEND _other_cxx " --target=x86_64-w64-windows-gnu -Wno-ignored-attributes")
            foreach(_directory ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES})
                if(_directory MATCHES "/c\\+\\+" OR NOT _directory MATCHES "/lib/gcc/")
                    string(APPEND _other_cxx " -isystem ${_directory}")
                endif()
            endforeach()
        endif()
        target_compile_definitions(CppCompiles_test PRIVATE
            QUIVER_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
            QUIVER_CXX="${CMAKE_CXX_COMPILER}"
            QUIVER_OTHER_CXX="$<IF:$<BOOL:${_other_cxx}>,${_other_cxx},${CMAKE_CXX_COMPILER}>")
    endif()
endif()

# --- Generated classes of our own schemas ---------------------------------------------------------------------------

if(TARGET Constructs_test)
    set(_constructs "${CMAKE_CURRENT_SOURCE_DIR}/tools/gen/constructs")
    set(_generated "${CMAKE_CURRENT_BINARY_DIR}/generated/constructs")
    file(GLOB _schemas CONFIGURE_DEPENDS "${_constructs}/*.xsd")
    file(GLOB _parts CONFIGURE_DEPENDS "${_constructs}/parts/*.xsd")
    # Few files, since each has to be compiled with the headers of the library.
    set(_sources "${_generated}/Constructs_1.cpp" "${_generated}/Constructs_2.cpp" "${_generated}/Roots.cpp")
    _quiver_find_generator(_generator)
    add_custom_command(OUTPUT ${_sources} "${_generated}/Constructs.h" "${_generated}/Roots.h"
        COMMAND "${_generator}" ${_schemas} -o "${_generated}" --factory constructs::CRoots
            --split none --stem Constructs --parts 2 2> "${CMAKE_CURRENT_BINARY_DIR}/constructs.warnings"
        DEPENDS ${_schemas} ${_parts} "${_generator}"
        COMMENT "Generating the classes of tests/tools/gen/constructs"
        VERBATIM)
    target_sources(Constructs_test PRIVATE ${_sources})
    target_include_directories(Constructs_test PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/generated")
    target_link_libraries(Constructs_test PRIVATE EXPAT::EXPAT)
    target_compile_definitions(Constructs_test PRIVATE QUIVER_CONSTRUCTS="${_constructs}")
    if(TARGET SchemaOracle_test)
        target_include_directories(SchemaOracle_test SYSTEM PRIVATE "${QUIVER_XERCES_INCLUDE_DIR}")
        target_link_libraries(SchemaOracle_test PRIVATE "${QUIVER_XERCES_LIBRARY}")
        target_compile_definitions(SchemaOracle_test PRIVATE QUIVER_CONSTRUCTS="${_constructs}")
    endif()
    target_compile_definitions(Golden_test PRIVATE QUIVER_GOLDEN="${CMAKE_CURRENT_SOURCE_DIR}/tools/gen/golden")
endif()

# --- Values in the debugger -----------------------------------------------------------------------------------------

# gdb reads the debug information of the program alone, so that the library may have been built without.
find_program(QUIVER_GDB gdb)
mark_as_advanced(QUIVER_GDB)
if(QUIVER_GDB AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT QUIVER_SANITIZE)
    add_executable(debugger_values "${CMAKE_CURRENT_SOURCE_DIR}/debugger/values.cpp")
    target_link_libraries(debugger_values PRIVATE Quiver::QvXmlLib9_static quiver_build_settings)
    target_compile_options(debugger_values PRIVATE -O0 -g -femit-class-debug-always)
    add_test(NAME Debugger COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/debugger/check.sh" $<TARGET_FILE:debugger_values>)
    set_tests_properties(Debugger PROPERTIES TIMEOUT 300)
endif()

# --- Growth of the cost ---------------------------------------------------------------------------------------------

# Counts by the processor or in valgrind, and replaces the allocation of the C library; scripts/check_cost.sh runs it.
if(TARGET quiver_fi AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT QUIVER_SANITIZE AND NOT QUIVER_DIAGNOSTICS)
    add_executable(quiver_cost reliability/Cost.cpp reliability/CostCounter.cpp reliability/CostDocuments.cpp
        reliability/CostSchemas.cpp reliability/CostTyped.cpp)
    target_link_libraries(quiver_cost PRIVATE quiver_fi quiver_gen Quiver::QvXmlLib9_static quiver_build_settings)
    find_path(QUIVER_VALGRIND_INCLUDE_DIR valgrind/callgrind.h)
    mark_as_advanced(QUIVER_VALGRIND_INCLUDE_DIR)
    if(QUIVER_VALGRIND_INCLUDE_DIR)
        target_include_directories(quiver_cost SYSTEM PRIVATE "${QUIVER_VALGRIND_INCLUDE_DIR}")
        target_compile_definitions(quiver_cost PRIVATE QUIVER_TEST_WITH_VALGRIND)
    endif()
endif()

# --- Faults ---------------------------------------------------------------------------------------------------------

# Calls of the system and allocations fail one after the other; scripts/check_faults.sh runs the long form.
if(TARGET FileFaults_test)
    foreach(_name FileFaults_test MemoryFaults_test)
        target_sources(${_name} PRIVATE reliability/FaultOperations.cpp)
        target_link_libraries(${_name} PRIVATE quiver_fi quiver_gen quiver_example_classes ${CMAKE_DL_LIBS})
        target_compile_definitions(${_name} PRIVATE QUIVER_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    endforeach()
    if(MINGW)
        target_link_options(MemoryFaults_test PRIVATE -Wl,--wrap=__emutls_get_address)
    endif()
endif()
