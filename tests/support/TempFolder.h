#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

/// A new folder for one test. The destructor deletes it.
class CTempFolder {
public:
    CTempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "order-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a folder for the test");
        m_path = pattern;
    }
    ~CTempFolder() { std::filesystem::remove_all(m_path); }
    CTempFolder(const CTempFolder&) = delete;
    CTempFolder& operator=(const CTempFolder&) = delete;

    std::string path(const std::string& name = {}) const {
        return name.empty() ? m_path : m_path + "/" + name;
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }
    /// Writes a file that only its owner can read.
    void writeSecret(const std::string& name, const std::string& bytes) const {
        write(name, bytes);
        std::filesystem::permissions(path(name), std::filesystem::perms::owner_read |
                                                     std::filesystem::perms::owner_write);
    }
    /// Writes the file under another name and then renames it, so that a reader never sees a part of it.
    void handOver(const std::string& name, const std::string& bytes) const {
        write(name + ".draft", bytes);
        std::filesystem::rename(path(name + ".draft"), path(name));
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

private:
    std::string m_path;
};
