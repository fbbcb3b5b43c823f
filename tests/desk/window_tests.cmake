# Tests of the desk's window, without a screen.
if(NOT TARGET desk_window)
    return()
endif()
find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
file(GLOB desk_window_test_sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/window/*Test.cpp")
add_executable(desk_window_tests ${desk_window_test_sources} "${CMAKE_CURRENT_LIST_DIR}/window/WindowMain.cpp")
target_include_directories(desk_window_tests PRIVATE "${PROJECT_SOURCE_DIR}")
target_link_libraries(desk_window_tests PRIVATE desk_window Qt5::Test GTest::gtest)
orderservice_own_code(desk_window_tests)
orderservice_add_tests(desk_window_tests)

# The program itself, with keys and the mouse, on a screen in memory. It is not run under the thread sanitizer: the libraries of
# X11 are not built for it.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
if(NOT ORDERSERVICE_SANITIZE MATCHES thread)
    add_test(NAME desk_window_on_screen COMMAND Python3::Interpreter "${CMAKE_CURRENT_LIST_DIR}/window/on_screen_test.py"
        "${CMAKE_SOURCE_DIR}" "${CMAKE_BINARY_DIR}/desk")
endif()
