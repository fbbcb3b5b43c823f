#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Enums.h"

#include <QString>

namespace TC {

/// The client's message panel.
class ORDERSERVICE_EXPORT CMsgService : public CHostService<CMsgService> {
public:
    static constexpr const char* kServiceName = "CMsgService";

    /// Shows one message. Any thread; does not throw. The file thread calls it with the registry locked, and
    /// so do the start and the stop of a strategy. So it must not wait for a thread that may use the
    /// registry, such as the main thread. The text may have any content and any length. The two flags are the
    /// user's settings for the message type.
    virtual void showMsg(const QString& text, EMsgTypeDef type, MsgLevel level, bool flag1, bool flag2,
                         const QString& extra) = 0;
};

/// Shows a general message at note level, with the user's flags for that type. Any thread.
ORDERSERVICE_EXPORT void showServiceMsg(const QString& text);
/// Shows a message about a failed order at note level, with the user's flags for the type `flagsOf`. Any
/// thread.
ORDERSERVICE_EXPORT void showOrderFailureMsg(const QString& text, EMsgTypeDef flagsOf);

} // namespace TC
