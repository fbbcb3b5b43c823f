#include "orderservice/contract/ContractHost.h"
#include "orderservice/records/Enums.h"
#include "tests/support/FakeHost.h"

#include <boost/make_shared.hpp>

#include <cmath>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace {

/// An account with money for each of its instrument, with one position and one waiting order.
class CContractAccount : public knservice::CAccountData {
public:
    CContractAccount(TC::CAccountInfoPtr info, std::vector<boost::shared_ptr<knservice::IData>> positions,
                     const TC::CInstrumentDetailPtr& instrument)
        : m_info(std::move(info)), m_positions(std::move(positions)) {
        const auto fee = boost::make_shared<knservice::CInstrumentFee>();
        fee->m_instrument = instrument;
        m_fees[knservice::CInstrumentFee::genKey(*instrument, *m_info)] = fee;
    }
    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int) override { return {}; }
    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        if (table == knservice::kPositionTable) out = m_positions;
        if (table != knservice::kOrderTable) return;
        const auto order = boost::make_shared<knservice::COrderDetail>();
        order->m_strOrderSysID = "15";
        order->m_nStatus = 50;
        out.push_back(order);
    }
    const std::map<std::string, boost::shared_ptr<knservice::IData>>& getMapDataRef(int table) override {
        return table == knservice::kFeeTable ? m_fees : knservice::CAccountData::getMapDataRef(table);
    }
    TC::CAccountInfoPtr getAccountInfo() override { return m_info; }
    knservice::CAccountDetailPtr getAccountDetail() override {
        const auto detail = boost::make_shared<knservice::CAccountDetail>();
        detail->m_dAssetForRatio = detail->m_dAssetCheck = detail->m_dBasketAsset = kMoney;
        return detail;
    }
    double getUsableVolume(const std::string&, const std::string& code, TC::EOperationType operation,
                           TC::EHedge_Flag_Type, double price) override {
        if (code != "600000") return 0;
        if (operation == TC::EOperationType::Sell) return kHeld;
        return price > 0 ? std::floor(kMoney / price) : 0;
    }

    static constexpr int kHeld = 500;

protected:
    void lock() override { m_mutex.lock(); }
    void unlock() override { m_mutex.unlock(); }

private:
    static constexpr double kMoney = 1e7;
    const TC::CAccountInfoPtr m_info;
    const std::vector<boost::shared_ptr<knservice::IData>> m_positions;
    std::map<std::string, boost::shared_ptr<knservice::IData>> m_fees;
    std::mutex m_mutex;
};

class CFakeContractHost : public contract::IContractHost {
public:
    CFakeContractHost() {
        m_world.market = "SH";
        m_world.code = "600000";
        m_world.stockKey = QStringLiteral("SH600000");
        m_world.unknownStockKey = QStringLiteral("SH999999");
        m_world.futureKey = list("future", "IF2609");
        m_world.optionKey = list("option", "10000001");
        m_world.futureOptionKey = list("future option", "IO2609-C-4000");
        m_world.sgtKey = list("sgt", "SGT00001");
        m_world.hgtKey = list("hgt", "HGT00700");
        m_world.goldKey = list("gold", "GOLDAU9999");
        m_world.neeqKey = list("neeq", "NEEQ430001");
        m_world.account = "A1";
        m_world.group = QStringLiteral("G");
        m_world.groupAccounts = {"A1", "A2"};
        m_world.unknownName = QStringLiteral("nobody");
        m_world.holder = "A1";
        m_world.basket = QStringLiteral("篮子");
        m_world.tradeParam = "remark";
        m_world.tradeParamRemark = "\xB1\xB8\xD7\xA2"; // 备注
        m_world.unreadableTradeParam = "?";
        m_world.settingText = QStringLiteral("price=11");
        m_world.settingPriceType = TC::EPriceType::Specified;
        m_world.algorithmTexts = {"TWAP"};
        m_world.unreadableAlgorithmText = "?";
        m_world.unknownTask = 404;

        TC::CBasketStockData row;
        row.m_strCode = QStringLiteral("600000");
        row.m_nVolume = 100;
        m_host.user.baskets[m_world.basket].m_rows.push_back(row);
        const TC::CAccountInfoPtr account = m_host.user.accounts.at("A1");
        m_host.tasks.addPosition(account, "SH", "600000", CContractAccount::kHeld);
        m_host.tasks.accountData["A1"] = boost::make_shared<CContractAccount>(
            account, m_host.tasks.positions["A1"], m_host.exchange.getCodeInfo(m_world.stockKey));
        m_host.tasks.accountKeys[{"A1", static_cast<int>(TC::EQDBrokerType::Stock)}] = "A1";
        TC::COrderTradeParam param;
        param.m_strRemark = m_world.tradeParamRemark;
        m_host.rules.tradeParams[m_world.tradeParam] = param;
        for (const auto operation : {TC::EOperationType::RepayMoney, TC::EOperationType::RepayMoneyContract})
            m_host.rules.directRepays.insert(static_cast<int>(operation));
        m_host.algorithms.unreadable = {m_world.unreadableAlgorithmText};
    }

    const contract::CContractWorld& world() const override { return m_world; }

private:
    QString list(const char* name, const char* key) {
        m_host.exchange.addOther(name, QString::fromLatin1(key));
        return QString::fromLatin1(key);
    }

    CFakeHost m_host;
    contract::CContractWorld m_world;
};

} // namespace

int main(int argc, char** argv) {
    contract::CContractHostKind kind;
    kind.name = "Fake";
    kind.make = [] { return std::make_unique<CFakeContractHost>(); };
    return contract::runHostContract(argc, argv, kind);
}
