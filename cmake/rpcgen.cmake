find_program(RPCGEN_EXECUTABLE rpcgen REQUIRED)

# Everything that must be generated before a file can be analysed.
add_custom_target(generated_headers)

# rpcgen_library(<target> <file.x> [CLIENT])
#
# Makes a static library of what rpcgen generates from an interface file: the header <name>.h, the
# filters, and with CLIENT the client stubs in their thread-safe form. The output lives in the build
# tree only. Inline runs are off: they carry a bool's raw value instead of 0 or 1.
function(rpcgen_library target source)
    cmake_parse_arguments(ARG "CLIENT" "" "" ${ARGN})
    get_filename_component(name ${source} NAME_WE)
    get_filename_component(input ${source} ABSOLUTE)
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/${target}.rpcgen)
    file(MAKE_DIRECTORY ${directory})
    # rpcgen names the header that its output includes after its input, hence the copy.
    set(copy ${directory}/${name}.x)
    set(outputs ${directory}/${name}.h ${directory}/${name}_xdr.c)
    set(commands
        COMMAND ${CMAKE_COMMAND} -E copy ${input} ${copy}
        COMMAND ${CMAKE_COMMAND} -E rm -f ${name}.h ${name}_xdr.c ${name}_clnt.c
        COMMAND ${RPCGEN_EXECUTABLE} -C -M -h -o ${name}.h ${name}.x
        COMMAND ${RPCGEN_EXECUTABLE} -C -M -c -i 0 -o ${name}_xdr.c ${name}.x)
    if(ARG_CLIENT)
        list(APPEND outputs ${directory}/${name}_clnt.c)
        list(APPEND commands COMMAND ${RPCGEN_EXECUTABLE} -C -M -l -o ${name}_clnt.c ${name}.x)
    endif()
    add_custom_command(OUTPUT ${outputs} ${commands} DEPENDS ${input}
        WORKING_DIRECTORY ${directory} VERBATIM)
    add_custom_target(${target}_generated DEPENDS ${outputs})
    add_dependencies(generated_headers ${target}_generated)
    add_library(${target} STATIC ${outputs})
    add_dependencies(${target} ${target}_generated)
    target_include_directories(${target} SYSTEM PUBLIC ${directory})
    # Generated code is compiled as it comes, without the project's warnings.
    target_compile_options(${target} PRIVATE -w)
    target_link_libraries(${target} PUBLIC networkble_tirpc)
endfunction()
