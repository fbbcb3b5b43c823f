#include "desk/host/PaperPositions.h"

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
    return boost::make_shared<kit::CTableData>(knservice::kPositionTable, std::move(records));
}

} // namespace desk
