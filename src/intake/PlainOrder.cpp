#include "orderservice/intake/PlainOrder.h"

#include "orderservice/base/StrictNumber.h"
#include "orderservice/base/Text.h"
#include "orderservice/records/OrderNumbers.h"
#include "orderservice/records/PriceCommands.h"

namespace TC {
namespace {

using utils::strictDouble;
using utils::strictInt;

QString text(std::string_view field) {
    return UW::sToQs(field.data(), field.size());
}

void readOptional(const CFields& fields, std::size_t index, int& value) {
    if (fields.has(index) && !fields[index].empty()) value = strictInt(fields[index]);
}

void readOptional(const CFields& fields, std::size_t index, double& value) {
    if (fields.has(index) && !fields[index].empty()) value = strictDouble(fields[index]);
}

void readCode(const CFields& fields, std::size_t index, CRecentCodes& codes, COrderSingleParam& line) {
    if (fields.has(index)) line.m_strCode = codes.codeOf(fields[index]);
}

/// A limit price is treated as given if its field exists, even if the field is empty.
void readLimit(const CFields& fields, std::size_t index, bool& given, double& limit) {
    if (!fields.has(index)) return;
    given = true;
    limit = fields[index].empty() ? kUnsetDouble : strictDouble(fields[index]);
}

void parseFutureForm(const CFields& fields, std::size_t next, CRecentCodes& codes, COrderParam& order) {
    if (!fields.has(next)) return;
    COrderSingleParam& line = setOnlyLine(order);
    line.m_dPrice = strictDouble(fields[next]);
    readCode(fields, next + 1, codes, line);
    readOptional(fields, next + 2, line.m_nVolume);
    readLimit(fields, next + 3, line.m_bHasFirstLimit, line.m_dFirstLimit);
    readLimit(fields, next + 4, line.m_bHasSecondLimit, line.m_dSecondLimit);
}

void parseAmountForm(const CFields& fields, std::size_t next, COrderParam& order) {
    if (!fields.has(next)) return;
    COrderSingleParam& line = setOnlyLine(order);
    line.m_dAmount = strictDouble(fields[next]);
}

/// Reads the account and, in a table row, the remark after it and the row's position.
void readAccount(const CFields& fields, std::size_t index, const CLineOrigin& source, COrderSingleParam& line,
                 COrderParam& order) {
    if (fields.has(index)) line.m_strAccount = text(fields[index]);
    if (!source.m_bTableRow) return;
    if (fields.has(index + 1)) order.m_strRemark = std::string(fields[index + 1]);
    line.m_nOverFreqMode = source.m_nRowPosition;
}

/// Reads the price command, which only a table row has, before its price. Returns the index of the price.
std::size_t readPriceCommand(const CFields& fields, std::size_t next, const CLineOrigin& source,
                             COrderSingleParam& line) {
    if (!source.m_bTableRow) return next;
    if (fields.has(next)) line.m_ePriceType = getPriceTypeByCmd(std::string(fields[next]));
    return next + 1;
}

void parseOptionForm(const CFields& fields, std::size_t next, const CLineOrigin& source, bool mayLackFields,
                     CRecentCodes& codes, COrderParam& order) {
    if (!mayLackFields && !fields.has(next)) return;
    COrderSingleParam& line = setOnlyLine(order);
    const std::size_t price = readPriceCommand(fields, next, source, line);
    if (fields.has(price)) line.m_dPrice = strictDouble(fields[price]);
    readCode(fields, price + 1, codes, line);
    if (fields.has(price + 2)) line.m_nVolume = strictInt(fields[price + 2]);
    readAccount(fields, price + 3, source, line, order);
}

void parseGeneralForm(const CFields& fields, std::size_t next, const CLineOrigin& source, CRecentCodes& codes,
                      COrderParam& order) {
    COrderSingleParam& line = setOnlyLine(order);
    const std::size_t price = readPriceCommand(fields, next, source, line);
    readOptional(fields, price, line.m_dPrice);
    readCode(fields, price + 1, codes, line);
    readOptional(fields, price + 2, line.m_nVolume);
    if (source.m_bTableRow) readAccount(fields, price + 3, source, line, order);
}

} // namespace

std::size_t firstOrderField(const CLineOrigin& source) {
    return source.m_bTableRow ? 1 : 2;
}

void parsePlainOrder(const CFields& fields, const CLineOrigin& source, CRecentCodes& codes,
                     COrderParam& order) {
    order.m_nOrderType = strictInt(fields[0]);
    order.m_nChannel = source.m_nChannel;
    order.m_eStrategyType = source.m_bTableRow ? EOrderStrategyType::BatchPending : EOrderStrategyType::File;
    if (!source.m_bTableRow) {
        const int channel = strictInt(fields[1]);
        if (!isUniversal(channel)) order.m_nChannel = channel;
    }
    const COrderNumber* row = findOrderNumber(order.m_nOrderType);
    if (row == nullptr) return;
    order.m_nTradeTypeOverride = static_cast<int>(row->m_eLineFamily);
    const std::size_t next = firstOrderField(source);
    switch (row->m_eLineForm) {
    case EOrderLineForm::Future:
        parseFutureForm(fields, next, codes, order);
        break;
    case EOrderLineForm::General:
        parseGeneralForm(fields, next, source, codes, order);
        break;
    case EOrderLineForm::Amount:
        parseAmountForm(fields, next, order);
        break;
    case EOrderLineForm::Option:
        parseOptionForm(fields, next, source, row->has(kFlagMayLackFields), codes, order);
        break;
    case EOrderLineForm::Whole:
    case EOrderLineForm::None:
        break;
    }
}

void readBasketRow(const CFields& fields, COrderSingleParam& row) {
    row.m_strCode = text(fields[0]);
    row.m_nVolume = strictInt(fields[1]);
    readOptional(fields, 2, row.m_dPrice);
    readOptional(fields, 3, row.m_eOperationType);
}

void readListRow(const CFields& fields, COrderSingleParam& row) {
    row.m_strCode = text(fields[0]);
    row.m_nVolume = strictInt(fields[1]);
    // The volume is a target. The basket check replaces the row by a buy or a sale, except if the account's
    // positions are not known: then the whole target is bought.
    row.m_eOperationType = static_cast<int>(EOperationType::Buy);
}

} // namespace TC
