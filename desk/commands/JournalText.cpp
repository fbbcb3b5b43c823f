#include "desk/commands/JournalText.h"

#include "desk/commands/PlainText.h"
#include "desk/journal/Json.h"
#include "orderservice/base/FindRow.h"
#include "orderservice/kit/Operations.h"
#include "orderservice/records/Families.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace desk {
namespace {

/// Returns a value as a word: a text without quotes, "-" for null or a missing value, otherwise JSON. All
/// values from the journal must go through this function, because it removes control characters.
std::string word(const CJson& object, const char* key) {
    const auto value = object.is_object() ? object.find(key) : object.end();
    if (value == object.end() || value->is_null()) return "-";
    return withoutControls(value->is_string() ? value->get<std::string>() : value->dump());
}

/// Returns `other` if the value is missing or is not an integer.
std::int64_t number(const CJson& object, const char* key, std::int64_t other = 0) {
    const auto value = object.is_object() ? object.find(key) : object.end();
    return value != object.end() && value->is_number_integer() ? value->get<std::int64_t>() : other;
}

const kit::COperation* operationOf(const CJson& object) {
    constexpr std::int64_t kNone = -1;
    const auto operation = static_cast<int>(number(object, "operation_type", kNone));
    return kit::findOperation(static_cast<TC::EOperationType>(operation));
}

std::string operationWord(const CJson& object) {
    const kit::COperation* known = operationOf(object);
    return known != nullptr ? known->m_pszWord : "operation " + word(object, "operation_type");
}

/// Returns the name of a command's product family, or its number if it has no name.
std::string familyWord(const CJson& object) {
    const auto family =
        std::find_if(TC::kFamilies, TC::kFamilies + TC::kFamilyCount, [&](const TC::CFamily& row) {
            return static_cast<int>(row.m_eTraderType) == number(object, "trader_type");
        });
    return family != TC::kFamilies + TC::kFamilyCount ? family->m_pszName : word(object, "trader_type");
}

/// Returns the value with `lead` before it; empty if there is no value.
std::string optional(const char* lead, const CJson& object, const char* key) {
    const std::string text = word(object, key);
    return text.empty() || text == "-" ? std::string() : lead + text;
}

/// Returns the price with a leading blank; empty if nothing is bought or sold.
std::string priceText(const CJson& object) {
    const std::string price = word(object, "price");
    const kit::COperation* known = operationOf(object);
    if (known != nullptr && known->m_eSide == kit::ETradeSide::None) return {};
    return price == "-" ? " at market" : " @ " + price;
}

/// The elements of a list; empty if the key is missing or has no list.
const CJson& listOf(const CJson& record, const char* key) {
    static const CJson kNone = CJson::array();
    const auto found = record.find(key);
    return found != record.end() && found->is_array() ? *found : kNone;
}

/// Writes one record of a command, without what is before and after it on the line.
void showCode(std::ostream& out, const CJson& code) {
    const CJson stock = code.is_object() ? code.value("stock", CJson::object()) : CJson::object();
    out << word(code, "account") << "  " << operationWord(code) << ' ' << word(code, "volume")
        << optional(" ", stock, "market") << optional("", stock, "code") << optional(" ", stock, "name")
        << priceText(code) << " (price type " << word(code, "price_type") << ')';
}

void showCommand(std::ostream& out, const CJson& record) {
    const CJson& codes = listOf(record, "codes");
    if (record.contains("task"))
        out << (record["task"].is_null() ? "no task" : "task " + word(record, "task")) << ", ";
    out << "family " << familyWord(record) << ", " << codes.size()
        << (codes.size() == 1 ? " order" : " orders") << optional(", remark: ", record, "remark");
    if (word(record, "force_confirm") == "true") out << ", to be confirmed";
    for (const CJson& code : codes) {
        out << "\n    ";
        showCode(out, code);
    }
}

void showConfirmation(std::ostream& out, const CJson& record) {
    out << word(record, "event");
    if (word(record, "event") != "asked") {
        out << " by " << word(record, "by") << ", question #" << word(record, "question");
        return;
    }
    const CJson& rows = listOf(record, "rows");
    out << ", " << rows.size() << (rows.size() == 1 ? " order: " : " orders: ") << word(record, "title");
    for (const CJson& row : rows) {
        out << "\n    ";
        showCode(out, row);
        out << optional(", remark: ", row, "remark");
    }
}

void showOrder(std::ostream& out, const CJson& record) {
    out << word(record, "order") << " of task " << word(record, "task") << ": " << word(record, "account")
        << ' ' << operationWord(record) << ' ' << word(record, "volume") << optional(" ", record, "stock")
        << priceText(record) << ": " << word(record, "status") << ", filled " << word(record, "filled")
        << optional(": ", record, "reason");
}

void showFill(std::ostream& out, const CJson& record) {
    out << word(record, "fill") << " of order " << word(record, "order") << ": " << word(record, "account")
        << ' ' << operationWord(record) << ' ' << word(record, "volume") << optional(" ", record, "stock")
        << priceText(record);
}

void showIntake(std::ostream& out, const CJson& record) {
    out << "channel " << word(record, "channel") << ": " << word(record, "orders") << " orders in "
        << word(record, "lines") << " lines of " << word(record, "source");
    if (number(record, "unread_params") != 0)
        out << ", " << word(record, "unread_params") << " orderParam lines NOT UNDERSTOOD";
    if (number(record, "ignored_lines") != 0)
        out << ", " << word(record, "ignored_lines") << " lines WITHOUT EFFECT, the first is "
            << word(record, "first_ignored");
    if (word(record, "left_over") == "true") out << ", LEFT OVER: " << word(record, "cause");
    if (word(record, "rejected") == "true") out << ", REFUSED: " << word(record, "cause");
    if (word(record, "left_waiting") == "true") out << ", LEFT WAITING: " << word(record, "cause");
    if (word(record, "cut_short") == "true") out << ", CUT SHORT at " << word(record, "cause");
    out << optional(", kept as ", record, "kept_as");
}

void showDoor(std::ostream& out, const CJson& record) {
    out << word(record, "source") << ' ' << word(record, "event");
    if (word(record, "event") == "opened")
        out << (word(record, "loopback") == "true" ? ", for this machine only" : ", FOR OTHER MACHINES TOO");
    out << optional(", ", record, "peer") << optional(": ", record, "cause");
}

void showIncident(std::ostream& out, const CJson& record) {
    out << word(record, "event") << optional(", channel ", record, "channel");
    if (number(record, "orders") != 0) out << ", " << word(record, "orders") << " orders";
    out << optional(", task ", record, "task") << optional(", rows ", record, "rows")
        << optional(", first ", record, "code") << optional(": ", record, "cause");
}

void showMessage(std::ostream& out, const CJson& record) {
    out << word(record, "text");
}

void showTradeError(std::ostream& out, const CJson& record) {
    out << word(record, "text") << optional(" (", record, "title")
        << (word(record, "title") == "-" ? "" : ")") << optional(", command #", record, "command");
}

void showStrategy(std::ostream& out, const CJson& record) {
    out << word(record, "action") << " channel " << word(record, "channel") << ' ' << word(record, "name")
        << optional(", source ", record, "signal_source")
        << optional(", account ", record, "selected_account") << optional(": ", record, "cause");
}

void showCancelTask(std::ostream& out, const CJson& record) {
    out << "task " << word(record, "task") << ", operation " << word(record, "operation")
        << optional(", by ", record, "user_name") << optional(", ", record, "remark");
}

void showStarted(std::ostream& out, const CJson& record) {
    out << "process " << word(record, "pid");
    if (word(record, "recovered") == "true" || word(record, "after_crash") == "true")
        out << ", after a crash";
}

void showContinued(std::ostream& out, const CJson& record) {
    out << "THE FILE CHANGED: " << word(record, "cause");
}

void showDiscarded(std::ostream& out, const CJson& record) {
    out << "channel " << word(record, "channel") << ": NOT READ: " << word(record, "source") << ", "
        << word(record, "lines") << " lines: " << word(record, "cause");
}

void showUnplaced(std::ostream& out, const CJson& record) {
    out << "channel " << word(record, "channel") << ": NOT PROCESSED: " << word(record, "order");
}

void showCall(std::ostream& out, const CJson& record) {
    out << word(record, "event");
    if (word(record, "event") == "asked") {
        out << ": " << word(record, "function") << ' ' << word(record, "param")
            << optional(", algorithm ", record, "algo");
        return;
    }
    out << optional(", call #", record, "call");
    for (const CJson& task : listOf(record, "tasks"))
        out << ", task " << task.dump();
    out << optional(", cancels ", record, "cancels") << optional(": ", record, "cause");
    for (const CJson& failure : listOf(record, "failures"))
        out << "\n    " << word(failure, "text");
}

struct CKindText {
    const char* m_pszKind;
    void (*m_pfnShow)(std::ostream&, const CJson&);
};

constexpr CKindText kKindTexts[] = {
    {"started", showStarted},
    {"strategy", showStrategy},
    {"intake", showIntake},
    {"door", showDoor},
    {"message", showMessage},
    {"trade_error", showTradeError},
    {"command", showCommand},
    {"order", showOrder},
    {"fill", showFill},
    {"cancel_task", showCancelTask},
    {"continued", showContinued},
    {"discarded", showDiscarded},
    {"unplaced", showUnplaced},
    {"incident", showIncident},
    {"confirmation", showConfirmation},
    {"call", showCall},
};

/// For record kinds without their own text: shows every key except those at the start of the line.
void showKeys(std::ostream& out, const CJson& record) {
    const char* separator = "";
    for (const auto& [key, value] : record.items()) {
        if (key == "kind" || key == "time" || key == "seq") continue;
        out << separator << withoutControls(key) << ' ' << word(record, key.c_str());
        separator = ", ";
    }
}

void showRecord(std::ostream& out, const CJson& record) {
    const std::string kind = word(record, "kind");
    std::string time = word(record, "time");
    std::replace(time.begin(), time.end(), 'T', ' ');
    out << time << "  #" << word(record, "seq") << "  " << kind << "  ";
    const CKindText* found =
        utils::findRow(kKindTexts, [&](const CKindText& row) { return kind == row.m_pszKind; });
    (found != nullptr ? found->m_pfnShow : showKeys)(out, record);
}

} // namespace

std::string journalText(const CJournalLine& line) {
    if (line.m_bDamaged) return "DAMAGED  " + withoutControls(line.m_strText) + '\n';
    std::ostringstream out;
    showRecord(out, CJson::parse(line.m_strText, nullptr, false));
    out << '\n';
    return out.str();
}

} // namespace desk
