// Any bytes as the JSON text of an interface: no crash, and what can be read is written as a text that reads
// back to the same.
#include "records/TradeInterface.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

std::optional<bson::BSONObj> parse(const std::string& text) {
    try {
        return bson::fromjson(text);
    } catch (const bson::CJsonError&) {
        return std::nullopt;
    }
}

/// Whether the text of a document can be read and is written the same once more. The first writing may narrow
/// a number or leave out what JSON has no form for; the second may change nothing.
void checkDocument(const bson::BSONObj& object) {
    const std::string text = object.jsonString();
    if (text.find('\n') != std::string::npos) std::abort();
    const std::optional<bson::BSONObj> again = parse(text);
    if (!again || again->jsonString() != text) std::abort();
}

void checkInterface(const std::string& text) {
    knservice::TradeInterfaceData record;
    try {
        record.fillFromJson(text);
    } catch (const bson::CError&) {
        return;
    }
    knservice::TradeInterfaceData again;
    again.fillFromJson(record.toJson());
    if (again.toJson() != record.toJson()) std::abort();
    if (again.whitelist.size() != record.whitelist.size()) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (const std::optional<bson::BSONObj> object = parse(text)) checkDocument(*object);
    checkInterface(text);
    return 0;
}
