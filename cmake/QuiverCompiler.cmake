# Compiler settings of our own programs. A consumer's targets never see them.

add_library(quiver_build_settings INTERFACE)
if(MSVC)
    # Sources are UTF-8, and the standard is what they keep to.
    target_compile_options(quiver_build_settings INTERFACE /W4 /permissive- /utf-8 /EHsc /bigobj)
    set(_quiver_warnings_as_errors /WX)
else()
    target_compile_options(quiver_build_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsuggest-override -Wnon-virtual-dtor)
    set(_quiver_warnings_as_errors -Werror)
endif()
if(QUIVER_WARNINGS_AS_ERRORS)
    target_compile_options(quiver_build_settings INTERFACE ${_quiver_warnings_as_errors})
endif()
if(QUIVER_SANITIZE)
    target_compile_options(quiver_build_settings INTERFACE
        -fsanitize=${QUIVER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(quiver_build_settings INTERFACE -fsanitize=${QUIVER_SANITIZE})
endif()
if(QUIVER_COVERAGE)
    target_compile_options(quiver_build_settings INTERFACE --coverage)
    target_link_options(quiver_build_settings INTERFACE --coverage)
endif()
