#pragma once

#include "platform/AlgorithmTradeHelper.h"

namespace desk {

/// The desk has no algorithm orders: it understands no setting text of one.
class CDeskAlgorithmTradeHelper : public TC::CAlgorithmTradeHelper {
public:
    bool getAlgOrderSettingFromString(const std::string&, TC::CAlgorithmOrderSettingPtr&) override {
        return false;
    }
    std::string getAlgParamsStr(TC::EOrderType, const TC::CAlgorithmOrderSettingPtr&,
                                const std::vector<TC::CCodeOrderParam>&) override {
        return {};
    }
};

} // namespace desk
