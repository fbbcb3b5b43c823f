#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/AlgorithmTradeHelper.h"

namespace kit {

/// For a host without algorithm orders: no setting text is understood, and there is no parameter text. A host
/// with algorithms overrides both functions here, and isAlgoOrderType and getPlatformTypeByOrderType of its
/// trading rules. Any thread.
class ORDERSERVICE_EXPORT CAlgorithmTradeHelperBase : public TC::CAlgorithmTradeHelper {
public:
    bool getAlgOrderSettingFromString(const std::string&, TC::CAlgorithmOrderSettingPtr&) override {
        return false;
    }
    std::string getAlgParamsStr(TC::EOrderType, const TC::CAlgorithmOrderSettingPtr&,
                                const std::vector<TC::CCodeOrderParam>&) override {
        return {};
    }
};

} // namespace kit
