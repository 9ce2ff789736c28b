# What the targets of the project are compiled and linked with: what ships with networkble_options,
# the library itself with networkble_product_options, tests with networkble_test_options.

add_library(networkble_test_options INTERFACE)
target_compile_options(networkble_test_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wformat=2 -Wundef -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
        -Wextra-semi -Wcast-align>
    # Messages and traces name files relative to the source tree.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
target_link_options(networkble_test_options INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,--as-needed)
if(NETWORKBLE_SANITIZE)
    target_compile_options(networkble_test_options INTERFACE
        -fsanitize=${NETWORKBLE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(networkble_test_options INTERFACE -fsanitize=${NETWORKBLE_SANITIZE})
endif()

add_library(networkble_options INTERFACE)
target_link_libraries(networkble_options INTERFACE networkble_test_options)
target_compile_options(networkble_options INTERFACE -fstack-protector-strong -fno-plt)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
    target_compile_options(networkble_options INTERFACE -mbranch-protection=standard)
else()
    target_compile_options(networkble_options INTERFACE -fstack-clash-protection)
endif()

# The system-log call of the library is the fortified one with check flag 1, which is what level 2
# makes of vsyslog; level 3 would change the flag. Fortification needs an optimising build, which
# the sanitizers' is for the library alone.
set(fortification -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
add_library(networkble_product_options INTERFACE)
target_link_libraries(networkble_product_options INTERFACE networkble_options)
if(NETWORKBLE_SANITIZE)
    target_compile_options(networkble_product_options INTERFACE ${fortification} -O1)
else()
    target_compile_options(networkble_options INTERFACE ${fortification})
endif()

# The ONC RPC library with its headers taken as the system's, so that its macros raise no warnings.
add_library(networkble_tirpc INTERFACE)
target_include_directories(networkble_tirpc SYSTEM INTERFACE ${TIRPC_INCLUDE_DIRS})
target_link_libraries(networkble_tirpc INTERFACE ${TIRPC_LINK_LIBRARIES})
