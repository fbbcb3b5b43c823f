#include "desk/host/PaperAccounts.h"

#include "desk/host/DeskUserConfig.h"
#include "desk/paper/AccountAssets.h"
#include "orderservice/base/Unset.h"
#include "orderservice/kit/Operations.h"
#include "orderservice/records/Portfolio.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <utility>

namespace desk {
namespace {

using CRecords = CPaperAccounts::CRecords;

knservice::CPositionStaticsPtr makePosition(const CPaperPosition& held, const CInstrumentEntry& instrument,
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

/// Orders are listed by their ids, so their keys must have the same order.
std::string orderKey(int id) {
    char text[16];
    std::snprintf(text, sizeof text, "%010d", id);
    return text;
}

/// A position limits sales only: what an account can buy depends on its funds.
bool isLimitedByPosition(const kit::COperation& operation) {
    return operation.m_eSide == kit::ETradeSide::Sell &&
           (operation.m_eEffect == kit::EOperationEffect::Trade ||
            operation.m_eEffect == kit::EOperationEffect::Close) &&
           operation.m_eBooking != kit::EBooking::BorrowedShares;
}

class CPaperAccountData : public knservice::CAccountData {
public:
    CPaperAccountData(const CPaperAccounts& accounts, TC::CAccountInfoPtr info)
        : m_accounts(accounts), m_info(std::move(info)) {}

    CRecords getMapData(int table) override { return getMapDataRef(table); }

    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override {
        for (const auto& [key, record] : getMapDataRef(table))
            out.push_back(record);
    }

    const CRecords& getMapDataRef(int table) override {
        const std::lock_guard lock(m_mutex);
        const auto found = m_tables.find(table);
        return *(found != m_tables.end() ? found : m_tables.emplace(table, read(table)).first)->second;
    }

    TC::CAccountInfoPtr getAccountInfo() override { return m_info; }
    knservice::CAccountDetailPtr getAccountDetail() override { return m_accounts.detailOf(m_info->m_strKey); }

    double getUsableVolume(const std::string& market, const std::string& code, TC::EOperationType operation,
                           TC::EHedge_Flag_Type, double price) override {
        return m_accounts.broker().usableVolume(m_info->m_strKey, market + code, operation, price);
    }

    /// Known for sales only.
    int getCanOrderVolume(const TC::CCodeOrderParam& record) override {
        const kit::COperation* operation = kit::findOperation(record.m_eOperationType);
        if (operation == nullptr || !isLimitedByPosition(*operation)) return TC::kUnsetInt;
        const CRecords& positions = getMapDataRef(knservice::kPositionTable);
        const auto found = positions.find(record.m_stock.m_strMarket + record.m_stock.m_strCode);
        if (found == positions.end()) return 0;
        const auto& position = static_cast<const knservice::CPositionStatics&>(*found->second);
        constexpr std::int64_t kMost = TC::kUnsetInt - 1;
        return static_cast<int>(std::min(position.m_nAvailableVolume, kMost));
    }

private:
    std::shared_ptr<const CRecords> read(int table) const {
        switch (table) {
        case knservice::kPositionTable:
            return std::make_shared<CRecords>(m_accounts.positionsOf(m_info));
        case knservice::kOrderTable:
            return std::make_shared<CRecords>(m_accounts.ordersOf(m_info->m_strKey));
        case knservice::kFeeTable:
            return m_accounts.feesOf(*m_info);
        default:
            return std::make_shared<CRecords>();
        }
    }

    const CPaperAccounts& m_accounts;
    const TC::CAccountInfoPtr m_info;
    std::mutex m_mutex;
    std::map<int, std::shared_ptr<const CRecords>> m_tables; ///< those that were asked for
};

} // namespace

int statusNumber(const CPaperOrder& order) {
    constexpr int kWaits = 50;
    constexpr int kPartCancelled = 53;
    constexpr int kCancelled = 54;
    constexpr int kPartFilled = 55;
    constexpr int kFilled = 56;
    constexpr int kRejected = 57;
    switch (order.m_eStatus) {
    case EOrderStatus::Working:
        return kWaits;
    case EOrderStatus::PartFilled:
        return kPartFilled;
    case EOrderStatus::Filled:
        return kFilled;
    case EOrderStatus::Cancelled:
        return order.m_nFilled > 0 ? kPartCancelled : kCancelled;
    case EOrderStatus::Rejected:
        break;
    }
    return kRejected;
}

CPaperOrderDetail::CPaperOrderDetail(const CPaperOrder& order) : m_strAccount(order.m_strAccount) {
    m_strOrderSysID = std::to_string(order.m_nId);
    m_nStatus = statusNumber(order);
}

boost::shared_ptr<knservice::CAccountData> CPaperAccounts::of(const std::string& accountKey) const {
    const TC::CAccountPtr account = m_user.getAccountData(QString::fromStdString(accountKey));
    return account ? boost::make_shared<CPaperAccountData>(*this, account->toInfo()) : nullptr;
}

std::string CPaperAccounts::keyOf(const std::string& id, int brokerType) const {
    std::string byKey;
    for (const TC::CAccountPtr& account : m_user.getAccounts()) {
        const TC::CAccountInfoPtr info = account->toInfo();
        if (info->m_nBrokerType != brokerType) continue;
        if (displayIdOf(*info) == id) return info->m_strKey;
        if (info->m_strKey == id) byKey = id;
    }
    return byKey;
}

CPaperAccounts::CRecords CPaperAccounts::positionsOf(const TC::CAccountInfoPtr& account) const {
    CRecords records;
    for (const CPaperPosition& held : m_broker.booksOf(account->m_strKey).m_positions) {
        // A short position cannot be sold.
        if (held.m_nVolume <= 0 || held.m_eSide == EPositionSide::Short) continue;
        const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(held.m_strStock);
        if (instrument) records.emplace(held.m_strStock, makePosition(held, *instrument, account));
    }
    return records;
}

CPaperAccounts::CRecords CPaperAccounts::ordersOf(const std::string& accountKey) const {
    CRecords records;
    for (const CPaperOrder& order : m_broker.ordersOf(accountKey))
        records.emplace(orderKey(order.m_nId), boost::make_shared<CPaperOrderDetail>(order));
    return records;
}

std::shared_ptr<const CPaperAccounts::CRecords>
CPaperAccounts::feesOf(const TC::CAccountInfo& account) const {
    const std::lock_guard lock(m_mutex);
    std::shared_ptr<const CRecords>& fees = m_fees[account.m_strKey];
    if (fees) return fees;
    CRecords records;
    for (const TC::CInstrumentDetailPtr& instrument :
         m_exchange.heldBy(static_cast<TC::EQDBrokerType>(account.m_nBrokerType))) {
        const auto fee = boost::make_shared<knservice::CInstrumentFee>();
        fee->m_instrument = instrument;
        records.emplace(knservice::CInstrumentFee::genKey(*instrument, account), fee);
    }
    return fees = std::make_shared<CRecords>(std::move(records));
}

knservice::CAccountDetailPtr CPaperAccounts::detailOf(const std::string& accountKey) const {
    const auto detail = boost::make_shared<knservice::CAccountDetail>();
    if (const std::optional<CMoney> assets = assetsOf(m_broker.booksOf(accountKey), m_quotes)) {
        detail->m_dAssetForRatio = fromMoney(*assets);
        detail->m_dAssetCheck = detail->m_dAssetForRatio;
        detail->m_dBasketAsset = detail->m_dAssetForRatio;
    }
    return detail;
}

} // namespace desk
