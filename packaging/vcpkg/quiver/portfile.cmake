# An overlay port: it builds the sources that it is a part of.
#
#     vcpkg install quiver --overlay-ports=packaging/vcpkg

get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS FEATURE_OPTIONS
    FEATURES tools QUIVER_BUILD_TOOLS)

vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS
        -DQUIVER_PCRE=2
        -DQUIVER_BUILD_TESTS=OFF
        -DQUIVER_BUILD_EXAMPLES=OFF
        -DQUIVER_BUILD_BENCH=OFF
        -DQUIVER_WARNINGS_AS_ERRORS=OFF
        ${FEATURE_OPTIONS})
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME Quiver CONFIG_PATH lib/cmake/Quiver)
vcpkg_fixup_pkgconfig()
if("tools" IN_LIST FEATURES)
    vcpkg_copy_tools(TOOL_NAMES quiver-fi quiver-gen AUTO_CLEAN)
endif()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
