#pragma once

#include <map>
#include <set>
#include <string>

/// The words of the desk's files for numbers of the records.
namespace desk {

const std::map<std::string, int>& brokerWords();
const std::map<std::string, int>& sourceWords();
const std::map<std::string, int>& familyWords();
const std::map<std::string, int>& priceTypeWords();
const std::map<std::string, int>& rightWords();
const std::map<std::string, int>& kindWords(); ///< EInstrumentKind
const std::map<std::string, int>& sideWords(); ///< EPositionSide
const std::map<std::string, int>& paidWords(); ///< 1: in full, 0: on margin

/// The switches that the order service asks for.
const std::set<std::string>& switchNames();

/// Whether one word is a slip of the other: at most two letters added, left out or changed.
bool isLike(const std::string& a, const std::string& b);

/// The word of a number, or the number itself in digits.
std::string wordFor(const std::map<std::string, int>& words, int number);

} // namespace desk
