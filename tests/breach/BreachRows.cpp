#include "tests/breach/BreachRows.h"

#include "tests/breach/FunctionCalls.h"
#include "tests/support/ServicePeer.h"

#include <QDomDocument>

#include <chrono>
#include <future>
#include <memory>
#include <utility>

namespace breach {
namespace {

using TC::EOrderStrategyTradeType;

enum EChannel {
    kStock = 3,
    kSocket = 4,
    kStopped = 5,
    kFuture = 11,
    kBasket = 12,
    kCredit = 13,
    kOption = 14,
    kFutureOption = 15,
    kSgt = 19,
    kHgt = 20,
    kNeeq = 21,
    kGold = 22,
    kLatest = 30,
    kAmount = 31,
    kAccount = 32,
    kTableRow = 34,
    kUnknown = 99,
};

constexpr auto kAlgorithm = static_cast<TC::EOrderType>(7);

void stock(CBreachRun& run) {
    run.place(CBreachRun::order(kStock));
}
void latest(CBreachRun& run) {
    run.place(CBreachRun::order(kLatest));
}
void amount(CBreachRun& run) {
    run.place(CBreachRun::order(kAmount, 23, 10.5, TC::kUnsetInt));
}
template<int kChannel, int kNumber>
void family(CBreachRun& run) {
    run.place(CBreachRun::order(kChannel, kNumber));
}
void badPrice(CBreachRun& run) {
    run.place(CBreachRun::order(kStock, 23, 0.0));
}
void textOrder(CBreachRun& run) {
    auto order = CBreachRun::order(kStock);
    order.m_strOrderSetting = "setting";
    run.place(order);
}
void algorithmOrder(CBreachRun& run) {
    auto order = CBreachRun::order(kStock);
    order.m_strOrderSetting = "setting";
    order.m_eOrderType = kAlgorithm;
    run.place(order);
}
void namedAccount(CBreachRun& run) {
    auto order = CBreachRun::order(kStock);
    order.m_strAccountKeyPart1 = order.m_strAccountKeyPart2 = QStringLiteral("A");
    run.place(order);
}
void repay(CBreachRun& run) {
    auto order = CBreachRun::order(kCredit, 32);
    order.m_orders[0].m_dAmount = 1000;
    run.place(order);
}
void batchThatEnds(CBreachRun& run) {
    run.service().placeOrders({CBreachRun::order(kUnknown), CBreachRun::order(kStock)});
}
void load(CBreachRun& run) {
    run.load();
}
void startStopped(CBreachRun& run) {
    run.start(kStopped);
}
void startSocket(CBreachRun& run) {
    run.start(kSocket);
}
void add(CBreachRun& run) {
    EXPECT_EQ(run.service().getStrategyMap().size(), run.host.user.strategies.size());
    const int before = run.host.user.strategies.size();
    const int id = run.service().addOrderStrategy(TC::EOrderStrategyType::File);
    EXPECT_EQ(run.host.user.strategies.size(), id == -1 ? before : before + 1);
}
void dropOrder(CBreachRun& run) {
    run.drop("orderParam=x\n");
}
void dropCancel(CBreachRun& run) {
    run.drop("cancel 7\n23,0,10.5,600000,100\n");
}
void cancel(CBreachRun& run) {
    run.cancel();
}
void newDay(CBreachRun& run) {
    emit run.host.exchange.sigNewTradingDate("20260106");
}
void portfolio(CBreachRun& run) {
    run.ask("placeorder 36,4,1_x");
}
void namedBasket(CBreachRun& run) {
    run.ask("placeorder 25,4,core");
}
void save(CBreachRun& run) {
    run.saveSettings();
}
void exchange(CBreachRun& run) {
    run.exchange();
}
void startOverOldOrders(CBreachRun& run) {
    run.folder.write("5.txt", "23,0,10.5,600000,100\n");
    run.start(kStopped);
}
void dropRefused(CBreachRun& run) {
    run.drop("23,0,10.5,600000,100"); // an incomplete file: its line end is missing
}
void dropBacklog(CBreachRun& run) {
    run.service().dropBacklog();
    run.place(CBreachRun::order(kStock));
}
void nothing(CBreachRun&) {}

void prepareFileGuard(CBreachRun& run) {
    run.host.switches.on.insert("mdl_order_file_guard");
}

void prepareSplitLimits(CBreachRun& run) {
    run.host.switches.on.insert("mdl_order_split_orderNum");
}
/// The user of the two-pass variant. The test has no event loop for the second pass, so a receiver of the
/// signal runs it on the service thread. No setting asks for a confirmation.
void prepareTwoPasses(CBreachRun& run) {
    run.host.user.orderService = false;
    TC::COrderService& service = run.service();
    QObject::connect(&service, &TC::COrderService::sigPlaceLegalOrders,
                     [&service](const auto& orders, const auto*) { service.placeLegalOrders(orders); });
}
void prepareHedge(CBreachRun& run) {
    run.host.switches.on.insert("mdl_order_compose_hedge");
    run.host.user.strategies[kBasket].m_bHedgeBasket = true;
}
void prepareStarMarket(CBreachRun& run) {
    run.host.types.types.insert({knservice::kTypeStarMarket, "SH600000"});
}
void prepareAlgorithm(CBreachRun& run) {
    run.host.rules.algoPlatforms[kAlgorithm] = static_cast<TC::ETradePlatform>(2);
}
void prepareFuture(CBreachRun& run) {
    run.host.exchange.addOther("future", QStringLiteral("600000"));
    run.host.quotes.quotes[QStringLiteral("600000")] = run.host.quotes.quotes[QStringLiteral("SH600000")];
}
} // namespace

const std::vector<CBreachRow> kBreachRows = {
    {"CUserManager::getUserConfig", stock},
    {"CUserConfig::hasOrderService", load, nullptr, true},
    {"CUserConfig::hasUserAuth", cancel},
    {"CUserConfig::hasShowTradeFrameworkPermission", load, nullptr, true},
    {"CUserConfig::hasOrderEncryptionService", startStopped},
    {"CUserConfig::getUserName", stock},
    {"CUserConfig::getUserKind", stock},
    {"CUserConfig::getMaxOrderServerNum", load, nullptr, true},
    {"CUserConfig::getMaxOrderServerNumSocket", load, prepareSplitLimits, true},
    {"CUserConfig::getMinFileServiceInterval", nothing},
    {"CUserConfig::testHintBeforeOrderFlag", stock, prepareTwoPasses},
    {"CUserConfig::testGlobalOrderHint", stock, prepareTwoPasses},
    {"CUserConfig::getMsgFlags", stock},
    {"CUserConfig::getAccountGroupConst", stock},
    {"CUserConfig::hasAccount", family<kAccount, 23>},
    {"CUserConfig::hasSimpleAccount", family<kTableRow, 23>},
    {"CUserConfig::getAccountsWeights", stock},
    {"CUserConfig::getAccountData", family<kCredit, 37>},
    {"CUserConfig::isPriceTypeValid", latest},
    {"CUserConfig::getDefaultOrderSetting", add},
    {"CUserConfig::getBaskets", namedBasket},
    {"CUserConfig::getStrategyMap", load, nullptr, true},
    {"CAccount::toInfo", family<kCredit, 37>},
    {"CAccountInfo::getKey", stock},
    {"COrderClient::orderCommands", stock},
    {"COrderClient::showTradeError", badPrice},
    {"CTradeClient::getLoginStatus", startStopped},
    {"CTradeClient::splitEntrusts", stock},
    {"CTradeClient::splitMoney", repay},
    {"CTradeClient::cancelTask", cancel},
    {"CExchangeClient::hasStock", stock},
    {"CExchangeClient::hasFuture", family<kFuture, 0>},
    {"CExchangeClient::hasOption", family<kOption, 50>},
    {"CExchangeClient::hasFutureOption", family<kFutureOption, 0>},
    {"CExchangeClient::hasSkstock", family<kSgt, 23>},
    {"CExchangeClient::hasHkstock", family<kHgt, 23>},
    {"CExchangeClient::hasGold", family<kGold, 23>},
    {"CExchangeClient::hasNeeq", family<kNeeq, 66>},
    {"CExchangeClient::getCodeInfo", stock},
    {"CExchangeClient::getMaxTradingDay", cancel},
    {"CQuoteClient::getStockPrice", stock},
    {"CQuoteClient::subscribe", stock},
    {"CPriceData::getOriginPrice", latest},
    {"CPriceData::getPriceForCalc", latest},
    {"CPriceData::getPriceForOrder", latest},
    {"CInstrumentTypes::isTypedStock", stock},
    {"CInstrumentTypes::getTradeMinUnit", amount},
    {"CInstrumentTypes::getUiMinUnit", amount, prepareStarMarket},
    {"CTradingRules::qdStockKey", stock},
    {"CTradingRules::orderStrategyTradeTypeToBrokerType", stock},
    {"CTradingRules::getAccountFromOrderParam", namedAccount},
    {"CTradingRules::parserOrderTradeParam", dropOrder},
    {"CTradingRules::orderSettingFromString", textOrder},
    {"CTradingRules::orderSettingToParam", stock},
    {"CTradingRules::fixTimeRange", stock},
    {"CTradingRules::isBuy", family<kBasket, 25>, prepareHedge},
    {"CTradingRules::isClose", [](CBreachRun& run) { run.place(CBreachRun::order(kFuture, 0, 10.5, 0)); },
     prepareFuture},
    {"CTradingRules::isDirectRepay", repay},
    {"CTradingRules::operationTypeToEntrustType", family<kCredit, 23>},
    {"CTradingRules::isMarketPrice", latest},
    {"CTradingRules::isAlgoOrderType", stock},
    {"CTradingRules::getPlatformTypeByOrderType", algorithmOrder, prepareAlgorithm},
    {"CTradingRules::filterZeroStock", stock, prepareTwoPasses},
    {"CTradingRules::fillOverFreqOrderMode", stock, prepareTwoPasses},
    {"CTradingRules::orderStrategyTypeToOrderTitle", startStopped},
    {"CTradingRules::orderStrategyTypeToString", stock},
    {"CTradingRules::orderStrategyOrderTypeToString", stock},
    {"CTradingRules::orderStrategyTradeTypeToString", stock},
    {"CTradingRules::knPriceTypeToString", badPrice},
    {"CAlgorithmTradeHelper::getAlgOrderSettingFromString", algorithmOrder, prepareAlgorithm},
    {"CAlgorithmTradeHelper::getAlgParamsStr", algorithmOrder, prepareAlgorithm},
    {"CMsgService::showMsg", stock},
    {"CTimeService::currentTime", dropCancel},
    {"LuaModuleCtrl::checkModule", stock},
    {"CIntakeAudit::recordIntake", dropOrder},
    {"CIntakeAudit::recordDoor", startSocket},
    {"CIntakeAudit::recordDiscard", startOverOldOrders},
    {"CIntakeAudit::recordUnplaced", dropBacklog, nullptr, false, true},
    {"CIntakeAudit::rejectedFolder", dropRefused, prepareFileGuard},
    {"CIntakeAudit::recordIncident", batchThatEnds},
    {"CTradeFrameworkSource::switchTradingDate", newDay},
    {"CTradeFrameworkSource::getAllInterfaces", save},
    {"TraderCenter::getTaskCenter", dropCancel},
    {"TraderCenter::getDataCenter", portfolio},
    {"CTaskCenter::findTasks", dropCancel},
    {"CTask::operate", dropCancel},
    {"CDataCenter::getAccountData", exchange},
    {"CDataCenter::getGlobalAccountData", portfolio},
    {"CAccountData::getMapData", portfolio},
    {"CAccountData::getVector", exchange},
    {"CAccountData::lock", exchange},
    {"CAccountData::unlock", exchange},
    // Only function trading calls these.
    {"CUserConfig::getAccounts", calls::stock},
    {"CUserConfig::getDefaultOrderSettings", calls::stock},
    {"CAccount::key", calls::stock},
    {"CAccountInfo::keyWith", calls::smart},
    {"CTradingRules::accountDisplayIDQs", calls::stock},
    {"CTimeService::currentMilliseconds", calls::smart},
    {"CTradeClient::cancelOrder", calls::cancelAll},
    {"CDataCenter::getAccountKey", calls::cancelAll},
    {"CAccountData::getAccountInfo", calls::cancelAll},
    {"CAccountData::getAccountDetail", calls::ratioOfAssets},
    {"CAccountData::getUsableVolume", calls::stock},
    {"CAccountData::getMapDataRef", calls::futureBasketByMoney},
    {"TraderCenter::getCalculator", calls::volumeOfARepayment, nullptr, false, false, true},
    {"ICalculator::getVolumeLimit", calls::volumeOfARepayment, nullptr, false, false, true},
    {"CFormulaManager::registerOrderCallBack", calls::init, nullptr, false, false, true},
};

CBreachRun::CBreachRun() {
    using EFamily = EOrderStrategyTradeType;
    const std::pair<int, EFamily> strategies[] = {{kStock, EFamily::Stock},
                                                  {kFuture, EFamily::Future},
                                                  {kBasket, EFamily::Basket},
                                                  {kCredit, EFamily::Credit},
                                                  {kOption, EFamily::StockOption},
                                                  {kFutureOption, EFamily::FutureOption},
                                                  {kSgt, EFamily::SGT},
                                                  {kHgt, EFamily::HGT},
                                                  {kNeeq, EFamily::Neeq},
                                                  {kGold, EFamily::Gold},
                                                  {kLatest, EFamily::Stock},
                                                  {kAmount, EFamily::Stock},
                                                  {kAccount, EFamily::Stock}};
    for (const auto& [channel, family] : strategies)
        addStrategy(channel, family);
    addStrategy(kStopped, EFamily::Stock, false);
    addStrategy(kTableRow, EFamily::Stock, false);
    TC::COrderStrategyMap& map = host.user.strategies;
    map[kLatest].m_stockSetting.m_ePriceType = TC::EPriceType::Latest;
    map[kAmount].m_bUseAmount = true;
    map[kAmount].m_dAmount = 10000;
    map[kAccount] = CStrategyBuilder(map[kAccount]).account(QStringLiteral("A1"));
    map[kTableRow] = CStrategyBuilder(map[kTableRow]).account(QStringLiteral("A1")).tableMode();
    host.user.addStrategy(CStrategyBuilder()
                              .channel(kSocket)
                              .source(TC::EOrderStrategyType::Signal)
                              .file("127.0.0.1:" + std::to_string(m_nPort))
                              .stopped());
    TC::COrderService::initInstance(new TC::COrderService);
    TC::COrderFuncService::initInstance(new TC::COrderFuncService);
    TC::COrderFuncService::instance()->init();
}

CBreachRun::~CBreachRun() {
    host.breaches.disarm();
    TC::COrderFuncService::release();
    TC::COrderService::release();
}

void CBreachRun::addStrategy(int channel, TC::EOrderStrategyTradeType family, bool isRunning) {
    const std::string file = std::to_string(channel) + ".txt";
    folder.write(file, "");
    CStrategyBuilder builder;
    builder.channel(channel).family(family).file(folder.path(file));
    if (!isRunning) builder.stopped();
    host.user.addStrategy(builder);
}

/// Before the load it writes a file for each strategy, because a start looks for the file and deletes it.
void CBreachRun::load() {
    bool isLoaded = false;
    const auto writeAndLoad = [&](int = 0, const TC::COrderStrategyParam& = {}) {
        if (std::exchange(isLoaded, true)) return;
        for (const int channel : host.user.strategies.keys()) {
            if (channel != kSocket) folder.write(std::to_string(channel) + ".txt", "");
        }
        service().loadFromConfig(true);
    };
    // This holds the registry lock. Otherwise a pass of the file loop takes the files before the start looks
    // for them.
    service().visitStrategies(writeAndLoad);
    writeAndLoad(); // for the case without strategies: then no pass takes the files
}

TC::COrderParam CBreachRun::order(int channel, int number, double price, int volume) {
    return COrderBuilder(number).channel(channel).line(QStringLiteral("600000"), price, volume);
}

void CBreachRun::start(int channel) {
    startError.clear();
    startResult = service().startOrderStrategy(channel, startError, true);
}

void CBreachRun::drop(const std::string& bytes) {
    folder.handOver(std::to_string(kStock) + ".txt", bytes);
}

void CBreachRun::ask(const std::string& line) {
    start(kSocket);
    CTestSocket client(m_nPort);
    (void)client.readLine();
    reply = client.ask(line);
}

void CBreachRun::saveSettings() {
    QDomDocument document;
    QDomElement element = document.createElement(QStringLiteral("interfaceTrade"));
    try {
        service().saveSettings(element, document);
    } catch (...) {
        hasThrown = true;
    }
    EXPECT_FALSE(element.hasChildNodes());
}

void CBreachRun::exchange() {
    TC::COrderSingleParam target;
    target.m_strCode = QStringLiteral("600000");
    target.m_nVolume = 300;
    QVector<TC::COrderSingleParam> rows{target};
    TC::COrderServicePeer::exchangePosition(service(), host.user.accounts.at("A1"), rows);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.at(0).m_nVolume, 300);
}

void CBreachRun::attempt(const std::function<void(TC::COrderFuncService&)>& act) {
    hostError.clear();
    try {
        act(*TC::COrderFuncService::instance());
    } catch (const TC::CHostError& error) {
        hostError = error.what();
    }
}

void CBreachRun::call(const std::string& func, const std::string& param, const std::string& algoParam) {
    attempt([&](TC::COrderFuncService& functions) { functions.doParserOrder(func, param, algoParam); });
}

void CBreachRun::renewFunctions() {
    TC::COrderFuncService::release();
    TC::COrderFuncService::initInstance(new TC::COrderFuncService);
    attempt([](TC::COrderFuncService& functions) { functions.init(); });
}

void CBreachRun::renewService() {
    TC::COrderService::release();
    TC::COrderService::initInstance(new TC::COrderService);
    load();
}

void CBreachRun::waitForService() {
    constexpr std::chrono::seconds kDeadline{60};
    const auto processed = std::make_shared<std::promise<void>>();
    auto done = processed->get_future();
    service().holdUntilProcessed(
        std::shared_ptr<const void>(processed.get(), [processed](const void*) { processed->set_value(); }));
    EXPECT_EQ(done.wait_for(kDeadline), std::future_status::ready);
}

std::size_t CBreachRun::commandCount() const {
    return host.records.snapshot([this] { return host.orders.commands.size(); });
}

bool CBreachRun::waitForCommands(std::size_t count) {
    return host.records.waitUntil([&] { return host.orders.commands.size() >= count; });
}

} // namespace breach
