#include "orderservice/platform/HostReports.h"

#include "orderservice/base/Log.h"
#include "orderservice/base/Text.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/UserConfig.h"

#include <cstdio>
#include <exception>

namespace TC {
namespace {

thread_local bool t_isReporting = false;

/// Marks the calling thread as being inside a report during its lifetime.
class CReporting {
public:
    CReporting() { t_isReporting = true; }
    ~CReporting() { t_isReporting = false; }
    CReporting(const CReporting&) = delete;
    CReporting& operator=(const CReporting&) = delete;
};

constexpr const char* kUnknownType = "an exception of an unknown type";
constexpr const char* kNoText = "an exception without a text";

/// what() of a host's exception may return null.
const char* textOf(const char* what) noexcept {
    return what != nullptr ? what : kNoText;
}

std::string hostErrorText(std::string_view operation, const char* cause) {
    std::string text(operation);
    return text.append(": ").append(textOf(cause));
}

/// The user's flags for a note. Returns the defaults if the host fails, because the text must be shown
/// anyway.
CMsgFlags noteFlags() noexcept {
    try {
        CUserConfig* user = getUserConfig();
        return user != nullptr ? hostCall<&CUserConfig::getMsgFlags>.on(*user, EMsgTypeDef::General)
                               : CMsgFlags();
    } catch (...) {
        return {};
    }
}

void logFailure(const QString& text) noexcept {
    try {
        const std::string line = text.toStdString();
        if (utils::CLogCenter::logEnabled())
            utils::CLogCenter::log(utils::ELogLevel::Error, utils::kStdFileLogger, nullptr, __FUNCTION__,
                                   line);
        else
            std::fprintf(stderr, "order service: %s\n", line.c_str());
    } catch (...) {
        std::fputs("order service: a report was lost\n", stderr);
    }
}

/// Records in the audit the text that the panel did not show. It does not use reportToAudit, because
/// reportToAudit reports its own failures to this file.
void recordFailure(const QString& text) noexcept {
    try {
        CIncidentReport report;
        report.m_eIncident = EIncident::HostFailed;
        report.m_strCause = text;
        hostCall<&CIntakeAudit::recordIncident>(report);
    } catch (...) {
        // keepFailure writes the text to the log too.
    }
}

/// Writes the text to the log too, because an audit may store nothing.
void keepFailure(const QString& text) noexcept {
    recordFailure(text);
    logFailure(text);
}

} // namespace

CHostError::CHostError(std::string_view operation, const char* cause)
    : std::runtime_error(hostErrorText(operation, cause)) {}

void throwHostError(std::string_view operation) {
    try {
        throw;
    } catch (const CHostError&) {
        throw;
    } catch (const std::exception& error) {
        throw CHostError(operation, error.what());
    } catch (...) {
        throw CHostError(operation, kUnknownType);
    }
}

QString exceptionText() noexcept {
    try {
        try {
            throw;
        } catch (const std::exception& error) {
            return QString::fromUtf8(textOf(error.what()));
        } catch (...) {
            return QString::fromUtf8(kUnknownType);
        }
    } catch (...) {
        return {}; // out of memory
    }
}

void reportSafely(const QString& text) noexcept {
    // If the panel causes a report for each message, the reports would recurse without end.
    if (t_isReporting) return logFailure(text);
    const CReporting reporting;
    try {
        const CMsgFlags flags = noteFlags();
        hostCall<&CMsgService::showMsg>(text, EMsgTypeDef::General, MsgLevel::Note, flags.m_bFirst,
                                        flags.m_bSecond, QString());
    } catch (...) {
        keepFailure(text + QStringLiteral(" (") + exceptionText() + QStringLiteral(")"));
    }
}

void reportFailure(const QString& text) noexcept {
    reportSafely(QStringLiteral("[接口单]　") + text + QStringLiteral(": ") + exceptionText());
}

} // namespace TC
