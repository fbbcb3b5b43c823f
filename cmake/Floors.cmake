# One folder under src/ is one target and one include prefix, orderservice/<folder>/. Each target sees, through a folder of
# links, its own headers and those of the targets it links, and nothing else of src/: an include that
# its row of docs/architecture.md does not allow fails to build. OWN_EXPORT: the package installs the target as a
# component of its own, because it needs more than the library does.
function(orderservice_floor name)
    cmake_parse_arguments(ARG "OWN_EXPORT" "" "SOURCES;HEADERS;LINKS;PRIVATE_LINKS" ${ARGN})
    set(root "${CMAKE_BINARY_DIR}/floors/${name}")
    file(MAKE_DIRECTORY "${root}/orderservice")
    if(NOT EXISTS "${root}/orderservice/${name}")
        file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${root}/orderservice/${name}" SYMBOLIC)
    endif()
    file(REMOVE "${root}/${name}") # an older build folder has the link here: includes without the prefix would still compile

    set(target orderservice_${name})
    add_library(${target} STATIC ${ARG_SOURCES} ${ARG_HEADERS})
    add_library(OrderService::${name} ALIAS ${target})
    set_target_properties(${target} PROPERTIES AUTOMOC ON EXPORT_NAME ${name})
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${root}> $<INSTALL_INTERFACE:include>)
    target_link_libraries(${target} PUBLIC ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    orderservice_own_code(${target})
    if(NOT ARG_OWN_EXPORT)
        set_property(GLOBAL APPEND PROPERTY ORDERSERVICE_FLOORS ${target})
    endif()
endfunction()
