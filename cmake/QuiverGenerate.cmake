# quiver_generate(TARGET target SCHEMAS schema... [NAMESPACES URI=ns::name...] [FACTORY ns::CName] [STEM name] [PARTS n]
#                 [OPTIONS option...])
#
# Adds the classes of XML schemas to a target that is made in the same directory: quiver-gen writes their sources during
# the build, and again when a schema changes, or one that it includes or imports.
#
#     add_executable(app main.cpp)
#     target_link_libraries(app PRIVATE Quiver::QvXmlLib9)
#     quiver_generate(TARGET app SCHEMAS order.xsd FACTORY order::CRoots)
#
# gives main.cpp the headers Order.h and Roots.h.
#
#   SCHEMAS     the schemas, relative to the current source directory.
#   NAMESPACES  C++ namespaces of target namespaces, as --namespace takes them.
#   FACTORY     the class that makes the objects of roots; its files have its name without the C. Factory.h by default.
#   STEM        name of the header, and of the source. By default the name of the first schema, such as Order.
#   PARTS       number of sources, for large schemas: they compile in parallel. One by default.
#   OPTIONS     other options of quiver-gen. With --split the names of the files depend on the schemas; the program is
#               asked for them while CMake runs, so that takes an installed Quiver.
#
# Where the program that runs at build time is not that of the package, as in cross-compiling, QUIVER_GEN_EXECUTABLE
# names it.

cmake_policy(PUSH)
cmake_policy(VERSION 3.20...3.25)

# The program, for commands of the build.
function(_quiver_find_generator variable)
    if(QUIVER_GEN_EXECUTABLE)
        set(${variable} "${QUIVER_GEN_EXECUTABLE}" PARENT_SCOPE)
    elseif(TARGET Quiver::quiver-gen)
        set(${variable} Quiver::quiver-gen PARENT_SCOPE)
    else()
        message(FATAL_ERROR "quiver_generate: this Quiver was built without quiver-gen")
    endif()
endfunction()

# The names that quiver-gen gives without having read a schema.
function(_quiver_list_known_files variable arg_stem arg_factory arg_parts)
    set(files "${arg_stem}.h")
    if(arg_parts GREATER 1)
        foreach(part RANGE 1 ${arg_parts})
            list(APPEND files "${arg_stem}_${part}.cpp")
        endforeach()
    else()
        list(APPEND files "${arg_stem}.cpp")
    endif()
    list(APPEND files "${arg_factory}.h" "${arg_factory}.cpp")
    set(${variable} "${files}" PARENT_SCOPE)
endfunction()

# The name of the schema as quiver-gen makes a file name of it.
function(_quiver_make_stem variable schema)
    get_filename_component(name "${schema}" NAME_WLE)
    string(REGEX MATCHALL "[A-Za-z0-9]+" words "${name}")
    set(stem "")
    foreach(word IN LISTS words)
        string(SUBSTRING "${word}" 0 1 first)
        string(TOUPPER "${first}" first)
        string(SUBSTRING "${word}" 1 -1 rest)
        string(APPEND stem "${first}${rest}")
    endforeach()
    if(NOT stem MATCHES "^[A-Za-z]")
        string(PREPEND stem "Schema")
    endif()
    set(${variable} "${stem}" PARENT_SCOPE)
endfunction()

# Asks the program for the names of the files, and has CMake run again when a schema changes that decides about them.
function(_quiver_ask_for_files variable generator directory)
    if(TARGET "${generator}")
        get_target_property(imported "${generator}" IMPORTED)
        if(NOT imported)
            message(FATAL_ERROR "quiver_generate: --split takes an installed Quiver: here quiver-gen is built too late "
                "to be asked for the names of its files")
        endif()
        get_target_property(generator "${generator}" LOCATION)
    endif()
    set(dependencies "${directory}/configure.d")
    execute_process(
        COMMAND "${generator}" ${ARGN} -o "${directory}" --list-files --depfile "${dependencies}" --dep-target list
        WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}"
        OUTPUT_VARIABLE files ERROR_VARIABLE messages RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "quiver_generate: quiver-gen ended with ${status}\n${messages}")
    endif()
    file(STRINGS "${dependencies}" lines)
    foreach(line IN LISTS lines)
        if(line MATCHES "^  (.*[^ \\])( \\\\)?$")
            string(REPLACE "\\ " " " schema "${CMAKE_MATCH_1}")
            set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${schema}")
        endif()
    endforeach()
    string(REGEX REPLACE "\n$" "" files "${files}")
    string(REPLACE "${directory}/" "" files "${files}")
    string(REPLACE "\n" ";" files "${files}")
    set(${variable} "${files}" PARENT_SCOPE)
endfunction()

function(quiver_generate)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "TARGET;FACTORY;STEM;PARTS" "SCHEMAS;NAMESPACES;OPTIONS")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "quiver_generate: what is \"${arg_UNPARSED_ARGUMENTS}\"?")
    endif()
    if(NOT TARGET "${arg_TARGET}")
        message(FATAL_ERROR "quiver_generate: TARGET has to name a target; there is none called \"${arg_TARGET}\"")
    endif()
    if(NOT arg_SCHEMAS)
        message(FATAL_ERROR "quiver_generate: SCHEMAS has to name a schema")
    endif()
    foreach(option IN LISTS arg_OPTIONS)
        if(option MATCHES "^(-o|--depfile|--dep-target|--list-files|--dump-.*|--program|--cmake|--factory|--stem|--parts)(=|$)")
            message(FATAL_ERROR "quiver_generate: OPTIONS does not take ${CMAKE_MATCH_1}")
        endif()
    endforeach()

    set(schemas "")
    foreach(schema IN LISTS arg_SCHEMAS)
        get_filename_component(schema "${schema}" ABSOLUTE)
        list(APPEND schemas "${schema}")
    endforeach()
    set(arguments ${schemas} ${arg_OPTIONS})
    foreach(namespace IN LISTS arg_NAMESPACES)
        list(APPEND arguments --namespace "${namespace}")
    endforeach()
    set(factory Factory)
    if(arg_FACTORY)
        list(APPEND arguments --factory "${arg_FACTORY}")
        string(REGEX REPLACE "^.*::" "" factory "${arg_FACTORY}")
        string(REGEX REPLACE "^C([A-Z])" "\\1" factory "${factory}")
    endif()

    _quiver_find_generator(generator)
    set(directory "${CMAKE_CURRENT_BINARY_DIR}/${arg_TARGET}_generated")
    file(MAKE_DIRECTORY "${directory}")
    set(stem "${arg_STEM}")
    if(NOT stem)
        list(GET schemas 0 first)
        _quiver_make_stem(stem "${first}")
    endif()
    if("${arg_OPTIONS}" MATCHES "(^|;)--split(=|;|$)")
        _quiver_ask_for_files(files "${generator}" "${directory}" ${arguments})
    else()
        if(NOT arg_PARTS)
            set(arg_PARTS 1)
        endif()
        list(APPEND arguments --split none --stem "${stem}" --parts ${arg_PARTS})
        # On many file systems the two would be the same file, so quiver-gen calls the second one otherwise.
        set(header "${stem}")
        string(TOLOWER "${stem}" lower_stem)
        string(TOLOWER "${factory}" lower_factory)
        if(lower_stem STREQUAL lower_factory)
            set(header "${stem}_2")
        endif()
        _quiver_list_known_files(files "${header}" "${factory}" ${arg_PARTS})
    endif()
    list(TRANSFORM files PREPEND "${directory}/")

    get_target_property(others "${arg_TARGET}" QUIVER_GENERATED_FILES)
    foreach(file IN LISTS files)
        if(file IN_LIST others)
            message(FATAL_ERROR "quiver_generate: two calls for ${arg_TARGET} write ${file}; "
                "FACTORY and STEM give other names")
        endif()
    endforeach()
    set_property(TARGET "${arg_TARGET}" APPEND PROPERTY QUIVER_GENERATED_FILES ${files})

    # The stamp tells that the files are up to date, since quiver-gen leaves those alone that would not change.
    set(stamp "${directory}/${stem}.stamp")
    add_custom_command(
        OUTPUT "${stamp}"
        BYPRODUCTS ${files}
        COMMAND "${generator}" ${arguments} -o "${directory}" --depfile "${stamp}.d" --dep-target "${stamp}"
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${schemas} "${generator}"
        DEPFILE "${stamp}.d"
        WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}"
        COMMENT "Generating the classes of ${stem}"
        VERBATIM)
    target_sources("${arg_TARGET}" PRIVATE "${stamp}" ${files})
    target_include_directories("${arg_TARGET}" PUBLIC "$<BUILD_INTERFACE:${directory}>")
endfunction()

cmake_policy(POP)
