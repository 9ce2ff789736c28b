# What every target of the project is compiled and linked with.

add_library(networkble_options INTERFACE)
target_compile_options(networkble_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wformat=2 -Wundef -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
        -Wextra-semi -Wcast-align>
    -fstack-protector-strong -fno-plt
    # Messages and traces name files relative to the source tree.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)

# The system-log call of the product is the fortified one with check flag 1, which is what level 2
# makes of vsyslog; level 3 would change the flag. Fortification needs an optimising build.
target_compile_options(networkble_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)

target_link_options(networkble_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--as-needed)

if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64")
    target_compile_options(networkble_options INTERFACE -mbranch-protection=standard)
else()
    target_compile_options(networkble_options INTERFACE -fstack-clash-protection)
endif()

if(NETWORKBLE_SANITIZE)
    target_compile_options(networkble_options INTERFACE
        -fsanitize=${NETWORKBLE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(networkble_options INTERFACE -fsanitize=${NETWORKBLE_SANITIZE})
endif()

# The ONC RPC library with its headers taken as the system's, so that its macros raise no warnings.
add_library(networkble_tirpc INTERFACE)
target_include_directories(networkble_tirpc SYSTEM INTERFACE ${TIRPC_INCLUDE_DIRS})
target_link_libraries(networkble_tirpc INTERFACE ${TIRPC_LINK_LIBRARIES})
