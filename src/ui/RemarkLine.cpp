#include "orderservice/ui/RemarkLine.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/widgets/Resources.h"

#include <QRegularExpression>
#include <QRegularExpressionValidator>

#include <algorithm>

namespace TC {
namespace {

constexpr int kRemarkWidth = 467;
constexpr int kLeastRemarkWidth = 120; ///< on a small screen
constexpr int kRemarkHeight = 22;
constexpr int kUserKindWithoutRemark = 200;
const char* const kToolTip = "修改不改变任何指令的备注";

/// Whether the user's settings let him change remarks.
bool isEditable() {
    bool isEditable = false;
    runGuarded(QStringLiteral("投资备注不能修改"), [&] {
        const CUserConfig* user = getUserConfig();
        isEditable =
            user != nullptr && (hostCall<&CUserConfig::testHintBeforeOrderFlag>.on(*user, kHintRemarks) ||
                                hostCall<&CUserConfig::testGlobalOrderHint>.on(*user, kHintRemarks));
    });
    return isEditable;
}

/// A pattern with the characters of a remark. \w has the letters of all languages, not only those of ASCII.
QRegularExpression patternOf(const QString& pattern) {
    return QRegularExpression(pattern, QRegularExpression::UseUnicodePropertiesOption);
}

/// The other characters of the text, sorted.
QString forbiddenIn(QString text) {
    static const QRegularExpression kAllowed = patternOf(QStringLiteral("[\\w ,，.。!！?？]"));
    text.remove(kAllowed);
    std::sort(text.begin(), text.end());
    return text;
}

} // namespace

bool CRemarkLine::isAllowed() {
    bool isAllowed = false;
    runGuarded(QStringLiteral("投资备注未显示"), [&] {
        if (!luawrapper::isOrderSwitchOn(kCommandRemarkSwitch)) return;
        const CUserConfig* user = getUserConfig();
        isAllowed =
            user != nullptr && hostCall<&CUserConfig::getUserKind>.on(*user) != kUserKindWithoutRemark;
    });
    return isAllowed;
}

CRemarkLine::CRemarkLine(QWidget* parent) : CLineEdit(parent) {
    setValidator(new QRegularExpressionValidator(patternOf(QStringLiteral("^[\\w ,，.。!！?？]+$")), this));
    connect(this, &QLineEdit::textEdited, this, &CRemarkLine::check);
    connect(this, &QLineEdit::textChanged, this, [this] { m_strLast = text(); });
    setToolTip(QString::fromUtf8(kToolTip));
    setEmptyHintText(QStringLiteral("请选择或输入指令备注"));
    setEmptyHintColor(UW::resourceColor(QStringLiteral("clr_disable_color")));
    setEmptyHintFont(UW::resourceFont(QStringLiteral("fnt_default_normal_fix")));
    setFixedHeight(kRemarkHeight);
    setMaximumWidth(kRemarkWidth);
    setEnabled(isEditable());
}

/// If the caller's remark has a forbidden character, the validator accepts all others too.
void CRemarkLine::check(const QString& edited) {
    const QString before = forbiddenIn(m_strLast), after = forbiddenIn(edited);
    if (std::includes(before.begin(), before.end(), after.begin(), after.end())) return;
    setText(QString(m_strLast));
}

QSize CRemarkLine::sizeHint() const {
    return {kRemarkWidth, kRemarkHeight};
}

QSize CRemarkLine::minimumSizeHint() const {
    return {kLeastRemarkWidth, kRemarkHeight};
}

} // namespace TC
