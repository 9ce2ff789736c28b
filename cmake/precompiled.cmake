# precompile_common(<target>...): compiles the library headers that most files include once for each
# target. What a file includes stands in the file all the same: the static analysis builds without.
function(precompile_common)
    foreach(target ${ARGN})
        target_precompile_headers(${target} PRIVATE
            "$<$<COMPILE_LANGUAGE:CXX>:<fmt/format.h$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<filesystem$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<functional$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<map$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<mutex$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<optional$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<string$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<system_error$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<thread$<ANGLE-R>>"
            "$<$<COMPILE_LANGUAGE:CXX>:<vector$<ANGLE-R>>")
    endforeach()
endfunction()
