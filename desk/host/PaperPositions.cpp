#include "desk/host/PaperPositions.h"

#include "orderservice/base/Unset.h"
#include "orderservice/kit/Operations.h"
#include "orderservice/kit/TableData.h"
#include "orderservice/records/Portfolio.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace desk {
namespace {

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

/// The positions with what the confirmation asks. A position limits sales only: what an account can buy
/// depends on its funds, and is not set.
class CPositionData : public kit::CTableData {
public:
    using CTableData::CTableData;

    int getCanOrderVolume(const TC::CCodeOrderParam& record) override {
        const kit::COperation* operation = kit::findOperation(record.m_eOperationType);
        if (operation == nullptr || operation->m_eSide != kit::ETradeSide::Sell ||
            (operation->m_eEffect != kit::EOperationEffect::Trade &&
             operation->m_eEffect != kit::EOperationEffect::Close) ||
            operation->m_eBooking == kit::EBooking::BorrowedShares)
            return TC::kUnsetInt;
        for (const auto& [key, data] : getMapData(knservice::kPositionTable)) {
            const auto* position = dynamic_cast<const knservice::CPositionStatics*>(data.get());
            if (position == nullptr || position->m_strMarket != record.m_stock.m_strMarket ||
                position->m_strCode != record.m_stock.m_strCode)
                continue;
            constexpr std::int64_t kMost = TC::kUnsetInt - 1;
            return static_cast<int>(std::min(position->m_nAvailableVolume, kMost));
        }
        return 0;
    }
};

} // namespace

boost::shared_ptr<knservice::CAccountData> CPaperPositions::of(const std::string& accountKey) const {
    const TC::CAccountPtr account = m_user.getAccountData(QString::fromStdString(accountKey));
    if (!account) return nullptr;
    kit::CTableData::CRecords records;
    for (const CPaperPosition& held : m_broker.positions()) {
        if (held.m_strAccount != accountKey || held.m_nVolume <= 0) continue;
        if (held.m_eSide == EPositionSide::Short) continue; // a short position cannot be sold
        const std::optional<CInstrumentEntry> instrument = m_quotes.instrument(held.m_strStock);
        if (instrument) records.emplace(held.m_strStock, makePosition(held, *instrument, account->toInfo()));
    }
    return boost::make_shared<CPositionData>(knservice::kPositionTable, std::move(records));
}

} // namespace desk
