#include "desk/door/CallRequest.h"

#include "desk/journal/Json.h"

#include <nlohmann/json.hpp>

#include <QString>

#include <set>
#include <stdexcept>
#include <vector>

namespace desk {
namespace {

/// Writing a deep value needs much stack.
constexpr std::size_t kMostLevels = 16;

constexpr const char* kCallKey = "call";
constexpr const char* kParamKey = "param";
constexpr const char* kAlgoKey = "algo";

constexpr const char* kSmartFunction = "smartalgopypassorder";

/// A request that the library of JSON accepts, but the desk does not.
class CBadRequest : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Refuses deep values and keys that are there twice.
class CStrictness {
public:
    bool operator()(int, CJson::parse_event_t event, CJson& value) {
        switch (event) {
        case CJson::parse_event_t::object_start:
        case CJson::parse_event_t::array_start:
            if (m_keys.size() == kMostLevels)
                throw CBadRequest("it has more than " + std::to_string(kMostLevels) + " levels");
            m_keys.emplace_back();
            break;
        case CJson::parse_event_t::object_end:
        case CJson::parse_event_t::array_end:
            m_keys.pop_back();
            break;
        case CJson::parse_event_t::key:
            if (!m_keys.back().insert(value.get<std::string>()).second)
                throw CBadRequest("the key \"" + value.get<std::string>() + "\" is there twice");
            break;
        case CJson::parse_event_t::value:
            break;
        }
        return true;
    }

private:
    std::vector<std::set<std::string>> m_keys; ///< of each object or list that is open
};

/// The object that the text is. Throws std::exception with the reason if the text is not an object.
CJson parseObject(const std::string& text) {
    CStrictness strictness;
    CJson object = CJson::parse(text, [&](int depth, CJson::parse_event_t event, CJson& value) {
        return strictness(depth, event, value);
    });
    if (!object.is_object()) throw CBadRequest("it is not an object");
    return object;
}

std::string paramText(const CJson& value, const char* key) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_object()) return value.dump();
    throw CBadRequest("\"" + std::string(key) + "\" must be a text or an object");
}

CCallRequest requestOf(const CJson& object) {
    CCallRequest request;
    for (const auto& [key, value] : object.items()) {
        if (key == kCallKey && !value.is_string()) throw CBadRequest("\"call\" must be a text");
        if (key == kCallKey)
            request.m_strFunction = value.get<std::string>();
        else if (key == kParamKey)
            request.m_strParam = paramText(value, kParamKey);
        else if (key == kAlgoKey)
            request.m_algo = paramText(value, kAlgoKey);
        else
            throw CBadRequest("the key \"" + key + "\" is unknown");
    }
    for (const char* key : {kCallKey, kParamKey}) {
        if (!object.contains(key)) throw CBadRequest("\"" + std::string(key) + "\" is missing");
    }
    return request;
}

/// The message without the prefix that names the exception of the JSON library.
std::string reasonOf(const std::exception& error) {
    const std::string text = error.what();
    const std::size_t end = text.rfind("[json", 0) == 0 ? text.find("] ") : std::string::npos;
    return end == std::string::npos ? text : text.substr(end + 2);
}

} // namespace

utils::KNError readCallRequest(const std::string& line, CCallRequest& request) {
    try {
        request = requestOf(parseObject(line));
        const std::string why = whyAlgoIsWrong(request);
        return why.empty() ? utils::KNError() : utils::KNError(1, "the request is refused: " + why);
    } catch (const std::exception& error) {
        return {1, "the request cannot be read: " + reasonOf(error)};
    }
}

std::string callRequestLine(const CCallRequest& request) {
    CJson object{{kCallKey, request.m_strFunction}, {kParamKey, request.m_strParam}};
    if (request.m_algo) object[kAlgoKey] = *request.m_algo;
    return object.dump();
}

std::string whyAlgoIsWrong(const CCallRequest& request) {
    const QString function = QString::fromStdString(request.m_strFunction);
    if (function.compare(QLatin1String(kSmartFunction), Qt::CaseInsensitive) != 0)
        return request.m_algo ? "only smartalgopypassorder takes the settings of an algorithm (algo); " +
                                    request.m_strFunction + " would ignore them"
                              : std::string();
    if (request.m_algo && !request.m_algo->empty()) return {};
    return "smartalgopypassorder needs the settings of an algorithm (algo); without them it would be a plain "
           "order";
}

std::string whyNoParam(const std::string& text) {
    try {
        (void)parseObject(text);
        return {};
    } catch (const std::exception& error) {
        return reasonOf(error);
    }
}

} // namespace desk
