#pragma once

#include <QString>

#include <cstddef>
#include <initializer_list>
#include <string>

/// Text encodings. Order files and the socket protocol carry GBK, commands and logs UTF-8. All functions are
/// pure and may be called from any thread; bytes that fit no encoding become U+FFFD, or '?' in GBK, and never
/// an error.
namespace UW {

/// Reads UTF-8 where the bytes are valid UTF-8, and GBK otherwise: a GBK basket name and a UTF-8 table row
/// both arrive whole.
QString sToQs(const char* bytes, std::size_t size);
QString sToQs(const std::string& bytes);

/// Reads GBK, whatever the bytes look like.
QString sToQsGBK(const std::string& bytes);

} // namespace UW

namespace utils {

/// True when the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(const char* bytes, std::size_t size);

std::string safeGbk2Utf8(const std::string& gbk);
std::string safeUtf82Gbk(const std::string& utf8);

/// The encoding in which texts cross to the host's parser of trade parameters: GBK, the local encoding of the
/// desktops that this service runs on, whatever the locale of the machine says.
std::string toLocal8Bit(const QString& text);

/// The bytes of a path for the file system: UTF-8, also under the "C" locale.
std::string toPathBytes(const QString& path);

/// Puts the first argument in place of every "%1" of the pattern, the second in place of every "%2", and so
/// on. Unlike QString::arg it goes by the number alone: a pattern may name an argument twice or not at all,
/// and what an argument holds is never taken for a place. A place without an argument stays as it stands.
QString fillText(const QString& pattern, std::initializer_list<QString> arguments);

/// Removes every occurrence of the character from the text.
void string_replace(std::string& text, char unwanted);

} // namespace utils
