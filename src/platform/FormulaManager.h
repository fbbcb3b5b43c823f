#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"

#include <boost/function.hpp>

#include <string>

namespace TC {

/// The engine that runs the user's formula models. A host without models leaves it out.
class ORDERSERVICE_EXPORT CFormulaManager : public CHostService<CFormulaManager> {
public:
    static constexpr const char* kServiceName = "CFormulaManager";
    /// Gets the name of a function and its parameter text, both in UTF-8.
    using COrderCallback = boost::function<void(std::string, std::string)>;

    /// Keeps the call-back that the models call to order and to cancel. It replaces an earlier one. Called
    /// once by COrderFuncService::init, on the main thread. Does not throw.
    ///
    /// The models may call it on any thread, also on several at once. It blocks its thread while an order
    /// waits for quotes. It throws what COrderFuncService::doParserOrder throws. After the release of
    /// COrderFuncService it does nothing.
    virtual void registerOrderCallBack(COrderCallback callback) = 0;
};

} // namespace TC
