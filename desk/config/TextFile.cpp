#include "desk/config/TextFile.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace desk {

EFileRead readTextFile(const std::string& path, std::string& text) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) return EFileRead::Missing;
    std::ifstream stream(path, std::ios::binary);
    if (!std::filesystem::is_regular_file(status) || !stream) return EFileRead::Unreadable;
    std::ostringstream bytes;
    // Copying nothing at all counts as a failure of the target, so an empty file is asked for first.
    if (stream.peek() != std::ifstream::traits_type::eof()) bytes << stream.rdbuf();
    text = bytes.str();
    return stream.bad() || bytes.fail() ? EFileRead::Unreadable : EFileRead::Whole;
}

} // namespace desk
