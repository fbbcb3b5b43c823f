#pragma once

#include "desk/config/Diagnostics.h"

#include <toml++/toml.h>

#include <functional>
#include <map>
#include <string>

namespace desk {

/// What to do with the value of a key.
using CTomlSetter = std::function<void(const toml::node&)>;
using CTableReader = std::function<void(const toml::table&)>;

/// Reads the keys of one table: a table of keys and setters, so that an unknown key, a missing one and a
/// value of the wrong type are all told in the same words. One object for each table; the diagnostics outlive
/// it.
class CTomlSection {
public:
    CTomlSection(std::string file, const toml::table& table, std::string name, CDiagnostics& diagnostics);

    /// The section of a table below this one.
    CTomlSection below(const toml::table& table, std::string name) const;

    /// Each gives the setter of a key of that type; a value of another type is told.
    CTomlSetter text(std::string& target) const;
    CTomlSetter integer(int& target, int least) const;
    CTomlSetter number(double& target) const;
    CTomlSetter flag(bool& target) const;
    /// A word of the list or, where numberToo, any number from 0 on: the trading layer has more than words.
    CTomlSetter choice(int& target, const std::map<std::string, int>& words, bool numberToo) const;
    /// A table below this one, and a list of tables.
    CTomlSetter table(CTableReader reader) const;
    CTomlSetter tables(CTableReader reader) const;

    /// Runs the setters of the keys that are there. `required` names the keys that must be. A missing one
    /// is not told if an unknown key looks like it: then that key is the mistake.
    void read(const std::map<std::string, CTomlSetter>& setters,
              const std::vector<std::string>& required = {}) const;

    void mistake(const toml::node& node, const std::string& message) const;
    /// On the line of the key, or of the table if the key is not there.
    void mistakeAt(const std::string& key, const std::string& message, ESubject about = ESubject::None) const;
    void warnAt(const std::string& key, const std::string& message) const;
    /// The key must be there and is not. Told on the last line of the table's own keys, where it can be
    /// added.
    void tellMissing(const std::string& key, const std::string& note = {}) const;
    /// The value of the key is not `what`: tells the key, what stands there and what was expected.
    void expected(const toml::node& node, const std::string& what) const;
    void mistake(const std::string& message) const;
    int line() const;
    bool has(const std::string& key) const { return m_table.contains(key); }
    bool isText(const std::string& key) const { return m_table[key].is_string(); }
    bool isNumber(const std::string& key, int number) const {
        return m_table[key].value_exact<std::int64_t>() == number;
    }
    /// Line of the key, or of the table if the key is not there.
    int lineOfKey(const std::string& key) const;

private:
    std::string keyOf(const toml::node& node) const;
    int lastLine() const;

    std::string m_strFile;
    const toml::table& m_table;
    std::string m_strName;
    CDiagnostics& m_diagnostics;
};

/// The words of a choice, for messages.
std::string wordList(const std::map<std::string, int>& words);

} // namespace desk
