#pragma once

#include "orderservice/base/KNError.h"

#include <string>

namespace desk {

/// One call of a function.
struct CCallRequest {
    std::string m_strFunction;
    std::string m_strParam; ///< the parameter text
    std::string m_strAlgo;  ///< the settings of an algorithm; empty if there are none
};

/// Reads a line of the control door: {"call": FUNCTION, "param": PARAM, "algo": PARAM}. A PARAM is a text,
/// which is passed on unchanged, or an object, which is written anew. "algo" may be missing. Fails for a line
/// that is not such an object in strict JSON: also for another key, a key that is there twice, and more than
/// 16 levels.
[[nodiscard]] utils::KNError readCallRequest(const std::string& line, CCallRequest& request);

/// The line of a request, without a newline. The texts must be UTF-8.
std::string callRequestLine(const CCallRequest& request);

/// Why the text cannot be a parameter: it is not one JSON object in UTF-8. Empty if it can.
std::string whyNoParam(const std::string& text);

} // namespace desk
