# Finds PCRE with the classic interface (pcre.h) and defines PCRE::PCRE.

find_path(PCRE_INCLUDE_DIR NAMES pcre.h)
find_library(PCRE_LIBRARY NAMES pcre)
mark_as_advanced(PCRE_INCLUDE_DIR PCRE_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(PCRE REQUIRED_VARS PCRE_LIBRARY PCRE_INCLUDE_DIR)

if(PCRE_FOUND AND NOT TARGET PCRE::PCRE)
    add_library(PCRE::PCRE UNKNOWN IMPORTED)
    set_target_properties(PCRE::PCRE PROPERTIES
        IMPORTED_LOCATION "${PCRE_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${PCRE_INCLUDE_DIR}")
endif()
