#include "desk/journal/TornLine.h"

#include "desk/journal/Json.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

constexpr std::string_view kRecordHead = R"({"kind":")";

} // namespace

bool isRecord(std::string_view text) {
    const CJson record = CJson::parse(text, nullptr, false);
    return record.is_object() && record.contains("kind") && record["kind"].is_string();
}

std::size_t recordBehindTornLine(std::string_view line) {
    std::size_t place = line.find(kRecordHead, 1);
    // Nearly all lines return here without being parsed.
    if (place == std::string_view::npos || isRecord(line)) return 0;
    while (place != std::string_view::npos && !isRecord(line.substr(place)))
        place = line.find(kRecordHead, place + 1);
    return place == std::string_view::npos ? 0 : place;
}

} // namespace desk
