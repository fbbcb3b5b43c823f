#pragma once

#include "orderservice/base/Export.h"

namespace TC {

/// Pauses the file intake during its lifetime; the files wait at their paths. It is used by a host that
/// cannot record its actions. Several pauses may exist at the same time, on any threads.
class ORDERSERVICE_EXPORT CIntakePause {
public:
    CIntakePause();
    ~CIntakePause();
    CIntakePause(const CIntakePause&) = delete;
    CIntakePause& operator=(const CIntakePause&) = delete;

    /// Whether any pause exists in this process or the confirmation pause is set. Any thread.
    static bool isPaused();
};

/// The pause of the confirmation dialog: one flag of this process that also pauses the file intake. The
/// dialog sets it when it opens. Only its two buttons and the Escape key clear it. If the dialog is closed in
/// another way, the flag stays set until the next dialog is answered or the host clears it. Any thread.
ORDERSERVICE_EXPORT void setConfirmationPause(bool isSet);
/// Whether the flag is set. Any thread.
ORDERSERVICE_EXPORT bool isConfirmationPauseSet();

} // namespace TC
