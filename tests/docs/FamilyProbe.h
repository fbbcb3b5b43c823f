#pragma once

#include "tests/check/FamilyChecks.h"

#include <map>
#include <string>
#include <vector>

/// What a family's check does with one order number, found out by driving it on a host of its own for each
/// question. The answers go by the heads of the columns of docs/families.md.
class CFamilyProbe {
public:
    using CAnswers = std::map<std::string, std::string>;

    CFamilyProbe(const families::CFamilyUnderTest& family, int number);

    /// Which codes are taken.
    CAnswers codes() const;
    /// What becomes of an order by its price.
    CAnswers prices() const;
    /// What volume comes out.
    CAnswers volumes() const;
    /// What the first record holds, a word for each field; nothing where there is no record.
    std::vector<std::string> record() const;

    /// The broker kinds in which the group of a strategy is looked up, one after the other.
    static std::vector<int> brokerKinds(const families::CFamilyUnderTest& family);
    /// What is said to an order of two lines.
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
    std::string m_strCode; ///< one that the number takes: the family's own, or a stock's
};
