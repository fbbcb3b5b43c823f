#pragma once

#include "base/KNError.h"

#include <string>

namespace desk {

/// Holds a desk folder for one process, by a lock on FOLDER/.lock that the system drops with the process,
/// whatever ends it. The file stays and holds the process id of the last holder, for messages. One thread.
class CFolderLock {
public:
    CFolderLock() = default;
    ~CFolderLock();
    CFolderLock(const CFolderLock&) = delete;
    CFolderLock& operator=(const CFolderLock&) = delete;

    /// Fails where another process holds the folder, naming it, or where the file cannot be made.
    [[nodiscard]] utils::KNError acquire(const std::string& folder);

private:
    int m_nDescriptor = -1;
};

} // namespace desk
