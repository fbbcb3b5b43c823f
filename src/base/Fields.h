#pragma once

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace TC {

/// The fields of a line as views into the line. The caller keeps the line alive. Empty fields are kept, so a
/// line always has at least one field.
class CFields {
public:
    CFields(std::string_view line, char separator) {
        // Fields are short: a loop over the bytes is faster than a search for each separator.
        std::size_t begin = 0;
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] != separator) continue;
            m_fields.push_back({line.data() + begin, i - begin});
            begin = i + 1;
        }
        m_fields.push_back({line.data() + begin, line.size() - begin});
    }

    std::size_t size() const { return m_fields.size(); }
    bool has(std::size_t index) const { return index < m_fields.size(); }
    std::string_view operator[](std::size_t index) const { return m_fields[index]; }

private:
    // The longest line, a table row, has ten fields.
    boost::container::small_vector<std::string_view, 12> m_fields;
};

} // namespace TC
