#include "desk/paper/CreditLedger.h"

#include <algorithm>

namespace desk {
namespace {

const std::string kMoneyDebt; // a debt of money has this key instead of an instrument

} // namespace

CMoney owedMoney(const CPaperBook& book, const std::string& account) {
    const CPaperDebt* debt = book.m_debts.find({account, kMoneyDebt});
    return debt != nullptr ? debt->m_nAmount : 0;
}

CMoney usedCredit(const CPaperBook& book, const std::string& account) {
    CMoney used = 0;
    const auto& debts = book.m_debts.values();
    for (auto it = debts.lower_bound({account, kMoneyDebt}); it != debts.end() && it->first.first == account;
         ++it) {
        used += it->second.m_nAmount + it->second.m_nReserved;
    }
    return used;
}

CMoney creditLeft(const CPaperBook& book, const std::string& account) {
    const auto limit = book.m_creditLimits.find(account);
    return (limit != book.m_creditLimits.end() ? limit->second : 0) - usedCredit(book, account);
}

void borrowMoney(CPaperBook& book, const std::string& account, CMoney amount) {
    book.editDebt(account, kMoneyDebt).m_nAmount += amount;
    book.m_funds.edit(account).m_nCash += amount;
}

void repayMoney(CPaperBook& book, const std::string& account, CMoney upTo) {
    const CMoney paid = std::min(upTo, owedMoney(book, account));
    if (paid == 0) return;
    book.editDebt(account, kMoneyDebt).m_nAmount -= paid;
    book.m_funds.edit(account).m_nCash -= paid;
}

void sellBorrowed(CPaperBook& book, const CPaperOrder& order, CMoney amount, int volume) {
    CPaperDebt& debt = book.editDebt(order.m_strAccount, order.m_strStock);
    if (debt.m_nVolume == 0) debt.m_nMultiplier = order.m_nMultiplier;
    debt.m_nVolume += volume;
    debt.m_nAmount += amount;
    CPaperFunds& funds = book.m_funds.edit(order.m_strAccount);
    funds.m_nCash += amount;
    funds.m_nMargin += amount;
}

void bookReturn(CPaperBook& book, const CPaperOrder& order, int volume, CMoney proceeds) {
    CPaperDebt& debt = book.editDebt(order.m_strAccount, order.m_strStock);
    debt.m_nVolume -= volume;
    debt.m_nAmount -= proceeds;
    book.m_funds.edit(order.m_strAccount).m_nMargin -= proceeds;
}

} // namespace desk
