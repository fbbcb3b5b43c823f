#include "desk/config/TomlSection.h"

#include "desk/config/Words.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

namespace desk {
namespace {

int lineOf(const toml::node& node) {
    return static_cast<int>(node.source().begin.line);
}

/// Describes a value for a message.
std::string shown(const toml::node& node) {
    if (node.is_table()) return "a table";
    if (node.is_array()) return "a list";
    if (const auto text = node.value_exact<std::string>()) return '"' + *text + '"';
    std::ostringstream out;
    out << std::boolalpha;
    node.visit([&](const auto& value) {
        if constexpr (toml::is_value<decltype(value)>) out << value.get();
    });
    return out.str();
}

bool hasNumber(const std::map<std::string, int>& words, int number) {
    return std::any_of(words.begin(), words.end(), [&](const auto& word) { return word.second == number; });
}

} // namespace

CTomlSection::CTomlSection(std::string file, const toml::table& table, std::string name,
                           CDiagnostics& diagnostics)
    : m_strFile(std::move(file)), m_table(table), m_strName(std::move(name)), m_diagnostics(diagnostics) {}

CTomlSection CTomlSection::below(const toml::table& table, std::string name) const {
    return {m_strFile, table, std::move(name), m_diagnostics};
}

int CTomlSection::line() const {
    return lineOf(m_table);
}

void CTomlSection::mistake(const toml::node& node, const std::string& message) const {
    m_diagnostics.add(m_strFile, lineOf(node), m_strName + ": " + message);
}

void CTomlSection::mistake(const std::string& message) const {
    m_diagnostics.add(m_strFile, line(), m_strName + ": " + message);
}

void CTomlSection::mistakeAt(const std::string& key, const std::string& message, ESubject about) const {
    m_diagnostics.add(m_strFile, lineOfKey(key), m_strName + ": " + message, about);
}

void CTomlSection::warnAt(const std::string& key, const std::string& message) const {
    m_diagnostics.warn(m_strFile, lineOfKey(key), m_strName + ": " + message);
}

int CTomlSection::lineOfKey(const std::string& key) const {
    const toml::node* node = m_table.get(key);
    return node != nullptr ? lineOf(*node) : line();
}

/// Last line of the table's own keys. Tables below it are left out, because they may follow much later in the
/// file.
int CTomlSection::lastLine() const {
    int last = line();
    for (const auto& [key, node] : m_table) {
        if (!node.is_table() && !node.is_array_of_tables()) last = std::max(last, lineOf(node));
    }
    return last;
}

void CTomlSection::reportMissing(const std::string& key, const std::string& note) const {
    const std::string begin =
        lastLine() > line() ? " in the table that begins on line " + std::to_string(line()) : "";
    m_diagnostics.add(m_strFile, lastLine(), m_strName + ": key \"" + key + "\" is missing" + begin + note);
}

void CTomlSection::expected(const toml::node& node, const std::string& what) const {
    mistake(node, keyOf(node) + " is " + shown(node) + "; expected " + what);
}

/// Returns the key that has the node as its value or as an entry of its list. Used only for mistakes, so a
/// search is fast enough.
std::string CTomlSection::keyOf(const toml::node& node) const {
    for (const auto& [key, value] : m_table) {
        const auto* list = value.as_array();
        const bool holds =
            &value == &node ||
            (list != nullptr &&
             std::any_of(list->begin(), list->end(), [&](const auto& entry) { return &entry == &node; }));
        if (holds) return std::string(key.str());
    }
    return "a value";
}

CTomlSetter CTomlSection::text(std::string& target) const {
    return [this, &target](const toml::node& node) {
        if (const auto value = node.value_exact<std::string>()) {
            target = *value;
        } else {
            // The value is not shown, because it may be a password without quotes.
            mistake(node, keyOf(node) + " is not a text; expected a text in quotes");
        }
    };
}

CTomlSetter CTomlSection::integer(int& target, int least) const {
    return [this, &target, least](const toml::node& node) {
        const auto value = node.value_exact<std::int64_t>();
        if (value && *value >= least && *value <= std::numeric_limits<int>::max()) {
            target = static_cast<int>(*value);
        } else {
            expected(node, "a whole number of at least " + std::to_string(least));
        }
    };
}

CTomlSetter CTomlSection::number(double& target) const {
    return [this, &target](const toml::node& node) {
        const auto value = node.is_number() ? node.value<double>() : std::nullopt;
        if (value && std::isfinite(*value)) {
            target = *value;
        } else {
            expected(node, "a finite number");
        }
    };
}

CTomlSetter CTomlSection::flag(bool& target) const {
    return [this, &target](const toml::node& node) {
        if (const auto value = node.value_exact<bool>()) {
            target = *value;
        } else {
            expected(node, "true or false");
        }
    };
}

CTomlSetter CTomlSection::choice(int& target, const std::map<std::string, int>& words, bool numberToo) const {
    return [this, &target, &words, numberToo](const toml::node& node) {
        const auto word = node.value_exact<std::string>();
        const auto value = node.value_exact<std::int64_t>();
        const auto found = word ? words.find(*word) : words.end();
        if (found != words.end()) {
            target = found->second;
        } else if (numberToo && value && *value >= 0 && *value <= std::numeric_limits<int>::max()) {
            target = static_cast<int>(*value);
            if (!hasNumber(words, target))
                m_diagnostics.warn(m_strFile, lineOf(node),
                                   m_strName + ": " + keyOf(node) + " is " + shown(node) +
                                       ", which the desk does not know; expected one of " + wordList(words));
        } else {
            expected(node, "one of " + wordList(words) + (numberToo ? ", or a number" : ""));
        }
    };
}

CTomlSetter CTomlSection::table(CTableReader reader) const {
    return [this, reader = std::move(reader)](const toml::node& node) {
        if (const auto* value = node.as_table()) {
            reader(*value);
        } else {
            expected(node, "a table");
        }
    };
}

CTomlSetter CTomlSection::tables(CTableReader reader) const {
    return [this, readOne = table(std::move(reader))](const toml::node& node) {
        const auto* list = node.as_array();
        if (list == nullptr) return expected(node, "a list of tables");
        for (const toml::node& entry : *list)
            readOne(entry);
    };
}

void CTomlSection::read(const std::map<std::string, CTomlSetter>& setters,
                        const std::vector<std::string>& required) const {
    std::set<std::string> misspelt;
    for (const auto& [key, node] : m_table) {
        const std::string name(key.str());
        const auto setter = setters.find(name);
        if (setter != setters.end()) {
            setter->second(node);
            continue;
        }
        std::string known;
        for (const auto& [word, unused] : setters) {
            known += (known.empty() ? "" : ", ") + word;
            if (isLike(name, word)) misspelt.insert(word);
        }
        mistake(node, "unknown key \"" + name + "\"; expected one of " + known);
    }
    for (const std::string& key : required) {
        if (!m_table.contains(key) && misspelt.count(key) == 0) reportMissing(key);
    }
}

std::string wordList(const std::map<std::string, int>& words) {
    std::string list;
    for (const auto& [word, number] : words)
        list += (list.empty() ? "\"" : ", \"") + word + "\"";
    return list;
}

} // namespace desk
