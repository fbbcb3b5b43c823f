#pragma once

#include "tests/check/FamilyChecks.h"

#include <map>
#include <string>
#include <vector>

/// Finds out what a family's check does with one order number. Each question calls the check on a new host.
/// The keys of the answers are the column heads of docs/families.md.
class CFamilyProbe {
public:
    using CAnswers = std::map<std::string, std::string>;

    CFamilyProbe(const families::CFamilyUnderTest& family, int number);

    /// Which codes are accepted.
    CAnswers codes() const;
    /// What happens to an order, depending on its price.
    CAnswers prices() const;
    /// The resulting volumes.
    CAnswers volumes() const;
    /// The fields that are set in the first record, one word each. Empty if there is no record.
    std::vector<std::string> record() const;

    /// The broker kinds in which the group of a strategy is looked up, in this order.
    static std::vector<int> brokerKinds(const families::CFamilyUnderTest& family);
    /// The message for an order with two lines.
    static std::string saidToTwoLines(const families::CFamilyUnderTest& family);

private:
    std::string codeOutcome(const std::string& code) const;
    std::string strategyCodeOutcome() const;
    std::string ownKeyOutcome(std::size_t length, bool isLower) const;
    std::string foreignCodeOutcome() const;
    std::string wordInFront() const;
    std::string priceOfRecord(TC::EPriceType type) const;
    std::string splitByInstrument() const;

    const families::CFamilyUnderTest& m_family;
    const int m_nNumber;
    std::string m_strCode; ///< a code that the number accepts, of the family or of a stock
};
