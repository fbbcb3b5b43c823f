#pragma once

#include "desk/config/Diagnostics.h"

#include <toml++/toml.h>

#include <functional>
#include <map>
#include <string>

namespace desk {

/// Reads the value of a key into its target.
using CTomlSetter = std::function<void(const toml::node&)>;
using CTableReader = std::function<void(const toml::table&)>;

/// Reads the keys of one TOML table with a table of keys and setters. So unknown keys, missing keys and
/// values of a wrong type are always reported with the same words. One object for each TOML table; the table
/// and the diagnostics must outlive it.
class CTomlSection {
public:
    CTomlSection(std::string file, const toml::table& table, std::string name, CDiagnostics& diagnostics);

    /// Returns the section of a table below this table.
    CTomlSection below(const toml::table& table, std::string name) const;

    /// Each function returns the setter for a key of that type. A value of another type is reported as a
    /// mistake.
    CTomlSetter text(std::string& target) const;
    CTomlSetter integer(int& target, int least) const;
    CTomlSetter number(double& target) const;
    CTomlSetter flag(bool& target) const;
    /// The value must be a word of the list or, if numberToo is set, any number from 0 on: the trading layer
    /// has more numbers than there are words.
    CTomlSetter choice(int& target, const std::map<std::string, int>& words, bool numberToo) const;
    /// A table below this table, and a list of such tables.
    CTomlSetter table(CTableReader reader) const;
    CTomlSetter tables(CTableReader reader) const;

    /// Runs the setters of the keys that are present. `required` names the keys that must be present. A
    /// missing key is not reported if an unknown key looks like it: then the unknown key is the mistake.
    void read(const std::map<std::string, CTomlSetter>& setters,
              const std::vector<std::string>& required = {}) const;

    void mistake(const toml::node& node, const std::string& message) const;
    /// mistakeAt and warnAt report on the line of the key, or of the table if the key is missing.
    void mistakeAt(const std::string& key, const std::string& message, ESubject about = ESubject::None) const;
    void warnAt(const std::string& key, const std::string& message) const;
    /// Reports that a required key is missing. The line is the last line of the table's own keys, because the
    /// key can be added there.
    void reportMissing(const std::string& key, const std::string& note = {}) const;
    /// Reports that the value of a key is not `what`. The message has the key, the value and what was
    /// expected.
    void expected(const toml::node& node, const std::string& what) const;
    void mistake(const std::string& message) const;
    int line() const;
    bool has(const std::string& key) const { return m_table.contains(key); }
    bool isText(const std::string& key) const { return m_table[key].is_string(); }
    bool isNumber(const std::string& key, int number) const {
        return m_table[key].value_exact<std::int64_t>() == number;
    }
    /// Line of the key, or of the table if the key is missing.
    int lineOfKey(const std::string& key) const;

private:
    std::string keyOf(const toml::node& node) const;
    int lastLine() const;

    std::string m_strFile;
    const toml::table& m_table;
    std::string m_strName;
    CDiagnostics& m_diagnostics;
};

/// Lists the words of a choice, for messages.
std::string wordList(const std::map<std::string, int>& words);

} // namespace desk
