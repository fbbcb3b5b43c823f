// Runs the contract suites of the host services against the desk, on a copy of its demo folder.
#include "desk/commands/NewFolder.h"
#include "desk/config/ConfigLoader.h"
#include "desk/host/Desk.h"
#include "orderservice/contract/ContractHost.h"
#include "tests/support/TempFolder.h"

#include <boost/make_shared.hpp>

#include <sstream>
#include <stdexcept>

namespace {

class CDeskContractHost : public contract::IContractHost {
public:
    CDeskContractHost() {
        if (desk::runNew(m_folder.path("desk"), false, m_out, m_out) != 0)
            throw std::runtime_error(m_out.str());
        m_desk = std::make_unique<desk::CDesk>(m_folder.path("desk"),
                                               desk::loadDeskConfig(m_folder.path("desk")).config, m_sink);
        for (const utils::KNError& result : {m_desk->open(), TC::installHost(m_desk->services())}) {
            if (!result.isSuccess()) throw std::runtime_error(result.errorMsg());
        }
        m_world.market = "SH";
        m_world.code = "600101";
        m_world.stockKey = QStringLiteral("SH600101");
        m_world.unknownStockKey = QStringLiteral("SH999999");
        m_world.futureKey = QStringLiteral("IF2609");
        m_world.optionKey = QStringLiteral("10005001");
        m_world.futureOptionKey = QStringLiteral("IO2609-C-4000");
        m_world.sgtKey = QStringLiteral("SGT00001");
        m_world.hgtKey = QStringLiteral("HGT00700");
        m_world.goldKey = QStringLiteral("GOLDAU99");
        m_world.neeqKey = QStringLiteral("NEEQ430001");
        m_world.account = "A1";
        m_world.group = QStringLiteral("main");
        m_world.groupAccounts = {"A1", "A2"};
        m_world.unknownName = QStringLiteral("nobody");
        m_world.holder = "A1";
        m_world.basket = QStringLiteral("蓝筹");
        m_world.tradeParam = "remark:\xB1\xB8\xD7\xA2;kind:1"; // 备注
        m_world.tradeParamRemark = "\xB1\xB8\xD7\xA2";
        m_world.unreadableTradeParam = "?";
        m_world.settingText = QStringLiteral("price_type:11");
        m_world.settingPriceType = TC::EPriceType::Specified;
        m_world.unreadableAlgorithmText = "?";
        m_world.unknownTask = 404;
        placeOrder();
    }
    ~CDeskContractHost() override { TC::releaseHost(); }

    const contract::CContractWorld& world() const override { return m_world; }

private:
    /// An order of the account that waits, so that its order list is not empty.
    void placeOrder() {
        TC::CCodeOrderParam code;
        code.m_account = TC::getUserConfig()->getAccountData(QStringLiteral("A1"))->toInfo();
        code.m_eOperationType = TC::EOperationType::Buy;
        code.m_stock = {m_world.market, m_world.code, "", ""};
        code.m_ePriceType = TC::EPriceType::Specified;
        code.m_dPrice = 9.90;
        code.m_nVolume = 100;
        const auto command = boost::make_shared<TC::COrderComandParam>();
        command->m_eTraderType = TC::EQdTraderType::Stock;
        command->m_codes = {code};
        m_desk->orderClient().orderCommands(command);
    }

    CTempFolder m_folder;
    std::ostringstream m_out;
    desk::CTextSink m_sink{m_out};
    std::unique_ptr<desk::CDesk> m_desk;
    contract::CContractWorld m_world;
};

} // namespace

int main(int argc, char** argv) {
    contract::CContractHostKind kind;
    kind.name = "Desk";
    kind.make = [] { return std::make_unique<CDeskContractHost>(); };
    kind.lacks = {contract::EHostTrait::Algorithms};
    return contract::runHostContract(argc, argv, kind);
}
