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

    /// Reads a setting text; false if it cannot. `setting` comes as an empty record of the base class, never
    /// null: the host fills it or puts a record of its own in its place. After false it is not used.
    virtual bool getAlgOrderSettingFromString(const std::string& text,
                                              CAlgorithmOrderSettingPtr& setting) = 0;
    /// The parameter text of the order kind for these codes.
    virtual std::string getAlgParamsStr(EOrderType orderType, const CAlgorithmOrderSettingPtr& setting,
                                        const std::vector<CCodeOrderParam>& codes) = 0;
};

} // namespace TC
