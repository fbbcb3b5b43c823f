#include "orderservice/platform/MsgService.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/UserConfig.h"

namespace TC {

void showServiceMsg(const QString& text) {
    CMsgFlags flags;
    if (const CUserConfig* user = getUserConfig())
        flags = hostCall<&CUserConfig::getMsgFlags>.on(*user, EMsgTypeDef::General);
    hostCall<&CMsgService::showMsg>(text, EMsgTypeDef::General, MsgLevel::Note, flags.m_bFirst,
                                    flags.m_bSecond, QString());
}

} // namespace TC
