# Programs about the order in which things come to life and go: objects in static storage, and modules that are loaded and
# unloaded. They link the shared library and the static one.

set(_life "${CMAKE_CURRENT_SOURCE_DIR}/reliability/life")

# The classes for each of the libraries: code for the shared one must not be compiled for the static one.
foreach(_kind shared static)
    if(_kind STREQUAL "shared")
        set(_library Quiver::QvXmlLib9)
    else()
        set(_library Quiver::QvXmlLib9_static)
    endif()
    add_library(quiver_life_classes_${_kind} STATIC)
    set_target_properties(quiver_life_classes_${_kind} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_link_libraries(quiver_life_classes_${_kind} PUBLIC ${_library} PRIVATE quiver_build_settings)
    quiver_generate(TARGET quiver_life_classes_${_kind} SCHEMAS ../examples/purchase_order/order.xsd
        FACTORY order::COrderRoots)
    quiver_generate(TARGET quiver_life_classes_${_kind} SCHEMAS ../examples/invoice/invoice.xsd
        FACTORY invoice::CInvoiceRoots)

    add_library(quiver_life_module_${_kind} MODULE "${_life}/module.cpp")
    target_link_libraries(quiver_life_module_${_kind} PRIVATE quiver_life_classes_${_kind} quiver_build_settings)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
        # Objects that the linker makes unique in the process would keep the module there.
        target_compile_options(quiver_life_classes_${_kind} PRIVATE -fno-gnu-unique)
        target_compile_options(quiver_life_module_${_kind} PRIVATE -fno-gnu-unique)
    endif()
    if(WIN32)
        continue()
    endif()

    # Ahead of all that is not told otherwise, in the order of the link, and behind all.
    foreach(_priority 101 none 65535)
        set(_name life_globals_${_kind}_${_priority})
        add_executable(${_name} "${_life}/globals.cpp")
        target_link_libraries(${_name} PRIVATE quiver_life_classes_${_kind} quiver_build_settings)
        if(NOT _priority STREQUAL "none")
            target_compile_definitions(${_name} PRIVATE QV_PRIORITY=${_priority})
        endif()
        add_test(NAME ${_name} COMMAND ${_name})
        set_tests_properties(${_name} PROPERTIES TIMEOUT 300)
    endforeach()
endforeach()

# On Windows they come and go in a test program.
if(WIN32)
    target_link_libraries(ModulesWin32_test PRIVATE quiver_example_classes)
    add_dependencies(ModulesWin32_test quiver_life_module_shared quiver_life_module_static)
    target_compile_definitions(ModulesWin32_test PRIVATE
        QUIVER_SHARED_MODULE="$<TARGET_FILE:quiver_life_module_shared>"
        QUIVER_STATIC_MODULE="$<TARGET_FILE:quiver_life_module_static>")
    return()
endif()

# The library stays with the program, or comes and goes with the module. Sanitizers keep what was loaded.
add_executable(life_unload "${_life}/unload.cpp")
target_include_directories(life_unload PRIVATE "${PROJECT_SOURCE_DIR}")
target_link_libraries(life_unload PRIVATE Threads::Threads quiver_build_settings ${CMAKE_DL_LIBS})
add_executable(life_unload_holding "${_life}/unload.cpp")
target_include_directories(life_unload_holding PRIVATE "${PROJECT_SOURCE_DIR}")
target_link_libraries(life_unload_holding PRIVATE Threads::Threads quiver_build_settings ${CMAKE_DL_LIBS} Quiver::QvXmlLib9)
target_link_options(life_unload_holding PRIVATE "LINKER:--no-as-needed")
set(_gone gone)
if(QUIVER_SANITIZE)
    set(_gone any)
endif()
# What is never destroyed, such as the parsed defaults of attributes, cannot be found any more when its module is gone.
set(_leaks "ASAN_OPTIONS=detect_leaks=0")
add_test(NAME life_unload_holding COMMAND life_unload_holding $<TARGET_FILE:quiver_life_module_shared> ${_gone})
add_test(NAME life_unload_shared COMMAND life_unload $<TARGET_FILE:quiver_life_module_shared> any)
add_test(NAME life_unload_static COMMAND life_unload $<TARGET_FILE:quiver_life_module_static> any)
set_tests_properties(life_unload_holding life_unload_shared life_unload_static PROPERTIES TIMEOUT 300
    ENVIRONMENT "${_leaks}")
