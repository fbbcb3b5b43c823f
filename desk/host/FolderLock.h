#pragma once

#include "base/KNError.h"

#include <string>

namespace desk {

/// Why a folder or a file in it cannot be locked, for people. `reason` is the errno of the attempt.
std::string lockFailureText(int reason);

/// Holds a desk folder for one process, by locks on the folder itself and on FOLDER/.lock. The system drops
/// them with the process, whatever ends it. Removing the file lets nobody in: the folder stays locked. The
/// file keeps out desks of before the folder was locked too, and holds the process id of its last holder, for
/// messages. One thread.
class CFolderLock {
public:
    CFolderLock() = default;
    ~CFolderLock();
    CFolderLock(const CFolderLock&) = delete;
    CFolderLock& operator=(const CFolderLock&) = delete;

    /// Fails if another process holds the folder, and names that process if the file is there. Fails too if
    /// folder or file cannot be locked.
    [[nodiscard]] utils::KNError acquire(const std::string& folder);

private:
    void release();

    int m_nFolder = -1; ///< descriptor of the folder
    int m_nFile = -1;   ///< descriptor of the file
};

} // namespace desk
