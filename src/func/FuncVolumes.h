#pragma once

#include "orderservice/records/Enums.h"

#include <QString>

#include <cstdint>
#include <limits>
#include <string>

/// The volumes of function trading, in shares or lots. Prices and money are in currency units, codes are full
/// keys. Any thread. An exception of the host leaves these functions as a CHostError.
namespace TC {

/// A usable volume without a limit.
inline constexpr std::int64_t kNoVolumeLimit = std::numeric_limits<std::int64_t>::max();

/// The volume that the account can order. 0 if the account is not logged in or has no data, or if the
/// instrument is unknown.
std::int64_t getCanOrderVolume(const std::string& accountKey, EOperationType op, const QString& code,
                               double price);

/// The volume for a ratio of the account: of its assets for the order types 1113 and 1213, otherwise of what
/// it can order. It is never more than the account can order, and is rounded down to whole trading units. 0
/// as for getCanOrderVolume, and if a needed figure is missing.
std::int64_t getAccountPercentNum(const std::string& accountKey, EOperationType op, int orderType,
                                  const QString& code, double price, double percent);

/// The account's asset figure for baskets of stocks, in currency units. Not set if it is not known, or if the
/// account is not logged in.
double getBasketAsset(const std::string& accountKey);

/// The number without its fraction. Beyond 64 bits it is kNoVolumeLimit with its sign, and 0 for no number.
std::int64_t wholeNumber(double value);

/// The number of contracts that the money buys at the price, for an account that has a fee record of the
/// instrument. 0 if a needed figure is missing. A number that no order can hold becomes 2147483646, with its
/// sign.
int getAccountFuturesNum(const std::string& accountKey, const QString& code, double money, double price);

/// The legal volume: rounded down to the unit. A sale of everything that can be sold, and a purchase of 200
/// or more with the operation 1043, are not rounded. A unit below 1 is treated as 1.
std::int64_t calcRightOrderVolume(EOperationType op, std::int64_t volume, int unit, std::int64_t canVolume);

} // namespace TC
