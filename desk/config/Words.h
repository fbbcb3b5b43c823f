#pragma once

#include <map>
#include <set>
#include <string>

/// The words that the desk's files use for the numbers in the records.
namespace desk {

const std::map<std::string, int>& brokerWords();
const std::map<std::string, int>& sourceWords();
const std::map<std::string, int>& familyWords();
const std::map<std::string, int>& priceTypeWords();
const std::map<std::string, int>& rightWords();
const std::map<std::string, int>& kindWords();    ///< EInstrumentKind
const std::map<std::string, int>& confirmWords(); ///< EConfirm
const std::map<std::string, int>& sideWords();    ///< EPositionSide
const std::map<std::string, int>& paidWords();    ///< 1: in full, 0: on margin

/// Names of the switches that the order service reads.
const std::set<std::string>& switchNames();

/// Whether one word looks like a typing mistake of the other: at most two letters added, left out or changed.
bool isLike(const std::string& a, const std::string& b);

/// Returns the word of a number, or the number in digits if it has no word.
std::string wordFor(const std::map<std::string, int>& words, int number);

} // namespace desk
