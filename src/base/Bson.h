#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bson {

/// One BSON document, shared by reference count and never changed once made. A default object is the empty
/// document.
class BSONObj {
public:
    BSONObj() = default;

    /// Takes the bytes of one document. Throws std::invalid_argument where they are none.
    explicit BSONObj(std::vector<std::uint8_t> bytes);

    bool isEmpty() const;

    /// The document as JSON text in UTF-8, on one line, keys in their order.
    std::string jsonString() const;

    friend bool operator==(const BSONObj& a, const BSONObj& b);
    friend bool operator!=(const BSONObj& a, const BSONObj& b) { return !(a == b); }

private:
    boost::shared_ptr<const std::vector<std::uint8_t>> m_pBytes; // null: the empty document
};

} // namespace bson
