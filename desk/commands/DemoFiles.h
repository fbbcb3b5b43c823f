#pragma once

#include <string>
#include <vector>

namespace desk {

/// One file of desk/demo, built into the program.
struct CDemoFile {
    std::string name; ///< path relative to the folder
    std::string text;
};

const std::vector<CDemoFile>& demoFiles();

} // namespace desk
