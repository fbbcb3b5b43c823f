orderservice_contract_test(desk_contract_tests
    SOURCES DeskContractHost.cpp
    LINKS desk_commands desk_host)
