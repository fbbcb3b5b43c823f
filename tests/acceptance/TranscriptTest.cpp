// Takes the order files and conversations of each transcript down the real road: file or socket, queue,
// check, command. The host is the one in memory, the threads are the service's own.
#include "tests/acceptance/Transcript.h"
#include "base/Text.h"
#include "service/OrderService.h"
#include "tests/acceptance/SocketTalk.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

namespace {

using namespace TC;
using CWords = std::map<std::string, std::string>;

/// "a=1 b c=2" as words; one without a value has an empty one.
CWords splitWords(const std::string& text) {
    CWords words;
    std::istringstream stream(text);
    for (std::string word; stream >> word;) {
        const std::size_t equals = word.find('=');
        words[word.substr(0, equals)] = equals != std::string::npos ? word.substr(equals + 1) : "";
    }
    return words;
}

QString qs(const std::string& text) {
    return QString::fromStdString(text);
}

class CRoad {
public:
    ~CRoad() {
        if (COrderService::instance() == nullptr) return;
        COrderService::instance()->shutdown();
        COrderService::release();
    }

    void apply(const CStatement& statement) {
        const auto found = m_statements.find(statement.word);
        if (found == m_statements.end()) throw std::runtime_error("unknown statement: " + statement.word);
        found->second(statement);
    }

    std::vector<std::string> takeLog() {
        std::vector<std::string> log;
        host.records.record([&] { log.swap(host.records.log); });
        return log;
    }

private:
    void addStrategy(const CStatement& statement) {
        const int channel = std::stoi(statement.rest);
        COrderStrategyParam strategy =
            CStrategyBuilder().channel(channel).file(folder.path(std::to_string(channel)));
        for (const auto& [word, value] :
             splitWords(statement.rest.substr(statement.rest.find_first_of(" \n") + 1))) {
            const auto setter = m_strategyWords.find(word);
            if (setter != m_strategyWords.end()) setter->second(strategy, value);
        }
        folder.write(std::to_string(channel), "");
        host.user.addStrategy(strategy);
    }

    void addStock(const CStatement& statement) {
        std::istringstream stream(statement.rest);
        std::string market, code;
        double price = 0;
        int unit = 100;
        stream >> market >> code >> price >> unit;
        host.addStock(market, code, price, unit);
    }

    void addBasket(const CStatement& statement) {
        std::istringstream stream(statement.rest);
        std::string name;
        stream >> name;
        for (std::string code; stream >> code;) {
            CBasketStockData row;
            row.m_strCode = qs(code);
            row.m_nVolume = 100;
            host.user.baskets[qs(name)].m_rows.push_back(row);
        }
    }

    /// `param TEXT => remark=... kind=... setting=... part1=... part2=...`: a text that the host understands.
    void addParam(const CStatement& statement) {
        const std::size_t arrow = statement.rest.find(" => ");
        CWords words = splitWords(statement.rest.substr(arrow + 4));
        COrderTradeParam param;
        param.m_strRemark = utils::toLocal8Bit(qs(words["remark"]));
        if (words.count("kind") > 0) param.m_eOrderType = std::stoi(words["kind"]);
        if (words.count("final") > 0) param.m_nSettingKind = 1;
        param.m_strOrderSetting = qs(words["setting"]);
        param.m_strAccountKeyPart1 = qs(words["part1"]);
        param.m_strAccountKeyPart2 = qs(words["part2"]);
        host.rules.tradeParams[utils::toLocal8Bit(qs(statement.rest.substr(0, arrow)))] = param;
    }

    /// Strategies are known by then: they start with the service.
    static COrderService& service() {
        if (COrderService::instance() == nullptr) {
            COrderService::initInstance(new COrderService);
            COrderService::instance()->loadFromConfig(false);
        }
        return *COrderService::instance();
    }

    /// Returns when the service has worked off what is queued.
    static void settle() {
        QMetaObject::invokeMethod(
            &service(), [] {}, Qt::BlockingQueuedConnection);
    }

    /// Makes it a socket strategy with a listener of its own, or on that of the channel `share`.
    void makeSocket(COrderStrategyParam& strategy, const std::string& share) {
        unsigned short& port = ports[strategy.m_nChannel];
        port = share.empty() ? freePort() : ports.at(std::stoi(share));
        strategy.m_eStrategyType = EOrderStrategyType::Signal;
        strategy.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(port);
        strategy.m_strUser = QStringLiteral("trader");
        strategy.m_strPass = QStringLiteral("secret");
    }

    void talk(const CStatement& statement) {
        service();
        holdTalk(ports.at(std::stoi(statement.rest)), statement.talk, settle);
    }

    void stopStrategy(const CStatement& statement) {
        QString error;
        service().stopOrderStrategy(std::stoi(statement.rest), error);
        if (!error.isEmpty()) throw std::runtime_error(error.toStdString());
    }

    /// Hands the file over and returns when all of it has been worked off.
    void dropFile(const CStatement& statement) {
        COrderService& running = service();
        const std::size_t before = host.records.snapshot([this] { return host.audit.reports.size(); });
        folder.handOver(std::to_string(std::stoi(statement.rest)), statement.bytes);
        if (!host.waitForIntakes(before + 1)) throw std::runtime_error("the file was not taken");
        running.getStrategyMap(); // comes back when the pass is over
        settle();
    }

    CTempFolder folder;
    std::map<int, unsigned short> ports; ///< of the socket strategies, by channel
    CFakeHost host;

    using CSetter = std::function<void(COrderStrategyParam&, const std::string&)>;
    const std::map<std::string, CSetter> m_strategyWords{
        {"price",
         [](auto& s, const auto& v) {
             s.m_stockSetting.m_ePriceType = static_cast<EPriceType>(std::stoi(v));
         }},
        {"volume", [](auto& s, const auto& v) { s.m_nVolume = std::stoi(v); }},
        {"amount",
         [](auto& s, const auto& v) {
             s.m_bUseAmount = true;
             s.m_dAmount = std::stod(v);
         }},
        {"code", [](auto& s, const auto& v) { s.m_strCode = qs(v); }},
        {"group", [](auto& s, const auto& v) { s.m_strSelectedAccount = qs(v); }},
        {"account",
         [](auto& s, const auto& v) {
             s.m_eSelectedAccountType = ESelectedAccountType::Account;
             s.m_strSelectedAccount = qs(v);
         }},
        {"family",
         [](auto& s, const auto& v) { s.m_eTradeType = static_cast<EOrderStrategyTradeType>(std::stoi(v)); }},
        {"kind", [](auto& s, const auto& v) { s.m_eOrderType = static_cast<EOrderType>(std::stoi(v)); }},
        {"remark", [](auto& s, const auto& v) { s.m_stockSetting.m_strCmdLog = v; }},
        {"socket", [this](auto& s, const auto& v) { makeSocket(s, v); }},
        {"stopped", [](auto& s, const auto&) { s.m_nStatus = COrderStrategyParam::kStopped; }},
    };
    const std::map<std::string, std::function<void(const CStatement&)>> m_statements{
        {"strategy", [this](const auto& s) { addStrategy(s); }},
        {"account", [this](const auto& s) { host.user.addAccount(s.rest); }},
        {"stock", [this](const auto& s) { addStock(s); }},
        {"basket", [this](const auto& s) { addBasket(s); }},
        {"param", [this](const auto& s) { addParam(s); }},
        {"file", [this](const auto& s) { dropFile(s); }},
        {"talk", [this](const auto& s) { talk(s); }},
        {"stop", [this](const auto& s) { stopStrategy(s); }},
        {"switch", [this](const auto& s) { host.switches.on.insert(s.rest); }},
        {"noswitch", [this](const auto& s) { host.switches.on.erase(s.rest); }},
        {"userkind", [this](const auto& s) { host.user.kind = std::stoi(s.rest); }},
        {"noright",
         [this](const auto& s) { host.user.rights.erase(static_cast<EUserAuth>(std::stoi(s.rest))); }},
        {"logout", [this](const auto& s) { host.trade.loginStatus[s.rest] = 1; }},
        {"algo",
         [this](const auto& s) {
             host.rules.algoPlatforms[static_cast<EOrderType>(std::stoi(s.rest))] =
                 static_cast<ETradePlatform>(2);
         }},
        {"task", [this](const auto& s) { host.tasks.tasks[std::stoi(s.rest)] = 1; }},
        {"market",
         [this](const auto& s) {
             host.rules.marketPrices.insert(static_cast<EPriceType>(std::stoi(s.rest)));
         }},
        {"star",
         [this](const auto& s) {
             host.types.types.insert({knservice::kTypeStarMarket, s.rest});
             host.types.uiUnits[s.rest] = 200;
         }},
        {"par",
         [this](const auto& s) {
             host.types.types.insert({knservice::kTypeParPriced, s.rest});
         }},
    };
};

std::vector<std::string> transcriptNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TRANSCRIPTS)) {
        if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, ComesOutAsWritten) {
    const CTranscript transcript = readTranscript(std::string(TRANSCRIPTS) + "/" + GetParam() + ".txt");
    ASSERT_FALSE(transcript.steps.empty());
    CRoad road;
    for (const CTranscript::CStep& step : transcript.steps) {
        for (const CStatement& statement : step.statements)
            road.apply(statement);
        std::string came, expected;
        for (const std::string& line : road.takeLog())
            came += line + "\n";
        for (const std::string& line : step.expected)
            expected += line + "\n";
        EXPECT_EQ(came, expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Doors, Transcript, testing::ValuesIn(transcriptNames()),
                         [](const auto& test) { return test.param; });

TEST(Transcripts, AreAllThere) {
    EXPECT_GE(transcriptNames().size(), 50u);
}

} // namespace
