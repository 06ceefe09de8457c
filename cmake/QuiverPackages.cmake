# `cpack` in the build directory makes an archive for Windows, quiver-VERSION-win64.zip, or Debian packages: libqvxmllib9, libqvxmllib9-dev and quiver-tools, of the components runtime,
# development and tools.

# The tools that a program of the machine that builds can describe have their manual pages.
find_program(QUIVER_GZIP gzip)
mark_as_advanced(QUIVER_GZIP)

# quiver_install_manual_page(TARGET NAME SUMMARY)
function(quiver_install_manual_page target name summary)
    if(NOT QUIVER_GZIP OR CMAKE_CROSSCOMPILING)
        return()
    endif()
    set(page "${PROJECT_BINARY_DIR}/man/${name}.1")
    add_custom_command(OUTPUT "${page}.gz"
        COMMAND "${CMAKE_COMMAND}" -DPROGRAM=$<TARGET_FILE:${target}> -DNAME=${name} "-DSUMMARY=${summary}"
            -DVERSION=${PROJECT_VERSION} "-DOUTPUT=${page}" -P "${PROJECT_SOURCE_DIR}/cmake/QuiverManPage.cmake"
        COMMAND "${QUIVER_GZIP}" -9nf "${page}"
        DEPENDS ${target} "${PROJECT_SOURCE_DIR}/cmake/QuiverManPage.cmake"
        COMMENT "Writing the manual page of ${name}"
        VERBATIM)
    add_custom_target(${name}_manual_page ALL DEPENDS "${page}.gz")
    install(FILES "${page}.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
endfunction()

# What every Debian package has to tell about itself. Other installations have no use for it.
function(_quiver_install_package_documents component package)
    set(directory "${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}")
    install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${directory}" RENAME copyright
        COMPONENT ${component} EXCLUDE_FROM_ALL)
    install(FILES "${PROJECT_BINARY_DIR}/packages/changelog.gz" DESTINATION "${directory}" RENAME changelog.gz
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

# Everything in one archive, with the DLLs that those of Quiver need.
function(_quiver_make_windows_archive)
    if(MINGW)
        foreach(_dll libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll zlib1.dll)
            execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${_dll} OUTPUT_VARIABLE _path
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
            # A compiler that does not know the file says its name.
            if(EXISTS "${_path}")
                install(FILES "${_path}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
            endif()
        endforeach()
    endif()
    install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/CHANGELOG.md" DESTINATION . COMPONENT runtime)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_NAME quiver)
    set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
    set(CPACK_PACKAGE_FILE_NAME "quiver-${PROJECT_VERSION}-win64")
    set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
    set(CPACK_STRIP_FILES ON)
    include(CPack)
endfunction()

function(quiver_make_packages)
    if(WIN32)
        _quiver_make_windows_archive()
        return()
    endif()
    if(NOT QUIVER_GZIP OR NOT QUIVER_BUILD_TOOLS)
        return()
    endif()
    set(directory "${PROJECT_BINARY_DIR}/packages")
    string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
    set(contact "The Quiver authors <support@quiver-xml.example>")
    file(CONFIGURE OUTPUT "${directory}/changelog" @ONLY CONTENT "quiver (@PROJECT_VERSION@) unstable; urgency=medium

  * See CHANGELOG.md of the sources.

 -- @contact@  @date@
")
    execute_process(COMMAND "${QUIVER_GZIP}" -9nf "${directory}/changelog" COMMAND_ERROR_IS_FATAL ANY)
    file(WRITE "${directory}/triggers" "activate-noawait ldconfig\n")
    file(WRITE "${directory}/shlibs"
        "libQvXmlLib9 ${PROJECT_VERSION_MAJOR} libqvxmllib9 (>= ${PROJECT_VERSION})\n")
    foreach(pair runtime:libqvxmllib9 development:libqvxmllib9-dev tools:quiver-tools)
        string(REPLACE ":" ";" pair "${pair}")
        _quiver_install_package_documents(${pair})
    endforeach()

    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGE_NAME quiver)
    set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
    set(CPACK_PACKAGE_CONTACT "${contact}")
    set(CPACK_PACKAGE_DIRECTORY "${directory}")
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_STRIP_FILES ON)
    set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    set(CPACK_COMPONENTS_ALL runtime development tools)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

    set(about "Quiver makes C++ classes from XML schemas and turns their objects into\nXML text or Fast Infoset documents and back.")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libqvxmllib9)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${directory}/triggers;${directory}/shlibs")
    set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "XML data binding, shared library\n${about}")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqvxmllib9-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(pcre libpcre3-dev)
    if(QUIVER_PCRE STREQUAL "2")
        set(pcre libpcre2-dev)
    endif()
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
        "libqvxmllib9 (= ${PROJECT_VERSION}), quiver-tools (= ${PROJECT_VERSION}), libexpat1-dev, zlib1g-dev, ${pcre}")
    set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "XML data binding, headers and static library\n${about}")
    set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME quiver-tools)
    set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
    set(CPACK_COMPONENT_TOOLS_DESCRIPTION "XML data binding, command-line programs\n${about}")
    include(CPack)
endfunction()
