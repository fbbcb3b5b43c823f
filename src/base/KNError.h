#pragma once

#include <string>
#include <utility>

namespace utils {

/// What became of an operation: an id, 0 for success, and a text in UTF-8 for people. A plain value; a host
/// sets it, the library reads it.
class KNError {
public:
    KNError() = default;
    KNError(int errorId, std::string message) : m_nErrorId(errorId), m_strErrorMsg(std::move(message)) {}

    bool isSuccess() const { return m_nErrorId == 0; }
    int errorId() const { return m_nErrorId; }
    const std::string& errorMsg() const { return m_strErrorMsg; }

private:
    int m_nErrorId = 0;
    std::string m_strErrorMsg;
};

} // namespace utils
