#pragma once

#include <string>

namespace bson {

class BSONObj;

struct CJsonText {
    std::string text;        ///< as BSONObj::jsonString tells
    bool isRepaired = false; ///< holds something else in the place of bytes that are not UTF-8
};

CJsonText jsonText(const BSONObj& object);

} // namespace bson
