#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// BSON documents and their JSON text. Everything here is pure and may be called from any thread; texts are
/// UTF-8.
namespace bson {

/// What all failures of this namespace are, but for the constructor of BSONObj.
class CError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A text that is not a JSON object, or one that a document cannot hold. what() tells the reason and, if it
/// is known, the place.
class CJsonError : public CError {
public:
    using CError::CError;
};

/// The types that the readers below know, with their numbers in a document.
enum class EType { Double = 1, String = 2, Array = 4, Bool = 8, Int32 = 16, Int64 = 18 };

/// A field of another type than its reader takes: "wrong type for field (KEY) FOUND != WANTED", the types as
/// their numbers.
class CTypeError : public CError {
public:
    CTypeError(const std::string& key, int found, EType wanted);
    const std::string& key() const { return m_strKey; }
    EType wanted() const { return m_eWanted; }

private:
    std::string m_strKey;
    EType m_eWanted;
};

/// One BSON document, shared by reference count and never changed once made. A default object is the empty
/// document.
class BSONObj {
public:
    /// Documents are nested no deeper.
    static constexpr int kMaxDepth = 100;

    BSONObj() = default;

    /// Takes the bytes of one document. Throws std::invalid_argument where they are none, or are nested too
    /// deep.
    explicit BSONObj(std::vector<std::uint8_t> bytes);

    bool isEmpty() const;

    /// The document as bytes; they live as long as the object.
    const std::vector<std::uint8_t>& bytes() const;

    /// The document as JSON text on one line, keys in their order, blanks around colons and inside of
    /// brackets. Never throws for what a document can hold:
    ///  - integers of both widths are plain digits;
    ///  - a double without a fraction is plain digits too, below 1e16, and so is read back as an integer;
    ///    others have the shortest text that reads back equal;
    ///  - text that is not UTF-8 has U+FFFD in the places of its bad bytes;
    ///  - what JSON has no form for, such as a date or a number that is not finite, is an object with one
    ///    "$" key, which fromjson reads back.
    std::string jsonString() const;

    /// Whether jsonString writes every text as it is: whether all of them are UTF-8.
    bool isUtf8() const;

    friend bool operator==(const BSONObj& a, const BSONObj& b);
    friend bool operator!=(const BSONObj& a, const BSONObj& b) { return !(a == b); }

private:
    boost::shared_ptr<const std::vector<std::uint8_t>> m_pBytes; // null: the empty document
};

/// Reads the text of one JSON object, exactly as RFC 8259 has it: UTF-8 without a byte order mark, blanks and
/// nothing else around it. Keys keep their order, and a key that comes twice stays twice; the readers below
/// take the first.
///  - An integer is an int32 if it fits one, otherwise an int64. -0 is the integer 0.
///  - What has a point or an exponent is the nearest double, so one that is too small becomes 0.
///  - An object that jsonString writes for a value that JSON has no form for is read as that value. Every
///    other object stays an object, whatever its keys.
/// Throws CJsonError if the text is not such an object, and if a document cannot hold it: a NUL character in
/// a key (in a text it is kept), an escaped half of a surrogate pair, an integer beyond 64 bits, a number
/// beyond the range of a double, more than BSONObj::kMaxDepth levels, more than 2 GB. The depth of a text
/// costs no stack.
BSONObj fromjson(const std::string& text);

/// Makes a document key by key. Throws CError if it would have more than 2 GB or BSONObj::kMaxDepth levels.
class BSONObjBuilder {
public:
    BSONObjBuilder();
    ~BSONObjBuilder();
    BSONObjBuilder(const BSONObjBuilder&) = delete;
    BSONObjBuilder& operator=(const BSONObjBuilder&) = delete;

    BSONObjBuilder& append(const char* key, const std::string& value);
    BSONObjBuilder& append(const char* key, const char* value);
    BSONObjBuilder& append(const char* key, std::int32_t value);
    BSONObjBuilder& append(const char* key, std::int64_t value);
    BSONObjBuilder& append(const char* key, bool value);
    BSONObjBuilder& append(const char* key, double value);
    BSONObjBuilder& append(const char* key, const std::vector<std::string>& values);
    BSONObjBuilder& append(const char* key, const BSONObj& value);

    /// Appends all fields of the document but the one of that key.
    BSONObjBuilder& appendAllBut(const char* key, const BSONObj& document);

    /// The document so far.
    BSONObj obj() const;

private:
    struct CDocument;
    std::unique_ptr<CDocument> m_pDocument;
};

/// The keys of the document itself in their order; one that stands there twice comes twice.
std::vector<std::string> keysOf(const BSONObj& object);

/// Strict readers of one key, the first of that name. An absent key leaves the value as it is and gives
/// false; a key of another type, null among them, throws CTypeError and leaves the value too.
bool readField(const BSONObj& object, const char* key, std::string& value);
bool readField(const BSONObj& object, const char* key, std::int32_t& value);
bool readField(const BSONObj& object, const char* key, std::int64_t& value);
bool readField(const BSONObj& object, const char* key, bool& value);
bool readField(const BSONObj& object, const char* key, double& value);
/// An entry of another type is told under its place in the array, counted from 0.
bool readField(const BSONObj& object, const char* key, std::vector<std::string>& values);

/// Reads an int32, an int64 or a double, which loses its fraction. What is absent, or is no number that an
/// int32 can hold, leaves the value as it is and gives false.
bool readNumber(const BSONObj& object, const char* key, std::int32_t& value);

} // namespace bson
