#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

/// One fenced block of a page.
struct CFencedBlock {
    std::string info; ///< the word after the opening fence
    std::string text; ///< the lines between the fences, each with its line feed
    int line = 0;     ///< line number of the opening fence
};

/// All fenced blocks of a page, in their order. Throws if the page cannot be read.
inline std::vector<CFencedBlock> readFencedBlocks(const std::string& path) {
    std::ifstream page(path);
    if (!page) throw std::runtime_error("cannot read " + path);
    std::vector<CFencedBlock> blocks;
    bool inside = false;
    int number = 0;
    for (std::string line; std::getline(page, line);) {
        ++number;
        if (line.compare(0, 3, "```") == 0) {
            if (!inside) blocks.push_back({line.substr(3), "", number});
            inside = !inside;
        } else if (inside) {
            blocks.back().text += line + "\n";
        }
    }
    return blocks;
}
