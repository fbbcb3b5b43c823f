#include "orderservice/ui/BatchTraderType.h"

namespace TC {
namespace {

EQdTraderType s_batchTraderType = EQdTraderType::Stock;

} // namespace

void setBatchTraderType(EQdTraderType traderType) {
    s_batchTraderType = traderType;
}

EQdTraderType batchTraderType() {
    return s_batchTraderType;
}

bool isFutureLike(EQdTraderType traderType) {
    return traderType == EQdTraderType::FutureSpeculation || traderType == EQdTraderType::Gold ||
           traderType == EQdTraderType::FutureOption;
}

} // namespace TC
