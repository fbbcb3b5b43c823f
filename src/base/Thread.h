#pragma once

namespace utils {

/// Names the calling thread for debuggers and process listings; the system keeps the first 15 bytes.
void setThreadName(const char* name);

/// Marks the calling thread as being inside the library for as long as the object lives: in the body of one
/// of the library's threads, or in an operation that may call the host. May nest. What the host does in a
/// call-back it does inside the library, where the library cannot be ended.
class CLibraryCall {
public:
    CLibraryCall();
    ~CLibraryCall();
    CLibraryCall(const CLibraryCall&) = delete;
    CLibraryCall& operator=(const CLibraryCall&) = delete;

    /// Whether the calling thread is inside the library.
    static bool isInProgress();
};

} // namespace utils
