#pragma once

#include <QString>

#include <utility>

/// Reports for the edges of the library, where an exception of the host must go no further: the bodies of its
/// threads and its public operations. None of them throws, and any thread may call them.
namespace TC {

/// Shows the text as a note to the user. If the message panel fails, the audit and the log both get text and
/// cause, since an audit may keep nothing. While logging is off, the standard error stream takes the place of
/// the log. A report that the host causes while it takes another one on the same thread goes only there.
void reportSafely(const QString& text) noexcept;

/// What the exception in hand says; one of the host's names its service and operation. In a catch block only.
QString exceptionText() noexcept;

/// Reports the exception in hand behind the text, which says what was not done. In a catch block only.
void reportFailure(const QString& text) noexcept;

/// Runs the body; false, after a report behind `text`, if it throws.
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
