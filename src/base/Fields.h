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
        std::size_t begin = 0;
        for (std::size_t end = line.find(separator); end != std::string_view::npos;
             end = line.find(separator, begin)) {
            m_fields.push_back(line.substr(begin, end - begin));
            begin = end + 1;
        }
        m_fields.push_back(line.substr(begin));
    }

    std::size_t size() const { return m_fields.size(); }
    bool has(std::size_t index) const { return index < m_fields.size(); }
    std::string_view operator[](std::size_t index) const { return m_fields[index]; }

private:
    // The longest line, a table row, has ten fields.
    boost::container::small_vector<std::string_view, 12> m_fields;
};

} // namespace TC
