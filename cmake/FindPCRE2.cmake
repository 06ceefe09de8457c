# Finds PCRE2 for 8-bit text (pcre2.h) and defines PCRE2::8BIT.

find_path(PCRE2_INCLUDE_DIR NAMES pcre2.h)
find_library(PCRE2_LIBRARY NAMES pcre2-8)
mark_as_advanced(PCRE2_INCLUDE_DIR PCRE2_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(PCRE2 REQUIRED_VARS PCRE2_LIBRARY PCRE2_INCLUDE_DIR)

if(PCRE2_FOUND AND NOT TARGET PCRE2::8BIT)
    add_library(PCRE2::8BIT UNKNOWN IMPORTED)
    set_target_properties(PCRE2::8BIT PROPERTIES
        IMPORTED_LOCATION "${PCRE2_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${PCRE2_INCLUDE_DIR}")
endif()
