#pragma once

#include <string>

namespace bson {

class BSONObj;

struct CJsonText {
    std::string text;        ///< the format is described at BSONObj::jsonString
    bool isRepaired = false; ///< bytes that are not UTF-8 were replaced in the text
};

CJsonText jsonText(const BSONObj& object);

} // namespace bson
