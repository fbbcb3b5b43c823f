#pragma once

#include "base/Bson.h"

#include <string>

namespace knservice {

/// Base of the records that cross to the host by shared pointer.
class IData {
public:
    virtual ~IData() = default;

    /// The text under which the host keeps the record; empty where it has none.
    virtual std::string getKey() const { return {}; }

    /// The record as a document; a record that is not stored gives the empty one.
    virtual bson::BSONObj toBson() const { return {}; }

    /// Fills the record from a document that toBson gave, perhaps by way of its JSON text: integers are then
    /// as narrow as they fit, and a double without a fraction has become an integer (5.0 comes as the int32
    /// 5), so a number is read whatever its type. Throws bson::CError for a document that is not the
    /// record's. A record that is not stored stays as it is.
    virtual void bsonValueFromObj(const bson::BSONObj&) {}

protected:
    IData() = default;
    IData(const IData&) = default;
    IData(IData&&) = default;
    IData& operator=(const IData&) = default;
    IData& operator=(IData&&) = default;
};

} // namespace knservice
