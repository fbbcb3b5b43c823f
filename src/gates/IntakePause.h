#pragma once

#include "orderservice/base/Export.h"

namespace TC {

/// Pauses the file intake during its lifetime; the files wait at their paths. It is used while a confirmation
/// dialog is open, and by a host that cannot record its actions. Several pauses may exist at the same time,
/// on any threads.
class ORDERSERVICE_EXPORT CIntakePause {
public:
    CIntakePause();
    ~CIntakePause();
    CIntakePause(const CIntakePause&) = delete;
    CIntakePause& operator=(const CIntakePause&) = delete;

    /// Whether any pause exists in this process. Any thread.
    static bool isPaused();
};

} // namespace TC
