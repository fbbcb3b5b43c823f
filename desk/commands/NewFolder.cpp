#include "desk/commands/NewFolder.h"

#include "desk/commands/DemoFiles.h"
#include "desk/config/FolderFiles.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace desk {
namespace {

constexpr int kDone = 0;
constexpr int kRefused = 2;

void writeFile(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    // Some files hold passwords, so the permissions are set before anything is written.
    std::filesystem::permissions(path,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    file << text;
    file.close();
}

/// Replaces a part of the demo that must be there.
void replace(std::string& text, const std::string& part, const std::string& by) {
    const std::size_t place = text.find(part);
    if (place == std::string::npos) throw std::logic_error("the demo folder has no \"" + part + '"');
    text.replace(place, part.size(), by);
}

/// The demo's desk.toml for a user whose orders are checked first and then confirmed.
std::string withConfirmation(std::string text) {
    replace(text, "# which sources are labelled as such in messages",
            "# without its right a source has no strategies");
    replace(text, "# of order sockets; used only with mdl_order_split_orderNum",
            "# the limit for order sockets");
    replace(text, "order_service = true ", "order_service = false");
    replace(
        text, "max_strategies = 20 ",
        "hint_bits = 1073                           # orders to confirm: 16 of sockets, 32 of files, 1024 of "
        "tables; 1: remarks\n"
        "max_strategies = 20 ");
    replace(text, "accept_forced_confirm = false\n",
            "accept_forced_confirm = false\n"
            "# The answer if a batch must be confirmed and nobody is there to ask: \"decline\" sends "
            "nothing, \"accept\" "
            "sends all.\n"
            "confirm = \"decline\"\n");
    return text;
}

} // namespace

int runNew(const std::string& folder, bool confirms, std::ostream& out, std::ostream& err) {
    try {
        if (std::filesystem::exists(folder) && !std::filesystem::is_empty(folder)) {
            err << folder << ": the folder exists and is not empty\n";
            return kRefused;
        }
        for (const CDemoFile& file : demoFiles()) {
            const bool isChanged = confirms && file.name == kDeskFile;
            writeFile(std::filesystem::path(folder) / file.name,
                      isChanged ? withConfirmation(file.text) : file.text);
        }
    } catch (const std::exception& error) {
        err << folder << ": cannot be written: " << error.what() << '\n';
        return kRefused;
    }
    out << folder << ": " << demoFiles().size() << " files written; start it with: orderdesk run " << folder
        << '\n';
    return kDone;
}

} // namespace desk
