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
endif()
