#pragma once

#include "orderservice/base/KNError.h"

#include <string>

namespace desk {

/// The reason why a folder or a file in it cannot be locked, as a text for the user. `reason` is the errno of
/// the attempt.
std::string lockFailureText(int reason);

/// Holds a desk folder for one process, with a lock on the folder itself and a lock on FOLDER/.lock. The
/// system releases both locks when the process ends for any reason. If the file is removed, the lock on the
/// folder still keeps other desks out. The file also keeps out older desks, which lock only the file. It
/// contains the process id of the last holder, for messages. Not thread-safe.
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
