#pragma once

#include "orderservice/base/Export.h"

namespace utils {

/// Sets the name of the calling thread for debuggers and process listings. The system uses the first 15
/// bytes.
ORDERSERVICE_EXPORT void setThreadName(const char* name);

/// Whether the calling thread is the one of QCoreApplication. False without an application.
ORDERSERVICE_EXPORT bool isMainThread();

/// Marks the calling thread as being inside the library during the object's lifetime. The library's thread
/// functions use it, and so do the operations that may call the host. It may be nested. Code of the host that
/// runs in a callback is inside the library too, and the library must not be released there.
class ORDERSERVICE_EXPORT CLibraryCall {
public:
    CLibraryCall();
    ~CLibraryCall();
    CLibraryCall(const CLibraryCall&) = delete;
    CLibraryCall& operator=(const CLibraryCall&) = delete;

    /// Whether the calling thread is inside the library.
    static bool isInProgress();
};

} // namespace utils
