#include "orderservice/socket/SocketText.h"

#include <cstddef>
#include <locale>

namespace TC {

std::string_view trimArgument(std::string_view text) {
    // The facet is looked up once, because std::isspace would search the locale for every character.
    static const auto& kinds = std::use_facet<std::ctype<char>>(std::locale::classic());
    const auto isBlank = [](char c) { return kinds.is(std::ctype_base::space, c); };
    text = text.substr(0, text.find('\0'));
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isSameSecret(std::string_view given, std::string_view expected) {
    unsigned difference = given.size() == expected.size() ? 0 : 1;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const char other = expected.empty() ? '\0' : expected[i % expected.size()];
        difference |= static_cast<unsigned char>(given[i]) ^ static_cast<unsigned char>(other);
    }
    return difference == 0;
}

} // namespace TC
