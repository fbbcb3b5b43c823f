#include "desk/commands/CallDesk.h"

#include "desk/commands/PlainText.h"
#include "desk/config/FolderFiles.h"
#include "desk/door/CallReport.h"
#include "desk/door/ControlSocket.h"
#include "desk/host/Counted.h"
#include "desk/journal/Json.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>

#include <nlohmann/json.hpp>

#include <QString>

#include <filesystem>
#include <optional>
#include <ostream>
#include <set>
#include <system_error>

namespace desk {
namespace {

namespace asio = boost::asio;
using asio::local::stream_protocol;

constexpr int kSent = 0;
constexpr int kNothingSent = 1;
constexpr int kUsage = 2;
constexpr int kNoDesk = 3;
constexpr int kNoAnswer = 4;

constexpr const char* kUnknownOutcome = "it is not known what came of the call; look in the journal: ";

bool isUtf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<int>(text.size())).toUtf8().toStdString() == text;
}

/// Why the texts cannot be a call; empty if they can.
std::string mistakeIn(const CCallRequest& request) {
    if (request.m_strFunction.empty()) return "FUNCTION is empty";
    if (!isUtf8(request.m_strFunction)) return "FUNCTION is not UTF-8";
    if (const std::string why = whyNoParam(request.m_strParam); !why.empty())
        return "JSON cannot be used: " + why;
    if (const std::string why = whyAlgoIsWrong(request); !why.empty()) return why;
    if (!request.m_algo) return {};
    const std::string why = whyNoParam(*request.m_algo);
    return why.empty() ? std::string() : "the JSON of --algo cannot be used: " + why;
}

bool isDeskFolder(const std::string& folder) {
    std::error_code unreadable;
    return std::filesystem::exists(std::filesystem::path(folder) / kDeskFile, unreadable);
}

/// The answer without its newline; nothing if the desk has ended before it.
std::optional<std::string> ask(stream_protocol::socket& socket, const std::string& line) {
    boost::system::error_code error;
    // A desk that refuses the line answers before it has read all of it. So the answer is read even then.
    asio::write(socket, asio::buffer(line + '\n'), error);
    std::string received;
    const std::size_t end = asio::read_until(socket, asio::dynamic_buffer(received), '\n', error);
    if (error) return std::nullopt;
    return received.substr(0, end - 1);
}

std::string textOf(const CJson& object, const char* key) {
    const auto value = object.is_object() ? object.find(key) : object.end();
    return value != object.end() && value->is_string() ? withoutControls(value->get<std::string>())
                                                       : std::string();
}

/// The elements of a list; empty if the object has no list of this name.
CJson elementsOf(const CJson& answer, const char* key) {
    const auto found = answer.find(key);
    return found != answer.end() && found->is_array() ? *found : CJson::array();
}

void printMore(const CJson& answer, const std::string& key, const char* noun, std::ostream& out) {
    const auto more = answer.find(key);
    if (more != answer.end() && more->is_number_integer())
        out << "  and " << counted(more->get<std::int64_t>(), noun) << " more\n";
}

/// Calls `print` for each element of a list. The number of those that were left out is printed in their
/// place.
template<typename Print>
void printList(const CJson& answer, const char* key, const char* noun, std::ostream& out, Print print) {
    const CJson list = elementsOf(answer, key);
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (i == kFirstLines) printMore(answer, std::string("more_") + key, noun, out);
        print(list[i]);
    }
    if (list.size() <= kFirstLines) printMore(answer, std::string("more_") + key, noun, out);
}

/// One failure often has a message, a trade error and a call of the call-back with the same text.
void printMessages(const CJson& answer, std::ostream& out) {
    std::set<std::string> shown;
    const auto print = [&](const std::string& text, const std::string& line) {
        if (shown.insert(text).second) out << "  " << line << '\n';
    };
    printList(answer, "messages", "message", out, [&](const CJson& message) {
        const std::string text = textOf(message, "text");
        const std::string title = textOf(message, "title");
        print(text, title.empty() ? text : title + ": " + text);
    });
    printList(answer, "failures", "failure", out,
              [&](const CJson& failure) { print(textOf(failure, "text"), textOf(failure, "text")); });
}

std::string headline(const CJson& answer, const std::string& result) {
    const std::string cause = textOf(answer, "cause");
    const std::string why = cause.empty() ? std::string() : ": " + cause;
    if (result == kCallNotKnown) return "NOT KNOWN" + why;
    if (result != kCallSent) return "NOTHING SENT" + why;
    std::string text = "sent";
    for (const CJson& task : elementsOf(answer, "tasks"))
        text += (text == "sent" ? ": task " : ", task ") + task.dump();
    const auto cancels = answer.find("cancels");
    const std::int64_t count =
        cancels != answer.end() && cancels->is_number_integer() ? cancels->get<std::int64_t>() : 0;
    if (count > 0) text += (text == "sent" ? ": " : ", ") + counted(count, "cancel");
    return text + (cause.empty() ? std::string() : "; " + cause);
}

} // namespace

int printAnswer(const std::string& answer, std::ostream& out, std::ostream& err) {
    const CJson object = CJson::parse(answer, nullptr, false);
    const std::string result = textOf(object, "result");
    if (result.empty()) {
        err << "the answer of the desk cannot be read: " << withoutControls(answer) << '\n';
        return kNoAnswer;
    }
    out << headline(object, result) << '\n';
    printMessages(object, out);
    printList(object, "orders", "order", out, [&](const CJson& order) {
        out << "  " << withoutControls(order.is_string() ? order.get<std::string>() : order.dump()) << '\n';
    });
    if (result == kCallNotKnown) return kNoAnswer;
    return result == kCallSent ? kSent : kNothingSent;
}

int runCall(const std::string& folder, const CCallRequest& request, std::ostream& out, std::ostream& err) {
    if (const std::string mistake = mistakeIn(request); !mistake.empty()) {
        err << mistake << '\n';
        return kUsage;
    }
    if (!isDeskFolder(folder)) {
        err << folder << ": this is not a desk folder: it has no " << kDeskFile << '\n';
        return kNoDesk;
    }
    asio::io_context io;
    stream_protocol::socket socket(io);
    if (const utils::KNError connected = connectToControlSocket(folder, socket); !connected.isSuccess()) {
        err << connected.errorMsg() << '\n';
        return kNoDesk;
    }
    const std::optional<std::string> answer = ask(socket, callRequestLine(request));
    if (answer) return printAnswer(*answer, out, err);
    err << "the desk ended without an answer; " << kUnknownOutcome << "orderdesk journal " << folder << '\n';
    return kNoAnswer;
}

} // namespace desk
