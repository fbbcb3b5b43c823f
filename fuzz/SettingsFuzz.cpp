// Reads any bytes as the JSON text of an interface. There must be no crash. If the text can be read, it must
// be written as a text that reads back to the same value.
#include "orderservice/records/TradeInterface.h"

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

/// Checks that the text of a document can be read and is then written unchanged. The first write may narrow a
/// number or leave out a value without a JSON form. The second write may change nothing.
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
