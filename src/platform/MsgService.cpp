#include "orderservice/platform/MsgService.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/UserConfig.h"

namespace TC {
namespace {

void showNote(const QString& text, EMsgTypeDef type, EMsgTypeDef flagsOf) {
    CMsgFlags flags;
    if (const CUserConfig* user = getUserConfig())
        flags = hostCall<&CUserConfig::getMsgFlags>.on(*user, flagsOf);
    hostCall<&CMsgService::showMsg>(text, type, MsgLevel::Note, flags.m_bFirst, flags.m_bSecond, QString());
}

} // namespace

void showServiceMsg(const QString& text) {
    showNote(text, EMsgTypeDef::General, EMsgTypeDef::General);
}

void showOrderFailureMsg(const QString& text, EMsgTypeDef flagsOf) {
    showNote(text, EMsgTypeDef::OrderFailure, flagsOf);
}

} // namespace TC
