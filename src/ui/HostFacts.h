#pragma once

#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/UserTables.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/ui/MoneyRule.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace TC {

/// What the host knows about an instrument.
struct CInstrumentFacts {
    QString m_strKey;                   ///< the host's key; empty if the record has no instrument
    std::optional<double> m_multiplier; ///< not set if it is not known
    bool m_bParPriced = false;
    CPriceDataPtr m_quote; ///< may be empty
    bool m_bQuoteRead = false;
    bool m_bFailed = false;      ///< a read of the instrument has thrown
    bool m_bQuoteFailed = false; ///< the read of the quote has thrown
};

/// What the host knows about an account.
struct CAccountFacts {
    CAccountProduct m_product;
    boost::shared_ptr<knservice::CAccountData> m_data; ///< may be empty
    bool m_bProductFailed = false;
    bool m_bDataFailed = false;
};

/// The host's answers for the rows of a table. Each instrument and each account is read once. A read that
/// throws leaves its value empty. All failures together give one report. Main thread.
class CHostFacts {
public:
    explicit CHostFacts(EQdTraderType traderType) : m_eTraderType(traderType) {}

    /// Without the quote, unless `quote` was called.
    const CInstrumentFacts& instrument(const CCodeOrderParam& record);
    /// The last known quote of the instrument. May be empty.
    CPriceDataPtr quote(const CCodeOrderParam& record);
    const CAccountFacts& account(const CCodeOrderParam& record);
    /// Money for one unit of volume and of price. Not set for a contract without a multiplier: a value that
    /// is wrong by a factor must not be shown.
    std::optional<CMoneyRule> moneyRule(const CCodeOrderParam& record);
    /// Whether the record repays an amount of money, which is in m_dQuantity. Not set if the host has failed
    /// to say so and the record may be such one.
    std::optional<bool> repaysMoney(const CCodeOrderParam& record);
    /// Takes this answer instead of asking the host.
    void setRepaysMoney(const CCodeOrderParam& record, bool isMoney) {
        m_repayments[record.m_eOperationType] = isMoney;
    }

    /// Another read of the host for the current row. Returns false if it has thrown.
    template<typename Body>
    bool read(Body&& body) noexcept {
        if (isRead(std::forward<Body>(body))) return true;
        m_bRowFailed = true;
        return false;
    }

    /// Ends the current row. Failures since the last row belong to this row.
    void endRow();
    /// Forgets the failures since the last row.
    void restartRow() { m_bRowFailed = false; }
    /// Reports how many rows are incomplete, with the first cause. Does nothing if all are complete.
    void report() const noexcept;

private:
    CInstrumentFacts& factsOf(const CCodeOrderParam& record);
    void keepFailure() noexcept;
    template<typename Body>
    bool isRead(Body&& body) noexcept {
        try {
            std::forward<Body>(body)();
            return true;
        } catch (...) {
            keepFailure();
            return false;
        }
    }

    const EQdTraderType m_eTraderType;
    std::map<std::pair<std::string, std::string>, CInstrumentFacts> m_instruments; ///< by market and code
    std::map<std::string, CAccountFacts> m_accounts;                               ///< by key
    std::map<EOperationType, std::optional<bool>> m_repayments;                    ///< not set: failed
    bool m_bRowFailed = false;
    int m_nFailedRows = 0;
    QString m_strCause;
};

} // namespace TC
