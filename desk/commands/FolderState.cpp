#include "desk/commands/FolderState.h"

#include "desk/config/FolderFiles.h"
#include "desk/host/Counted.h"
#include "desk/journal/JournalTail.h"
#include "orderservice/base/FileCount.h"
#include "orderservice/base/Text.h"
#include "orderservice/platform/Switches.h"

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace desk {
namespace {

namespace fs = std::filesystem;

constexpr int kNoLine = 0;

/// Size of a file; 0 if there is none or it cannot be read.
std::uintmax_t sizeOf(const fs::path& path) {
    std::error_code unreadable;
    const std::uintmax_t size = fs::file_size(path, unreadable);
    return unreadable ? 0 : size;
}

/// Why no order file can be at the path, or be taken from it; empty if it can.
std::string whyUnusable(const fs::path& path) {
    std::error_code unreadable;
    const fs::file_status status = fs::status(path, unreadable);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return " is not a file; the strategy does not start";
    const fs::path parent = path.parent_path();
    const fs::file_status folder = fs::status(parent, unreadable);
    if (!fs::exists(folder)) return {}; // the desk makes it
    if (!fs::is_directory(folder)) return " cannot be made: " + parent.string() + " is not a folder";
    if (::access(parent.c_str(), W_OK | X_OK) != 0)
        return " cannot be taken: the desk has no right to change the folder " + parent.string();
    return {};
}

class CFilesOfStrategy {
public:
    CFilesOfStrategy(const TC::COrderStrategyParam& strategy, bool isGuarded,
                     std::vector<CDiagnostic>& warnings)
        : m_strategy(strategy), m_bGuarded(isGuarded), m_warnings(warnings) {}

    void check() const {
        const std::string path = utils::toPathBytes(m_strategy.m_strSignalSource);
        if (const std::string reason = whyUnusable(path); !reason.empty()) return warn(path + reason);
        if (const auto waiting = utils::countFile(path); waiting && waiting->bytes != 0)
            warn(path + " waits with " + counted(waiting->lines, "line") +
                 "; the desk deletes it unread when it starts");
        const std::string taken = path + kTakenSuffix;
        if (const auto left = utils::countFile(taken); left && left->bytes != 0)
            warn(taken + " has " + counted(left->lines, "line") +
                 " that a desk has taken, and perhaps not read to the end; it is " +
                 (m_bGuarded ? "moved to rejected/" : "deleted") + " when the next file comes");
    }

private:
    void warn(const std::string& text) const {
        m_warnings.push_back(
            {kStrategyFile, kNoLine, "channel " + std::to_string(m_strategy.m_nChannel) + ": " + text});
    }

    const TC::COrderStrategyParam& m_strategy;
    const bool m_bGuarded;
    std::vector<CDiagnostic>& m_warnings;
};

/// Warns of books that the desk refuses to open, or that begin anew although the desk has traded.
void checkStore(const fs::path& folder, std::vector<CDiagnostic>& warnings) {
    const fs::path store = folder / kPaperStoreName;
    std::error_code unreadable;
    const bool isThere = fs::exists(store, unreadable);
    if (isThere && sizeOf(store) != 0) return;
    CJournalTail tail;
    const fs::path journal = folder / kJournalFileName;
    const bool hasTraded = fs::exists(journal, unreadable) &&
                           readJournalTail(journal.string(), tail).isSuccess() && tail.m_nLastBrokerEvent > 0;
    const bool hasLog = sizeOf(store.string() + kStoreSuffixes[0]) != 0;
    const std::string log = std::string(kPaperStoreName) + kStoreSuffixes[0];
    if (hasLog)
        warnings.push_back({kPaperStoreName, kNoLine,
                            std::string(isThere ? "is empty" : "is missing") + ", but " + log +
                                " has content; the desk does not start"});
    else if (isThere && hasTraded)
        warnings.push_back(
            {kPaperStoreName, kNoLine, "is empty, but the journal has orders; the desk does not start"});
    else if (hasTraded)
        warnings.push_back({kPaperStoreName, kNoLine,
                            "is missing, but the journal has orders; the books begin anew with the folder's "
                            "funds and positions"});
}

/// Warns of what the desk does not replace with its socket.
void checkControlSocket(const fs::path& folder, std::vector<CDiagnostic>& warnings) {
    std::error_code unreadable;
    const std::string draft = std::string(kControlSocketName) + kDraftSuffix;
    for (const std::string& name : {std::string(kControlSocketName), draft}) {
        const fs::file_status status = fs::symlink_status(folder / name, unreadable);
        if (fs::exists(status) && !fs::is_socket(status))
            warnings.push_back({name, kNoLine, "is not a socket; the desk has no control door"});
    }
}

} // namespace

std::vector<CDiagnostic> stateWarnings(const std::string& folder, const CDeskConfig& config) {
    std::vector<CDiagnostic> warnings;
    const bool isGuarded = config.switches.count(TC::kFileGuardSwitch) != 0;
    for (const TC::COrderStrategyParam& strategy : config.strategies) {
        if (strategy.isRunning() && strategy.comesFromFile())
            CFilesOfStrategy(strategy, isGuarded, warnings).check();
    }
    checkStore(folder, warnings);
    checkControlSocket(folder, warnings);
    return warnings;
}

} // namespace desk
