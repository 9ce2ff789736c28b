# test_suite(<name> [LONG] [PREFIX <text>] [SOURCES <file>...] [SINGLE_THREADED <file>...]
#            [LIBRARIES <library>...] [BINARIES <MACRO>=<target>...])
#
# Declares a suite: a program of tests, each of which is one to ctest.
#   LONG             takes long under a sanitizer
#   PREFIX           stands before the names of its tests, as ctest knows them
#   SINGLE_THREADED  sources that the thread sanitizer does without. A suite of nothing else is no
#                    suite there.
#   LIBRARIES        what it links besides the test framework
#   BINARIES         programs and libraries that its tests start or load: they are built before it,
#                    and the macro holds the path of each
#
# Includes are found from the root, from tests/ and from the suite's own folder. A main() among the
# sources takes the place of the test framework's.
function(test_suite name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "LONG" "PREFIX"
        "SOURCES;SINGLE_THREADED;LIBRARIES;BINARIES")
    if(NOT NETWORKBLE_SANITIZE STREQUAL "thread")
        list(APPEND ARG_SOURCES ${ARG_SINGLE_THREADED})
    elseif(NOT ARG_SOURCES)
        return()
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE
        ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PRIVATE
        networkble_test_options ${ARG_LIBRARIES} test_support fmt::fmt Threads::Threads
        GTest::gmock_main)
    target_precompile_headers(${name} REUSE_FROM test_support)
    foreach(binary IN LISTS ARG_BINARIES)
        string(REPLACE "=" ";" binary "${binary}")
        list(GET binary 0 macro)
        list(GET binary 1 target)
        target_compile_definitions(${name} PRIVATE ${macro}="$<TARGET_FILE:${target}>")
        add_dependencies(${name} ${target})
    endforeach()

    # Whatever hangs is ended; a test may wait a minute, more than once, for what is bound to happen.
    if(NOT NETWORKBLE_SANITIZE)
        gtest_discover_tests(${name}
            TEST_PREFIX "${ARG_PREFIX}" DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
        return()
    endif()
    # A process takes long to start under a sanitizer: each suite is one test there, or four with a
    # share of its cases each.
    target_compile_definitions(${name} PRIVATE SANITIZED)
    if(NOT ARG_LONG)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT 900)
        return()
    endif()
    foreach(share RANGE 3)
        add_test(NAME ${name}.${share} COMMAND ${name})
        set_tests_properties(${name}.${share} PROPERTIES TIMEOUT 900 COST 100
            ENVIRONMENT "GTEST_TOTAL_SHARDS=4;GTEST_SHARD_INDEX=${share}")
    endforeach()
endfunction()
