#pragma once

#include "orderservice/base/KNError.h"

#include <optional>
#include <string>

namespace desk {

/// One call of a function.
struct CCallRequest {
    std::string m_strFunction;
    std::string m_strParam;            ///< the parameter text
    std::optional<std::string> m_algo; ///< the settings of an algorithm; not set if none were given
};

/// Reads a line of the control door: {"call": FUNCTION, "param": PARAM, "algo": PARAM}. A PARAM is a text,
/// which is passed on unchanged, or an object, which is written anew. "algo" may be missing. Fails for a line
/// that is not such an object in strict JSON: also for another key, a key that is there twice, and more than
/// 16 levels. Fails also if "algo" does not belong to the function (whyAlgoIsWrong).
[[nodiscard]] utils::KNError readCallRequest(const std::string& line, CCallRequest& request);

/// The line of a request, without a newline. The texts must be UTF-8.
std::string callRequestLine(const CCallRequest& request);

/// Why the call must not be carried out with its settings of an algorithm: smartalgopypassorder has none, or
/// another function has some. Both would be plain orders, which send their whole volume at once. Empty if
/// there is no reason.
std::string whyAlgoIsWrong(const CCallRequest& request);

/// Why the text cannot be a parameter: it is not one JSON object in UTF-8. Empty if it can.
std::string whyNoParam(const std::string& text);

} // namespace desk
