#include "orderservice/platform/DataCenter.h"

namespace knservice {

const std::map<std::string, boost::shared_ptr<IData>>& CAccountData::getMapDataRef(int) {
    static const std::map<std::string, boost::shared_ptr<IData>> kEmpty;
    return kEmpty;
}

} // namespace knservice
