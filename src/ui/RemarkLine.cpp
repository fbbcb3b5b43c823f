#include "orderservice/ui/RemarkLine.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/widgets/Resources.h"

#include <QRegularExpression>
#include <QRegularExpressionValidator>

namespace TC {
namespace {

constexpr int kRemarkWidth = 467;
constexpr int kLeastRemarkRemarkWidth = 120; ///< on a small screen
constexpr int kRemarkHeight = 22;
constexpr int kUserKindWithoutRemark = 200;
constexpr int kRemarkHintBit = 1;

/// Whether the user's settings let him change remarks.
bool isEditable() {
    const CUserConfig* user = getUserConfig();
    if (user == nullptr) return false;
    return hostCall<&CUserConfig::testHintBeforeOrderFlag>.on(*user, kRemarkHintBit) ||
           hostCall<&CUserConfig::testGlobalOrderHint>.on(*user, kRemarkHintBit);
}

} // namespace

bool CRemarkLine::isAllowed() {
    if (!luawrapper::isOrderSwitchOn(kCommandRemarkSwitch)) return false;
    const CUserConfig* user = getUserConfig();
    return user != nullptr && hostCall<&CUserConfig::getUserKind>.on(*user) != kUserKindWithoutRemark;
}

CRemarkLine::CRemarkLine(QWidget* parent) : CLineEdit(parent) {
    // \w has the letters of all languages, not only those of ASCII.
    const QRegularExpression form(QStringLiteral("^[\\w ,，.。!！?？]+$"),
                                  QRegularExpression::UseUnicodePropertiesOption);
    setValidator(new QRegularExpressionValidator(form, this));
    setEmptyHintText(QStringLiteral("请选择或输入指令备注"));
    setEmptyHintColor(UW::resourceColor(QStringLiteral("clr_disable_color")));
    setEmptyHintFont(UW::resourceFont(QStringLiteral("fnt_default_normal_fix")));
    setFixedHeight(kRemarkHeight);
    setMaximumWidth(kRemarkWidth);
    setEnabled(isEditable());
}

QSize CRemarkLine::sizeHint() const {
    return {kRemarkWidth, kRemarkHeight};
}

QSize CRemarkLine::minimumSizeHint() const {
    return {kLeastRemarkRemarkWidth, kRemarkHeight};
}

} // namespace TC
