#include "orderservice/contract/ContractHost.h"
#include "orderservice/records/Enums.h"
#include "tests/support/FakeHost.h"

namespace {

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
        m_host.tasks.addPosition(m_host.user.accounts.at("A1"), "SH", "600000", 500);
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
