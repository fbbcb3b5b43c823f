# The installed package: the shared library, the kit, the public headers, and find_package(OrderService).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS orderservice EXPORT OrderServiceTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT OrderServiceTargets NAMESPACE OrderService::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrderService)

# Public: what a host includes. The other floors stay inside the library.
foreach(floor base records platform gates kit)
    install(DIRECTORY "${CMAKE_SOURCE_DIR}/src/${floor}" DESTINATION include/orderservice FILES_MATCHING PATTERN "*.h"
        PATTERN "BsonExtended.h" EXCLUDE # needs libbson's headers
        # Internal headers of the library; no public header includes them.
        PATTERN "FindRow.h" EXCLUDE
        PATTERN "LocalTimestamp.h" EXCLUDE
        PATTERN "Reserve.h" EXCLUDE
        PATTERN "SecondLimit.h" EXCLUDE
        PATTERN "Shares.h" EXCLUDE
        PATTERN "StopRequest.h" EXCLUDE)
endforeach()
foreach(header check/OrderServiceBase.h func/OrderFuncService.h service/OrderService.h service/OrderServiceAdapter.h)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${CMAKE_SOURCE_DIR}/src/${header}" DESTINATION "include/orderservice/${folder}")
endforeach()

# The kit is a component: its headers need nlohmann-json, which the library alone does not need.
install(TARGETS orderservice_kit EXPORT OrderServiceKitTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT OrderServiceKitTargets NAMESPACE OrderService::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrderService)

# The confirmation is a component: only a host with a window needs Qt Widgets.
install(TARGETS orderservice_ui EXPORT OrderServiceUiTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT OrderServiceUiTargets NAMESPACE OrderService::
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrderService)
foreach(header widgets/BaseNormalTable.h widgets/BaseTable.h widgets/BaseWidget.h widgets/CommonDialog.h widgets/LineEdit.h
        ui/BatchTraderType.h ui/OrderParamTable.h ui/OrdersConfirmer.h ui/OrdersConfirmWidget.h ui/OrdersMessageBox.h
        ui/RemarkLine.h)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${CMAKE_SOURCE_DIR}/src/${header}" DESTINATION "include/orderservice/${folder}")
endforeach()

# The contract suites are a component: only who asks for it needs GoogleTest.
if(TARGET orderservice_contract)
    install(TARGETS orderservice_contract EXPORT OrderServiceContractTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(EXPORT OrderServiceContractTargets NAMESPACE OrderService::
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrderService)
    install(FILES "${CMAKE_SOURCE_DIR}/tests/contract/ContractHost.h" DESTINATION include/orderservice/contract)
endif()

# A host to start from.
install(DIRECTORY "${CMAKE_SOURCE_DIR}/examples/minimal_host" DESTINATION ${CMAKE_INSTALL_DATADIR}/orderservice)

configure_package_config_file("${CMAKE_SOURCE_DIR}/cmake/OrderServiceConfig.cmake.in"
    "${CMAKE_BINARY_DIR}/OrderServiceConfig.cmake"
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrderService)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/OrderServiceConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/OrderServiceConfig.cmake" "${CMAKE_BINARY_DIR}/OrderServiceConfigVersion.cmake"
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrderService)
