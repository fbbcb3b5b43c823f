#pragma once

#include "desk/config/Diagnostics.h"
#include "desk/config/TextFile.h"

#include <toml++/toml.h>

#include <optional>
#include <string>

namespace desk {

/// Reads the tables of a TOML file. If it is missing or malformed, adds a mistake and returns nothing.
inline std::optional<toml::table> readTomlFile(const std::string& folder, const std::string& file,
                                               CDiagnostics& diagnostics) {
    std::string text;
    if (readTextFile(folder + "/" + file, text) != EFileRead::Whole) {
        diagnostics.add(file, 0, "cannot be read; a desk folder must have it");
        return std::nullopt;
    }
    try {
        return toml::parse(text, file);
    } catch (const toml::parse_error& error) {
        diagnostics.add(file, static_cast<int>(error.source().begin.line),
                        "is not TOML: " + std::string(error.description()));
        return std::nullopt;
    }
}

} // namespace desk
