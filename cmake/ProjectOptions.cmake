# Options and flags that every target of our own takes.

option(ORDERSERVICE_BUILD_DESK "Build the desk, the reference host" ON)
option(ORDERSERVICE_BUILD_WINDOW "Build the desk's window (needs Qt Widgets, the Qt linguist tools and Qwt)" ON)
option(ORDERSERVICE_BUILD_TESTS "Build the tests" ON)
option(ORDERSERVICE_BUILD_CONTRACT "Build the contract suites, for every host to run (needs GoogleTest)" ${ORDERSERVICE_BUILD_TESTS})
option(ORDERSERVICE_BUILD_BENCH "Build the benchmarks" OFF)
option(ORDERSERVICE_BUILD_FUZZERS "Build the libFuzzer targets (needs clang)" OFF)
option(ORDERSERVICE_UNITY "Compile several source files of a target as one: a full build takes less than half the time" OFF)
option(ORDERSERVICE_TEST_PROGRAMS "Let ctest run each test program as a whole instead of each test as a process" OFF)
option(ORDERSERVICE_TEST_THREADS_ONLY "Leave out tests that use only one thread" OFF)
option(ORDERSERVICE_PRECOMPILED "Precompile the headers of other libraries" OFF)
set(ORDERSERVICE_SANITIZE "" CACHE STRING "Sanitizers for the whole tree, such as address,undefined or thread")

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# Without this, Asio marks its classes as visible, and the shared library exports all of them.
add_compile_definitions(BOOST_ASIO_DISABLE_VISIBILITY)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Paths below the source folder are hashed as relative ones, so that two clones share what one of them compiled.
    set(CMAKE_CXX_COMPILER_LAUNCHER "env;CCACHE_BASEDIR=${CMAKE_SOURCE_DIR};CCACHE_NOHASHDIR=1;CCACHE_SLOPPINESS=pch_defines,time_macros;${CCACHE_PROGRAM}")
endif()

# mold links a test program in a fraction of the time; the installed package does not need it.
find_program(MOLD_PROGRAM mold)
if(MOLD_PROGRAM)
    include(CheckLinkerFlag)
    check_linker_flag(CXX -fuse-ld=mold ORDERSERVICE_HAS_MOLD)
    if(ORDERSERVICE_HAS_MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()

if(ORDERSERVICE_UNITY)
    set(CMAKE_UNITY_BUILD ON)
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
    # A unity file includes its sources by absolute paths, and __FILE__ has these paths. The source folder is removed from
    # them, so that two clones can share compiled objects.
    add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
    # gcc treats the sources in a unity file as headers, and warns if their classes use anonymous namespaces.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-subobject-linkage)
    endif()
endif()

if(ORDERSERVICE_SANITIZE)
    add_compile_options(-fsanitize=${ORDERSERVICE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ORDERSERVICE_SANITIZE})
    # The thread sanitizer does not support fences. The mutexes of Boost.Asio give the same order.
    if(ORDERSERVICE_SANITIZE MATCHES thread)
        add_compile_definitions(BOOST_ASIO_DISABLE_FENCED_BLOCK)
    endif()
endif()

# Warnings are errors in our own code; code that moc writes is compiled in the same target and passes too.
function(orderservice_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
        -Woverloaded-virtual -Werror)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
endfunction()

# Call it after the libraries of the target are set.
function(orderservice_own_code target)
    orderservice_warnings(${target})
    orderservice_use_precompiled(${target})
endfunction()
