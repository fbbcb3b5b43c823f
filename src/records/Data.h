#pragma once

#include <string>

namespace knservice {

/// Base of the records that cross to the host by shared pointer.
class IData {
public:
    virtual ~IData() = default;

    /// The text under which the host keeps the record; empty where it has none.
    virtual std::string getKey() const { return {}; }

protected:
    IData() = default;
    IData(const IData&) = default;
    IData(IData&&) = default;
    IData& operator=(const IData&) = default;
    IData& operator=(IData&&) = default;
};

} // namespace knservice
