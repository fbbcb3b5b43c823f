#include "desk/host/PaperTraderCenter.h"

#include "desk/journal/JournalEvents.h"
#include "records/Enums.h"
#include "records/Portfolio.h"

#include <nlohmann/json.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

namespace desk {
namespace {

/// A running task of the paper broker.
class CPaperTaskHandle : public knservice::CTask {
public:
    CPaperTaskHandle(CJournal& journal, CPaperBroker& broker, CTextSink& sink, int taskId)
        : m_journal(journal), m_broker(broker), m_sink(sink), m_nTaskId(taskId) {}

    void operate(const TC::CTaskOpRecord& record) override {
        (void)m_journal.append("cancel_task", cancelTaskFields(m_nTaskId, record));
        const utils::KNError error = perform(record);
        if (!error.isSuccess()) m_sink.writeLine("cancel: " + error.errorMsg());
    }

private:
    utils::KNError perform(const TC::CTaskOpRecord& record) {
        const int operation = record.m_nOperation;
        if (operation == TC::kTaskOpTerminate || operation == TC::kTaskOpCancel) {
            return m_broker.cancelTask(m_nTaskId, record.m_strRemark);
        }
        return {kPaperBadRequest, "task operation " + std::to_string(operation) + " is not modelled"};
    }

    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const int m_nTaskId;
};

/// An account's positions as they were once.
class CPaperAccountData : public knservice::CAccountData {
public:
    void add(const std::string& stockKey, const knservice::CPositionStaticsPtr& position) {
        m_positions.emplace(stockKey, position);
    }

    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int table) override {
        return table == knservice::kPositionTable ? m_positions : decltype(m_positions){};
    }

    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        for (const auto& [key, position] : getMapData(table))
            out.push_back(position);
    }

private:
    std::map<std::string, boost::shared_ptr<knservice::IData>> m_positions;
};

knservice::CPositionStaticsPtr positionOf(const CPaperPosition& held, const CInstrumentEntry& instrument,
                                          const TC::CAccountInfoPtr& account) {
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    auto position = boost::make_shared<knservice::CPositionStatics>();
    position->m_account = account;
    position->m_strMarket = instrument.market;
    position->m_strCode = instrument.code;
    position->m_strName = instrument.name;
    position->m_nPositionVolume = static_cast<int>(std::min(held.m_nVolume, kMost));
    position->m_nAvailableVolume = held.available();
    return position;
}

} // namespace

CPaperTraderCenter::CPaperTraderCenter(CJournal& journal, CPaperBroker& broker, const IQuoteSource& quotes,
                                       CTextSink& sink, const std::vector<CAccountEntry>& accounts)
    : m_journal(journal), m_broker(broker), m_quotes(quotes), m_sink(sink) {
    for (const CAccountEntry& entry : accounts) {
        const auto info = boost::make_shared<TC::CAccountInfo>();
        info->m_strKey = entry.key;
        info->m_nBrokerType = static_cast<int>(entry.broker);
        m_accounts[entry.key] = info;
    }
}

boost::shared_ptr<knservice::CAccountData> CPaperTraderCenter::getAccountData(const std::string& key) {
    const auto account = m_accounts.find(key);
    if (account == m_accounts.end()) return nullptr;
    auto data = boost::make_shared<CPaperAccountData>();
    for (const CPaperPosition& held : m_broker.positions()) {
        const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(held.m_strStock);
        if (held.m_strAccount == key && held.m_nVolume > 0 && instrument)
            data->add(held.m_strStock, positionOf(held, *instrument, account->second));
    }
    return data;
}

std::vector<boost::shared_ptr<knservice::CTask>> CPaperTraderCenter::findTasks(int taskId) {
    if (!m_broker.hasTask(taskId)) return {};
    return {boost::make_shared<CPaperTaskHandle>(m_journal, m_broker, m_sink, taskId)};
}

} // namespace desk
