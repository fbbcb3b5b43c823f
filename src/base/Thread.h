#pragma once

namespace utils {

/// Names the calling thread for debuggers and process listings; the system keeps the first 15 bytes.
void setThreadName(const char* name);

} // namespace utils
