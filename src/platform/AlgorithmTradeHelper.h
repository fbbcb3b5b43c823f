#pragma once

#include "platform/HostService.h"
#include "records/AlgorithmOrderSetting.h"
#include "records/CommandParam.h"
#include "records/Enums.h"

#include <string>
#include <vector>

namespace TC {

/// Parameter texts of algorithm orders. Any thread. Texts are UTF-8.
class CAlgorithmTradeHelper : public CHostService<CAlgorithmTradeHelper> {
public:
    static constexpr const char* kServiceName = "CAlgorithmTradeHelper";

    /// Reads a setting text into a new setting; false, and the pointer untouched, where it cannot.
    virtual bool getAlgOrderSettingFromString(const std::string& text,
                                              CAlgorithmOrderSettingPtr& setting) = 0;
    /// The parameter text of the order kind for these codes.
    virtual std::string getAlgParamsStr(EOrderType orderType, const CAlgorithmOrderSettingPtr& setting,
                                        const std::vector<CCodeOrderParam>& codes) = 0;
};

} // namespace TC
