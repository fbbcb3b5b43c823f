# Tests of the desk's paper broker, its journal and the host services that use them.
find_package(GTest REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(sqlite3 REQUIRED IMPORTED_TARGET sqlite3)

file(GLOB desk_paper_test_sources CONFIGURE_DEPENDS
    "${CMAKE_CURRENT_LIST_DIR}/paper/*.cpp" "${CMAKE_CURRENT_LIST_DIR}/journal/*.cpp")
add_executable(desk_paper_tests ${desk_paper_test_sources})
target_include_directories(desk_paper_tests PRIVATE "${PROJECT_SOURCE_DIR}")
target_link_libraries(desk_paper_tests PRIVATE desk_commands desk_host desk_journal desk_paper OrderService::service
    PkgConfig::sqlite3 GTest::gtest GTest::gtest_main)
orderservice_own_code(desk_paper_tests)
orderservice_add_tests(desk_paper_tests)
