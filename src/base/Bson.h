#pragma once

#include "orderservice/base/Export.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// BSON documents and their JSON text. Everything here is pure and thread-safe. Texts are UTF-8.
namespace bson {

/// Base of all exceptions of this namespace. Only the constructor of BSONObj throws something else:
/// std::invalid_argument.
class ORDERSERVICE_EXPORT CError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Thrown for a text that is not a JSON object, or that a document cannot store. what() contains the reason
/// and, if known, the position.
class ORDERSERVICE_EXPORT CJsonError : public CError {
public:
    using CError::CError;
};

/// The types that the readers below support, with their BSON type numbers.
enum class EType { Double = 1, String = 2, Array = 4, Bool = 8, Int32 = 16, Int64 = 18 };

/// Thrown if a field has a different type than the reader expects. The text is "wrong type for field (KEY)
/// FOUND != WANTED" with the type numbers.
class ORDERSERVICE_EXPORT CTypeError : public CError {
public:
    CTypeError(const std::string& key, int found, EType wanted);
    const std::string& key() const { return m_strKey; }
    EType wanted() const { return m_eWanted; }

private:
    std::string m_strKey;
    EType m_eWanted;
};

/// One immutable BSON document, shared by reference count. A default-constructed object is the empty
/// document.
class ORDERSERVICE_EXPORT BSONObj {
public:
    /// Maximum nesting depth of a document.
    static constexpr int kMaxDepth = 100;

    BSONObj() = default;

    /// Takes the bytes of one document. Throws std::invalid_argument if they are not a valid document or are
    /// nested too deep.
    explicit BSONObj(std::vector<std::uint8_t> bytes);

    bool isEmpty() const;

    /// The bytes of the document. They are valid as long as the object exists.
    const std::vector<std::uint8_t>& bytes() const;

    /// The document as JSON text on one line. Keys keep their order. There are blanks around colons and
    /// inside brackets. Every valid document can be written, and nothing is thrown for its content:
    ///  - integers of both widths are plain digits;
    ///  - a double below 1e16 without a fraction is plain digits too, so it is read back as an integer; other
    ///    doubles have the shortest text that is read back as the same value;
    ///  - in text that is not UTF-8, the invalid bytes are replaced by U+FFFD;
    ///  - a value that JSON cannot express, such as a date or a number that is not finite, is an object with
    ///    one "$" key. fromjson reads it back.
    std::string jsonString() const;

    /// Whether all texts are valid UTF-8, so that jsonString writes them unchanged.
    bool isUtf8() const;

    friend ORDERSERVICE_EXPORT bool operator==(const BSONObj& a, const BSONObj& b);
    friend bool operator!=(const BSONObj& a, const BSONObj& b) { return !(a == b); }

private:
    boost::shared_ptr<const std::vector<std::uint8_t>> m_pBytes; // null: the empty document
};

/// Reads the text of one JSON object strictly by RFC 8259. The text is UTF-8 without a byte order mark. Only
/// blanks may be before and after the object. Keys keep their order. A duplicate key is kept; the readers
/// below use the first one.
///  - An integer is an int32 if it fits one, otherwise an int64. -0 is the integer 0.
///  - A number with a point or an exponent becomes the nearest double. So a number that is too small becomes
///    0.
///  - jsonString writes some values as an object with a "$" key. Such an object is read as that value. Every
///    other object stays an object, also with a "$" key.
/// Throws CJsonError if the text is not such an object. Also throws it if a document cannot store the object:
/// a NUL character in a key (it is allowed in a text value), an escaped single surrogate, an integer beyond
/// 64 bits, a number beyond the range of a double, more than BSONObj::kMaxDepth levels, more than 2 GB. The
/// parser does not recurse, so deep nesting needs no stack.
ORDERSERVICE_EXPORT BSONObj fromjson(const std::string& text);

/// Builds a document key by key. Throws CError if the document would have more than 2 GB or more than
/// BSONObj::kMaxDepth levels.
class ORDERSERVICE_EXPORT BSONObjBuilder {
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

    /// Appends all fields of the document except those with this key.
    BSONObjBuilder& appendAllBut(const char* key, const BSONObj& document);

    /// A copy of the document built so far.
    BSONObj obj() const;

private:
    struct CDocument;
    std::unique_ptr<CDocument> m_pDocument;
};

/// The top-level keys of the document in their order. A duplicate key is listed twice.
ORDERSERVICE_EXPORT std::vector<std::string> keysOf(const BSONObj& object);

/// Strict readers of one key. They read the first field with this key. If the key is absent, they return
/// false and do not change the value. If the field has another type, including null, they throw CTypeError
/// and do not change the value.
ORDERSERVICE_EXPORT bool readField(const BSONObj& object, const char* key, std::string& value);
ORDERSERVICE_EXPORT bool readField(const BSONObj& object, const char* key, std::int32_t& value);
ORDERSERVICE_EXPORT bool readField(const BSONObj& object, const char* key, std::int64_t& value);
ORDERSERVICE_EXPORT bool readField(const BSONObj& object, const char* key, bool& value);
ORDERSERVICE_EXPORT bool readField(const BSONObj& object, const char* key, double& value);
/// If an entry has another type, the key in the CTypeError is the index of the entry, counted from 0.
ORDERSERVICE_EXPORT bool readField(const BSONObj& object, const char* key, std::vector<std::string>& values);

/// Reads an int32, an int64 or a double; the fraction of a double is cut off. Returns false and does not
/// change the value if the key is absent, or if the field is not a number or does not fit an int32.
ORDERSERVICE_EXPORT bool readNumber(const BSONObj& object, const char* key, std::int32_t& value);

} // namespace bson
