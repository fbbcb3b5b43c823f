#pragma once

#include "tests/breach/BreachRows.h"

#include <QString>

#include <map>
#include <string>

/// Function calls that succeed or fail on CBreachHost, and together reach every operation of the host that
/// function trading uses. None of them waits for a quote.
namespace breach::calls {

/// The keys of a call. The values are JSON text.
using CKeys = std::map<std::string, std::string>;

inline std::string textOf(const CKeys& keys) {
    std::string text;
    for (const auto& [key, value] : keys)
        text += (text.empty() ? "{\"" : ",\"") + key + "\":" + value;
    return text + "}";
}

/// The parameter text of an order of 300 shares at 10.5, with these changes.
inline std::string orderText(const CKeys& changes = {}) {
    CKeys keys = changes;
    keys.insert({{"opType", "23"},
                 {"orderType", "1101"},
                 {"prType", "11"},
                 {"modelPrice", R"("10.5")"},
                 {"modelVolume", R"("300")"},
                 {"accountID", R"("A1")"},
                 {"orderCode", R"("600000")"},
                 {"tradeKey", R"("x|key|7")"}});
    return textOf(keys);
}

inline void pass(CBreachRun& run, const CKeys& changes = {}) {
    run.call("passorder", orderText(changes));
}
inline void stock(CBreachRun& run) {
    pass(run);
}
inline void latest(CBreachRun& run) {
    pass(run, {{"prType", "5"}});
}
inline void group(CBreachRun& run) {
    pass(run, {{"orderType", "1201"}, {"accountID", R"("G")"}});
}
inline void ratioOfAssets(CBreachRun& run) {
    pass(run, {{"orderType", "1113"}, {"modelVolume", R"("0.5")"}});
}
inline void future(CBreachRun& run) {
    pass(run, {{"opType", "0"}, {"orderCode", R"("CFFEXIF2609")"}});
}
inline void credit(CBreachRun& run) {
    pass(run, {{"opType", "27"}});
}
inline void option(CBreachRun& run) {
    pass(run, {{"opType", "50"}, {"orderCode", R"("10005001")"}});
}
inline void stockBasket(CBreachRun& run) {
    pass(run, {{"opType", "25"}, {"orderType", "2101"}, {"prType", "5"}, {"orderCode", R"("stocks")"}});
}
inline void stockBasketByRatio(CBreachRun& run) {
    pass(run, {{"opType", "25"},
               {"orderType", "2103"},
               {"prType", "5"},
               {"modelVolume", R"("0.5")"},
               {"orderCode", R"("stocks")"}});
}
inline void futureBasketByMoney(CBreachRun& run) {
    pass(run, {{"opType", "40"},
               {"orderType", "2102"},
               {"prType", "5"},
               {"modelVolume", R"("9000000")"},
               {"orderCode", R"("futures")"}});
}
/// The basket goes out without its only row.
inline void basketWithoutRows(CBreachRun& run) {
    pass(run, {{"opType", "25"},
               {"orderType", "2101"},
               {"prType", "5"},
               {"modelVolume", R"("-1")"},
               {"orderCode", R"("stocks")"}});
}
inline void smart(CBreachRun& run) {
    run.call("SMARTALGOPYPASSORDER", orderText(), R"({"m_strategyType": "twap"})");
}
inline void cancelAll(CBreachRun& run) {
    run.call("cancel", R"({"accountId": "A1", "accountType": "STOCK"})");
}
/// Failures that name a code or a price.
inline void unknownConnectCode(CBreachRun& run) {
    pass(run, {{"orderCode", R"("HGT00700")"}});
}
inline void stockWithoutPrice(CBreachRun& run) {
    pass(run, {{"modelPrice", R"("0")"}});
}
inline void optionOnAStock(CBreachRun& run) {
    pass(run, {{"opType", "50"}});
}
/// No call asks for the limit of a repayment, but the host may ask for its volume.
inline void volumeOfARepayment(CBreachRun& run) {
    run.attempt([](TC::COrderFuncService& functions) {
        std::string account = "A1";
        QString code = QStringLiteral("SH600000");
        (void)functions.getAccountPercentNum(account, TC::EOperationType::SellToRepay, 1123, code, 10.5, 0.5);
    });
}
inline void init(CBreachRun& run) {
    run.renewFunctions();
}

} // namespace breach::calls
