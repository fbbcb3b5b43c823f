#pragma once

#include "orderservice/base/Export.h"

#include <QString>

#include <cstddef>
#include <initializer_list>
#include <string>

/// Text encodings. Order files and the socket protocol use GBK; commands and logs use UTF-8. All functions
/// are pure and thread-safe. Invalid bytes become U+FFFD, or '?' in GBK. They never cause an error.
namespace UW {

/// Reads the bytes as UTF-8 if they are valid UTF-8, otherwise as GBK. So both a GBK basket name and a UTF-8
/// table row are read correctly.
ORDERSERVICE_EXPORT QString sToQs(const char* bytes, std::size_t size);
ORDERSERVICE_EXPORT QString sToQs(const std::string& bytes);

/// Always reads the bytes as GBK.
ORDERSERVICE_EXPORT QString sToQsGBK(const std::string& bytes);

} // namespace UW

namespace utils {

/// True if the bytes are well-formed UTF-8: no overlong forms, no surrogates, no code point above U+10FFFF.
ORDERSERVICE_EXPORT bool isValidUtf8(const char* bytes, std::size_t size);

/// Converts between GBK and UTF-8. They never fail: a byte that cannot be read, or a character that the other
/// encoding does not have, is replaced. Any thread.
ORDERSERVICE_EXPORT std::string safeGbk2Utf8(const std::string& gbk);
ORDERSERVICE_EXPORT std::string safeUtf82Gbk(const std::string& utf8);

/// Encodes a text for the host's parser of trade parameters. The encoding is always GBK, the local encoding
/// of the desktops that run this service. The locale of the machine has no effect.
ORDERSERVICE_EXPORT std::string toLocal8Bit(const QString& text);

/// The bytes of a path for the file system. They are UTF-8, also under the "C" locale.
ORDERSERVICE_EXPORT std::string toPathBytes(const QString& path);

/// Replaces every "%1" in the pattern by the first argument, every "%2" by the second argument, and so on.
/// Unlike with QString::arg, a pattern may use an argument several times or not at all, and a "%1" inside an
/// argument is not replaced. A placeholder without an argument does not change.
ORDERSERVICE_EXPORT QString fillText(const QString& pattern, std::initializer_list<QString> arguments);

/// Removes every occurrence of the character from the text.
ORDERSERVICE_EXPORT void string_replace(std::string& text, char unwanted);

} // namespace utils
