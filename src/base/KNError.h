#pragma once

#include <string>
#include <utility>

namespace utils {

/// The result of an operation: an id, which is 0 for success, and a UTF-8 text for people. It is a plain
/// value. The host and the library both create it.
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
