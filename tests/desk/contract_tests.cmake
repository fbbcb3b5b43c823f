orderservice_test(desk_contract_tests
    SOURCES DeskContractHost.cpp
    LINKS contract_suites desk_commands desk_host)
