#pragma once

#include "orderservice/base/Bson.h"
#include "orderservice/base/Export.h"

#include <string>

namespace knservice {

/// Base of the records that the library and the host exchange by shared pointer.
class ORDERSERVICE_EXPORT IData {
public:
    virtual ~IData() = default;

    /// The key under which the host keeps the record; empty if the record has no key.
    virtual std::string getKey() const { return {}; }

    /// The record as a document. A record that is not stored returns the empty document.
    virtual bson::BSONObj toBson() const { return {}; }

    /// Fills the record from a document that toBson returned. The document may have been converted to JSON
    /// text and back. Then integers have the smallest type that fits, and a double without a fraction is an
    /// integer (5.0 becomes the int32 5). So the reader must accept every number type. Throws bson::CError if
    /// the document does not belong to this kind of record. A record that is not stored does not change.
    virtual void bsonValueFromObj(const bson::BSONObj&) {}

protected:
    IData() = default;
    IData(const IData&) = default;
    IData(IData&&) = default;
    IData& operator=(const IData&) = default;
    IData& operator=(IData&&) = default;
};

} // namespace knservice
