# Precompiles headers of other projects that many of our files include. These headers never change, so they cause no rebuilds.
# A source file must still include everything that it uses. The release preset compiles without precompiled headers, so it
# shows a missing include.
#
# orderservice_precompiled_floors is for the floors, which hide their names; orderservice_precompiled_tests is for the tests,
# which also include GoogleTest; orderservice_precompiled is for all other code of this project.
set(common_headers
    <algorithm> <atomic> <chrono> <cmath> <filesystem> <functional> <limits> <map> <memory> <mutex> <optional> <set> <sstream>
    <stdexcept> <string> <string_view> <thread> <utility> <vector>
    <QDateTime> <QMap> <QObject> <QString> <QVector> <boost/function.hpp> <boost/make_shared.hpp> <boost/shared_ptr.hpp>)

# Some libraries bring this option. A precompiled header can only be used with the options that made it.
if(ORDERSERVICE_PRECOMPILED)
    add_compile_options(-pthread)
endif()

function(orderservice_precompile name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINKS;OPTIONS" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/${name}.cpp"
        CONTENT "// A target needs a source file. This one has only precompiled headers.\n")
    add_library(${name} OBJECT "${CMAKE_BINARY_DIR}/${name}.cpp")
    target_link_libraries(${name} PRIVATE Qt5::Core Boost::boost ${ARG_LINKS})
    target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
    orderservice_warnings(${name})
endfunction()

function(orderservice_precompile_all)
    orderservice_precompile(orderservice_precompiled HEADERS ${common_headers})
    orderservice_precompile(orderservice_precompiled_floors HEADERS ${common_headers} OPTIONS ${ORDERSERVICE_FLOOR_OPTIONS})
    set_target_properties(orderservice_precompiled_floors PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    if(ORDERSERVICE_BUILD_CONTRACT OR ORDERSERVICE_BUILD_TESTS)
        find_package(GTest REQUIRED)
        orderservice_precompile(orderservice_precompiled_tests HEADERS ${common_headers} <gtest/gtest.h> LINKS GTest::gtest)
    endif()
endfunction()

# Call it after the libraries of the target are set.
function(orderservice_use_precompiled target)
    if(NOT ORDERSERVICE_PRECOMPILED)
        return()
    endif()
    get_target_property(visibility ${target} CXX_VISIBILITY_PRESET)
    get_target_property(links ${target} LINK_LIBRARIES)
    if(visibility STREQUAL "hidden")
        set(donor orderservice_precompiled_floors)
    elseif(links MATCHES "GTest::gtest|test_main|OrderService::contract")
        set(donor orderservice_precompiled_tests)
    else()
        set(donor orderservice_precompiled)
    endif()
    target_precompile_headers(${target} REUSE_FROM ${donor})
endfunction()
