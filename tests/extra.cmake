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
# and the day begins thirteen hours early. The locale is built here, so that no machine need have it installed.

if(NOT WIN32)
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
            ENVIRONMENT "LOCPATH=${_locale_directory};LC_ALL=de_DE.UTF-8;TZ=Pacific/Auckland")
    endforeach()
endif()

# --- Patterns against the library that matches them -----------------------------------------------------------------

target_link_libraries(Pattern_test PRIVATE PCRE::PCRE)

# --- Generated classes ----------------------------------------------------------------------------------------------

# Tests of whole documents use the classes of the examples.
set(_example_classes
    purchase_order/PurchaseOrder.cpp gpx_track/Gpx.cpp invoice/Invoice.cpp open_content/Settings.cpp)
list(TRANSFORM _example_classes PREPEND "${PROJECT_SOURCE_DIR}/examples/")
add_library(quiver_test_classes STATIC ${_example_classes})
target_link_libraries(quiver_test_classes PUBLIC Quiver::QvXmlLib9_static PRIVATE quiver_build_settings)
foreach(_name MessageChains_test Threads_test)
    target_link_libraries(${_name} PRIVATE quiver_test_classes)
endforeach()

# --- Command-line programs ------------------------------------------------------------------------------------------

if(TARGET quiver_fi)
    target_link_libraries(QuiverFi_test PRIVATE quiver_fi)

    # Another implementation of Fast Infoset reads what is written here and writes what is read here. Without it the
    # test is skipped, or fails where the environment has QUIVER_REQUIRE_JAVA.
    target_link_libraries(FastInfosetInterop_test PRIVATE quiver_fi quiver_test_classes)
    find_program(QUIVER_JAVA java)
    find_program(QUIVER_JAVAC javac)
    find_file(QUIVER_FASTINFOSET_JAR FastInfoset.jar PATHS /usr/share/java NO_DEFAULT_PATH)
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

# The rooms of quiver-gen.
if(TARGET quiver_gen)
    foreach(_name SchemaReader_test SchemaLoader_test SchemaComponents_test SchemaChecks_test SchemaValues_test
            Binding_test BindingDerivation_test BindingNames_test BindingOptions_test BindingPatterns_test
            BindingSimpleTypes_test BindingSize_test BindingWarnings_test)
        target_link_libraries(${_name} PRIVATE quiver_gen)
    endforeach()
endif()
