#include "orderservice/base/Text.h"

#include <QTextCodec>

#include <algorithm>

namespace {

const QTextCodec* gbkCodec() {
    static const QTextCodec* codec = QTextCodec::codecForName("GBK");
    Q_ASSERT_X(codec != nullptr, "gbkCodec", "Qt is built without the GBK codec");
    return codec;
}

/// Reads GBK. If the last character is incomplete, it becomes U+FFFD. Qt would drop it silently, so a blank
/// is added while the bytes are read and removed afterwards. A blank is never the second byte of a GBK
/// character.
QString fromGbk(const char* bytes, std::size_t size) {
    QString text = gbkCodec()->toUnicode(QByteArray(bytes, static_cast<int>(size)) + ' ');
    text.chop(1);
    return text;
}

bool isAscii(const char* bytes, std::size_t size) {
    return std::none_of(bytes, bytes + size, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

/// Length of the well-formed UTF-8 sequence at `s`, or 0 if there is none. `left` is the number of bytes from
/// `s` to the end of the text.
std::size_t utf8SequenceLength(const unsigned char* s, std::size_t left) {
    const auto isTail = [&](std::size_t i) { return i < left && s[i] >= 0x80 && s[i] <= 0xBF; };
    if (s[0] < 0x80) return 1;
    if (s[0] >= 0xC2 && s[0] <= 0xDF) return isTail(1) ? 2 : 0;
    if (s[0] >= 0xE0 && s[0] <= 0xEF) {
        if (!isTail(1) || !isTail(2)) return 0;
        const bool overlong = s[0] == 0xE0 && s[1] < 0xA0;
        const bool surrogate = s[0] == 0xED && s[1] > 0x9F;
        return overlong || surrogate ? 0 : 3;
    }
    if (s[0] >= 0xF0 && s[0] <= 0xF4) {
        if (!isTail(1) || !isTail(2) || !isTail(3)) return 0;
        const bool overlong = s[0] == 0xF0 && s[1] < 0x90;
        const bool beyond = s[0] == 0xF4 && s[1] > 0x8F;
        return overlong || beyond ? 0 : 4;
    }
    return 0;
}

} // namespace

namespace UW {

QString sToQs(const char* bytes, std::size_t size) {
    if (isAscii(bytes, size)) return QString::fromLatin1(bytes, static_cast<int>(size));
    if (utils::isValidUtf8(bytes, size)) return QString::fromUtf8(bytes, static_cast<int>(size));
    return fromGbk(bytes, size);
}

QString sToQs(const std::string& bytes) {
    return sToQs(bytes.data(), bytes.size());
}

QString sToQsGBK(const std::string& bytes) {
    return fromGbk(bytes.data(), bytes.size());
}

} // namespace UW

namespace utils {

bool isValidUtf8(const char* bytes, std::size_t size) {
    const auto* s = reinterpret_cast<const unsigned char*>(bytes);
    std::size_t i = 0;
    while (i < size) {
        const std::size_t length = utf8SequenceLength(s + i, size - i);
        if (length == 0) return false;
        i += length;
    }
    return true;
}

std::string safeGbk2Utf8(const std::string& gbk) {
    return UW::sToQsGBK(gbk).toStdString();
}

std::string safeUtf82Gbk(const std::string& utf8) {
    return gbkCodec()->fromUnicode(QString::fromStdString(utf8)).toStdString();
}

std::string toLocal8Bit(const QString& text) {
    return gbkCodec()->fromUnicode(text).toStdString();
}

std::string toPathBytes(const QString& path) {
    return path.toStdString();
}

QString fillText(const QString& pattern, std::initializer_list<QString> arguments) {
    QString text;
    text.reserve(pattern.size() + 64);
    int copied = 0;
    for (int i = pattern.indexOf(u'%'); i >= 0; i = pattern.indexOf(u'%', i + 1)) {
        const int place = i + 1 < pattern.size() ? pattern.at(i + 1).unicode() - u'0' : 0;
        if (place < 1 || place > static_cast<int>(arguments.size())) continue;
        text.append(pattern.constData() + copied, i - copied);
        text.append(*(arguments.begin() + (place - 1)));
        copied = i + 2;
    }
    return text.append(pattern.constData() + copied, pattern.size() - copied);
}

void string_replace(std::string& text, char unwanted) {
    const std::size_t first = text.find(unwanted);
    if (first == std::string::npos) return;
    text.erase(std::remove(text.begin() + static_cast<std::ptrdiff_t>(first), text.end(), unwanted),
               text.end());
}

} // namespace utils
