# Tests of the desk's control door, and of the calls that come through it.
file(GLOB desk_door_test_sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/door/*.cpp")
orderservice_test(desk_door_tests
    SOURCES ${desk_door_test_sources}
    LINKS desk_commands desk_host desk_door)
target_compile_definitions(desk_door_tests PRIVATE SOURCE_DIR="${CMAKE_SOURCE_DIR}")
