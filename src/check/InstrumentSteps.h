#pragma once

#include "orderservice/base/Unset.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/Instrument.h"
#include "orderservice/records/OrderSetting.h"

#include <QString>

#include <boost/shared_ptr.hpp>

namespace TC {

/// The state of one instrument while its records are made: what is traded, how, and at which price. It needs
/// no order, no strategy and no list of accounts, so that orders of every kind can use it. The steps below
/// fill the members from top to bottom.
struct CInstrumentRun {
    EOperationType op = unsetEnum<EOperationType>();
    COrderSetting setting{};
    QString code{};
    CInstrumentDetailPtr detail{};                   ///< null if the instrument is unknown
    boost::shared_ptr<CQuoteRequest> quoteRequest{}; ///< held so that quotes continue to arrive
    CCodeOrderParam record{};                        ///< the values that all records of the instrument share
    CPriceDataPtr priceData{};
    double calcPrice = kUnsetDouble;
    double orderPrice = kUnsetDouble;

    const CStockInfo& stock() const { return record.m_stock; }
};

/// Whether an order that specifies its price waits for a quote.
enum class EQuoteWait {
    UnlessSpecified, ///< it does not wait
    AlsoSpecified,   ///< it waits until there is any quote
};

/// The steps. None of them reports anything to the user. They run on the caller's thread; only waitForQuote
/// blocks it. An exception of the host leaves them as a CHostError.

/// A limit that is not finite is treated as not set, whatever its source.
void clearUnusableLimits(COrderSetting& setting);

/// Subscribes to the quotes of the instrument. The caller holds the result until it has finished with the
/// instrument.
boost::shared_ptr<CQuoteRequest> requestQuotes(const QString& code);
/// Subscribes to the quotes of run.code, reads its data and starts its record.
void loadInstrument(CInstrumentRun& run);
/// Sets operation and the user's name in run.record, which is copied for each record. The caller sets its
/// instrument.
void startRecord(CInstrumentRun& run, EOperationType op);

/// The prices of a quote: not set if there is no quote or if the price is not finite.
double originPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op);
double calcPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType);
double orderPriceOf(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op, int orderType);
double fallbackPriceOf(const CPriceDataPtr& quote);

/// Whether the quote has a price of the type. For the types Specified and NoQuote, which do not take the
/// price from the quote, any quote is usable.
bool isQuoteUsable(const CPriceDataPtr& quote, EPriceType priceType, EOperationType op);
/// Returns the quote of a key. Waits up to two seconds until it has a price of the type.
CPriceDataPtr waitForQuote(const QString& stockKey, EPriceType priceType, EOperationType op, EQuoteWait rule);

/// Whether the price is given and not zero. Only exactly DBL_MAX means "not set" here, without the tolerance
/// of isInvalidPrice. Files may contain "nan" or "inf" as a number. Neither is a price, and an order with it
/// is refused: no order can be filled at an infinite price, and the host could treat it as a market price.
bool isPriceGiven(double price);
/// Whether the instrument has not traded today. False without a quote, and if the order specifies its price.
bool isSuspended(const CInstrumentRun& run);

/// The volume that the amount of money, in currency units, buys at the run's price. It is not rounded to
/// units. Not set if the amount or the price cannot be used. fixedPrice: if set, it replaces the price in the
/// division; the run's price must still be usable.
int volumeForMoney(const CInstrumentRun& run, double amount, double fixedPrice = kUnsetDouble);
/// Rounds down to whole trading units of the run's instrument. A volume that is not set stays not set.
int roundToUnit(const CInstrumentRun& run, int volume);

/// Fills a record, which is a copy of run.record, for one account: setting, price, account, volume and
/// instrument. volume: shares or lots.
void stampRecord(const CInstrumentRun& run, EOperationType op, const CAccountInfoPtr& account, int volume,
                 EPositionType positionType, CCodeOrderParam& record);

} // namespace TC
