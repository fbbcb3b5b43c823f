# One folder under src/ is one floor and one include prefix, orderservice/<folder>/. A floor sees only its own headers and
# those of the floors that it names, through a folder of links. So a file does not compile if it includes a header that its
# row of docs/architecture.md does not allow.
#
# A floor is compiled once, and then exists in two forms:
#   - inside a shared library (orderservice_library below), which exports only names marked with ORDERSERVICE_EXPORT;
#   - as a static library floor::<name>, with everything in it, for tests of internals, benchmarks and fuzz targets. It is
#     never installed.
# One program must not link both forms: each singleton would exist twice. CMake then says that ORDERSERVICE_FORM "does not
# agree".

# Without this option an exported function could not be inlined or called directly inside the library.
set(ORDERSERVICE_FLOOR_OPTIONS -fno-semantic-interposition)

# The headers of a folder as the target orderservice_<name>_headers. LINKS: the libraries that these headers need.
function(orderservice_headers name)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    set(root "${CMAKE_BINARY_DIR}/floors/${name}")
    file(MAKE_DIRECTORY "${root}/orderservice")
    if(NOT EXISTS "${root}/orderservice/${name}")
        file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${root}/orderservice/${name}" SYMBOLIC)
    endif()
    file(REMOVE "${root}/${name}") # an older build folder has the link here: includes without the prefix would still compile
    add_library(orderservice_${name}_headers INTERFACE)
    target_include_directories(orderservice_${name}_headers INTERFACE "${root}")
    target_link_libraries(orderservice_${name}_headers INTERFACE ${ARG_LINKS})
endfunction()

# FLOORS are the floors that the headers include, PRIVATE_FLOORS those that only the sources include. LINKS and PRIVATE_LINKS
# are the libraries of other projects that they need. The global property ORDERSERVICE_FLOORS lists the targets of all floors,
# so that options can be set for all of them.
function(orderservice_floor name)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;FLOORS;PRIVATE_FLOORS;LINKS;PRIVATE_LINKS" ${ARGN})
    set(headers ${ARG_FLOORS})
    list(TRANSFORM headers PREPEND orderservice_)
    list(TRANSFORM headers APPEND _headers)
    orderservice_headers(${name} LINKS ${headers} ${ARG_LINKS})

    set(private_headers ${ARG_PRIVATE_FLOORS})
    list(TRANSFORM private_headers PREPEND orderservice_)
    list(TRANSFORM private_headers APPEND _headers)
    set(objects orderservice_${name}_objects)
    add_library(${objects} OBJECT ${ARG_SOURCES} ${ARG_HEADERS})
    set_target_properties(${objects} PROPERTIES
        AUTOMOC ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON ORDERSERVICE_PRIVATE_LINKS "${ARG_PRIVATE_LINKS}")
    target_compile_options(${objects} PRIVATE ${ORDERSERVICE_FLOOR_OPTIONS})
    target_link_libraries(${objects} PUBLIC orderservice_${name}_headers PRIVATE ${private_headers} ${ARG_PRIVATE_LINKS})
    orderservice_own_code(${objects})
    set_property(GLOBAL APPEND PROPERTY ORDERSERVICE_FLOORS ${objects})

    set(floors ${ARG_FLOORS} ${ARG_PRIVATE_FLOORS})
    list(TRANSFORM floors PREPEND floor::)
    set(static orderservice_${name}_static)
    add_library(${static} STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${objects}>)
    add_library(floor::${name} ALIAS ${static})
    set_target_properties(${static} PROPERTIES LINKER_LANGUAGE CXX INTERFACE_ORDERSERVICE_FORM static
        COMPATIBLE_INTERFACE_STRING ORDERSERVICE_FORM)
    target_link_libraries(${static} PUBLIC orderservice_${name}_headers ${floors} PRIVATE ${ARG_PRIVATE_LINKS})
endfunction()

# A shared library of floors, installed as OrderService::<export name>. HEADERS: the floors that a host may include. LINKS:
# the libraries of other projects that these headers need.
function(orderservice_library target export_name)
    cmake_parse_arguments(ARG "" "" "FLOORS;HEADERS;LINKS" ${ARGN})
    add_library(${target} SHARED)
    add_library(OrderService::${export_name} ALIAS ${target})
    foreach(floor ${ARG_FLOORS})
        target_sources(${target} PRIVATE $<TARGET_OBJECTS:orderservice_${floor}_objects>)
        target_link_libraries(${target} PRIVATE
            $<BUILD_INTERFACE:$<TARGET_PROPERTY:orderservice_${floor}_objects,ORDERSERVICE_PRIVATE_LINKS>>)
    endforeach()
    foreach(floor ${ARG_HEADERS})
        target_link_libraries(${target} PUBLIC $<BUILD_INTERFACE:orderservice_${floor}_headers>)
    endforeach()
    set_target_properties(${target} PROPERTIES
        LINKER_LANGUAGE CXX EXPORT_NAME ${export_name}
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        INTERFACE_ORDERSERVICE_FORM shared COMPATIBLE_INTERFACE_STRING ORDERSERVICE_FORM)
    target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:include>)
    target_link_libraries(${target} PUBLIC ${ARG_LINKS} PRIVATE Threads::Threads)
    # The library has threads and objects that live to the end of the process: dlclose must not unmap it.
    target_link_options(${target} PRIVATE -Wl,-z,nodelete)
    if(NOT ORDERSERVICE_SANITIZE) # the run-time part of a sanitizer is in the program
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()
