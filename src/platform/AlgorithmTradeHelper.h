#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/AlgorithmOrderSetting.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"

#include <string>
#include <vector>

namespace TC {

/// Reads and writes the parameter texts of algorithm orders. Any thread. Texts are UTF-8.
class ORDERSERVICE_EXPORT CAlgorithmTradeHelper : public CHostService<CAlgorithmTradeHelper> {
public:
    static constexpr const char* kServiceName = "CAlgorithmTradeHelper";

    /// Reads a setting text. Returns false if it cannot read the text; then `setting` is not used. On entry
    /// `setting` points to an empty record of the base class and is never null. The host fills this record or
    /// replaces it with its own record.
    virtual bool getAlgOrderSettingFromString(const std::string& text,
                                              CAlgorithmOrderSettingPtr& setting) = 0;
    /// Returns the parameter text for the order kind, the setting and the codes.
    virtual std::string getAlgParamsStr(EOrderType orderType, const CAlgorithmOrderSettingPtr& setting,
                                        const std::vector<CCodeOrderParam>& codes) = 0;
};

} // namespace TC
