#pragma once

#include "platform/HostService.h"
#include "records/Enums.h"

#include <QString>

namespace TC {

/// The client's message panel.
class CMsgService : public CHostService<CMsgService> {
public:
    static constexpr const char* kServiceName = "CMsgService";

    /// Shows one message. Any thread. The file thread and the start and stop of a strategy call it with the
    /// registry locked: it must not wait for a thread that may want a strategy, such as the main thread. Does
    /// not throw. Any text may come, of any length. The two flags are the user's settings for the type.
    virtual void showMsg(const QString& text, EMsgTypeDef type, MsgLevel level, bool flag1, bool flag2,
                         const QString& extra) = 0;
};

/// Shows a general message at note level, with the user's flags for that type. Any thread.
void showServiceMsg(const QString& text);

} // namespace TC
