#include "desk/commands/NewFolder.h"

#include "desk/commands/DemoFiles.h"

#include <filesystem>
#include <fstream>

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

} // namespace

int runNew(const std::string& folder, std::ostream& out, std::ostream& err) {
    try {
        if (std::filesystem::exists(folder) && !std::filesystem::is_empty(folder)) {
            err << folder << ": the folder exists and is not empty\n";
            return kRefused;
        }
        for (const CDemoFile& file : demoFiles())
            writeFile(std::filesystem::path(folder) / file.name, file.text);
    } catch (const std::exception& error) {
        err << folder << ": cannot be written: " << error.what() << '\n';
        return kRefused;
    }
    out << folder << ": " << demoFiles().size() << " files written; start it with: orderdesk run " << folder
        << '\n';
    return kDone;
}

} // namespace desk
