# Tests of the desk's configuration, its market, the host services that use them, and the commands that read
# folders.
file(GLOB desk_config_test_sources CONFIGURE_DEPENDS
    "${CMAKE_CURRENT_LIST_DIR}/config/*.cpp" "${CMAKE_CURRENT_LIST_DIR}/market/*.cpp"
    "${CMAKE_CURRENT_LIST_DIR}/host/*.cpp" "${CMAKE_CURRENT_LIST_DIR}/commands/*.cpp")
if(ORDERSERVICE_TEST_THREADS_ONLY)
    list(FILTER desk_config_test_sources EXCLUDE REGEX "/config/") # these tests use only one thread
endif()
orderservice_test(desk_config_tests
    SOURCES ${desk_config_test_sources}
    LINKS desk_commands desk_config desk_host desk_market)
# Some tests run the desk as a separate process.
target_compile_definitions(desk_config_tests PRIVATE
    ORDERDESK_PROGRAM="$<TARGET_FILE:orderdesk>" ORDERDESK_VERSION="${PROJECT_VERSION}")
add_dependencies(desk_config_tests orderdesk)
