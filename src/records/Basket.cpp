#include "orderservice/records/Basket.h"

namespace TC {
namespace {

constexpr const char* kPriceKind = "m_nPriceKind";

} // namespace

bson::BSONObj CBasketHedgeParam::toBson() const {
    return bson::BSONObjBuilder().appendAllBut(kPriceKind, m_rest).append(kPriceKind, m_nPriceKind).obj();
}

void CBasketHedgeParam::bsonValueFromObj(const bson::BSONObj& obj) {
    (void)bson::readNumber(obj, kPriceKind, m_nPriceKind);
    m_rest = obj;
}

} // namespace TC
