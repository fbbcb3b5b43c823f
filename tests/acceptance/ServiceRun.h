#pragma once

#include "orderservice/records/StrategyParam.h"
#include "tests/acceptance/ServiceRunClock.h"
#include "tests/acceptance/Transcript.h"
#include "tests/support/FakeHost.h"
#include "tests/support/ScriptedConfirmer.h"
#include "tests/support/TempFolder.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace TC {
class COrderService;
}

/// The complete path of an order: file or socket, queue, check, command, the host's order client. The service
/// and its threads are real; the host is the fake one in memory. Statements set up the host and send orders.
/// ServiceRun.cpp and ServiceRunConfirm.cpp have the tables of the statements. The main thread is the one
/// that applies the statements. A wait for a quote ends at once and is only recorded.
class CServiceRun {
public:
    CServiceRun();
    ~CServiceRun();
    CServiceRun(const CServiceRun&) = delete;
    CServiceRun& operator=(const CServiceRun&) = delete;

    /// Throws std::runtime_error if the statement is unknown or if the service does not take its file.
    void apply(const CStatement& statement);
    /// Returns what reached the host since the last call, one line for each event.
    std::vector<std::string> takeLog();

private:
    using CSetter = std::function<void(TC::COrderStrategyParam&, const std::string&)>;
    using CAction = std::function<void(const CStatement&)>;

    std::map<std::string, CSetter> strategyWords();
    std::map<std::string, CAction> serviceStatements();
    std::map<std::string, CAction> userStatements();
    std::map<std::string, CAction> marketStatements();
    std::map<std::string, CAction> tradeStatements();
    std::map<std::string, CAction> confirmStatements();

    void addStrategy(const CStatement& statement);
    void makeSocket(TC::COrderStrategyParam& strategy, const std::string& share);
    void stopStrategy(const CStatement& statement);
    void dropFile(const CStatement& statement);
    void talk(const CStatement& statement);

    void addBasket(const CStatement& statement);
    void addParam(const CStatement& statement);
    void addGroup(const CStatement& statement);
    void addStock(const CStatement& statement);
    void addInstrument(const CStatement& statement);
    void setReference(const CStatement& statement);
    void setQuote(const CStatement& statement);
    void addPosition(const CStatement& statement);
    void addPortfolio(const CStatement& statement);
    void setSplit(const CStatement& statement);
    void setRecord(const CStatement& statement);
    void setMoneySplit(const CStatement& statement);
    void setAnswer(const CStatement& statement);
    void leaveInQuestions();
    void placeByHost(const CStatement& statement);
    void placeBatch(const CStatement& statement);
    /// Lets baskets use this stock: it is tradable and allowed in baskets.
    void makeTraded(const QString& key);
    void report(const std::string& line);
    /// Starts the service at the first call. The service reads the strategies when it starts.
    static TC::COrderService& runningService();
    /// Returns when the service has processed its queue, and the main thread the checked orders of two
    /// passes.
    static void settle();

    CServiceRunClock m_clock;
    CTempFolder m_folder;
    std::map<int, unsigned short> m_ports; ///< ports of the socket strategies, by channel
    CFakeHost m_host;
    CScriptedConfirmer m_confirmer;
    const std::map<std::string, CSetter> m_strategyWords;
    std::map<std::string, CAction> m_statements;
};
