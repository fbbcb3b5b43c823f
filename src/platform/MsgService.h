#pragma once

#include "platform/HostService.h"
#include "records/Enums.h"

#include <QString>

namespace TC {

/// The client's message panel. Any thread; the library calls it from the file thread with its mutex held, so
/// showMsg must not wait for a thread that may want a strategy.
class CMsgService : public CHostService<CMsgService> {
public:
    static constexpr const char* kServiceName = "CMsgService";

    /// Shows one message. The two flags are the user's settings for the message type.
    virtual void showMsg(const QString& text, EMsgTypeDef type, MsgLevel level, bool flag1, bool flag2,
                         const QString& extra) = 0;
};

/// A note of the order service to the user's panel: a general message at note level, with the user's flags
/// for such.
void showServiceMsg(const QString& text);

} // namespace TC
