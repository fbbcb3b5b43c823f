#pragma once

#include <string>

namespace bson {

class BSONObj;

/// The document as BSONObj::jsonString tells.
std::string jsonText(const BSONObj& object);

} // namespace bson
