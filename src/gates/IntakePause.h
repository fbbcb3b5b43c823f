#pragma once

namespace TC {

/// Holds the file intake still for as long as it lives: files wait at their paths. Held while a confirmation
/// dialog is up, and by a host that cannot record what it would do. Several may live at once, on any threads.
class CIntakePause {
public:
    CIntakePause();
    ~CIntakePause();
    CIntakePause(const CIntakePause&) = delete;
    CIntakePause& operator=(const CIntakePause&) = delete;

    /// Whether any pause is held in this process.
    static bool isPaused();
};

} // namespace TC
