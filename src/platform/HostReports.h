#pragma once

#include "orderservice/base/Export.h"

#include <QString>

#include <utility>

/// Reports for the places where an exception of the host must be stopped: the library's thread functions and
/// its public operations. None of the functions throws. Any thread may call them.
namespace TC {

/// Shows the text as a note to the user. If the message panel fails, the text and the cause go to the audit
/// and also to the log, because an audit may store nothing. If logging is off, the standard error stream
/// replaces the log. While the host handles a report, it may cause another report on the same thread. That
/// second report goes to the log only.
ORDERSERVICE_EXPORT void reportSafely(const QString& text) noexcept;

/// The text of the current exception. For a CHostError it names the service and the operation. Call it in a
/// catch block only.
ORDERSERVICE_EXPORT QString exceptionText() noexcept;

/// Reports the text, followed by the current exception. The text says what was not done. Call it in a catch
/// block only.
ORDERSERVICE_EXPORT void reportFailure(const QString& text) noexcept;

/// Runs the body. If it throws, reports `text` and the exception and returns false.
template<typename Body>
bool runGuarded(const QString& text, Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        reportFailure(text);
        return false;
    }
}

} // namespace TC
