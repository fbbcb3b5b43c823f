#include "orderservice/base/LocalTimestamp.h"

namespace utils {
namespace {

constexpr int kPerSecond = 1000;

void appendNumber(std::string& text, int number, int digits) {
    const std::size_t end = text.size() + static_cast<std::size_t>(digits);
    text.resize(end, '0');
    for (std::size_t i = end; digits > 0; --digits, number /= 10)
        text[--i] = static_cast<char>('0' + number % 10);
}

std::string textOfSecond(const std::tm& fields) {
    constexpr int kFirstYear = 1900;
    std::string text;
    appendNumber(text, fields.tm_year + kFirstYear, 4);
    text += '-';
    appendNumber(text, fields.tm_mon + 1, 2);
    text += '-';
    appendNumber(text, fields.tm_mday, 2);
    text += ' ';
    appendNumber(text, fields.tm_hour, 2);
    text += ':';
    appendNumber(text, fields.tm_min, 2);
    text += ':';
    appendNumber(text, fields.tm_sec, 2);
    text += ':';
    return text;
}

} // namespace

std::tm localFieldsOf(std::int64_t second) {
    const auto time = static_cast<std::time_t>(second);
    std::tm fields{};
    ::tzset(); // localtime_r alone reads the zone only once per process
    ::localtime_r(&time, &fields);
    return fields;
}

std::string CLocalTimestamp::textOf(std::int64_t milliseconds) {
    std::int64_t second = milliseconds / kPerSecond;
    int rest = static_cast<int>(milliseconds % kPerSecond);
    if (rest < 0) { // before 1970
        rest += kPerSecond;
        --second;
    }
    if (second != m_nSecond) {
        m_strText = textOfSecond(m_pfnFieldsOf(second));
        m_nSecond = second;
    }
    std::string text = m_strText;
    appendNumber(text, rest, 3);
    return text;
}

} // namespace utils
