#include "tests/support/Describe.h"

#include <sstream>

namespace {

template<typename E>
int number(E value) {
    return static_cast<int>(value);
}

void describeCode(std::ostream& out, const TC::CCodeOrderParam& code) {
    out << " [" << (code.m_account ? code.m_account->getKey() : "-") << " op "
        << number(code.m_eOperationType) << ' ' << code.m_stock.m_strMarket << code.m_stock.m_strCode << ' '
        << code.m_nVolume << " at ";
    if (TC::isInvalidPrice(code.m_dPrice)) {
        out << '-';
    } else {
        out << code.m_dPrice;
    }
    out << " type " << number(code.m_ePriceType);
    if (number(code.m_eOrderType) != 0) out << " kind " << number(code.m_eOrderType);
    if (!TC::isUnset(code.m_nQuantityKind)) out << " quantity " << code.m_dQuantity;
    if (!TC::isUnset(code.m_eEntrustType)) out << " entrust " << number(code.m_eEntrustType);
    if (!code.m_strContractText.empty()) out << " contract \"" << code.m_strContractText << '"';
    if (!code.m_strRepayText.empty()) out << " repays \"" << code.m_strRepayText << '"';
    if (!code.m_strSubAccountId.empty())
        out << " sub-account " << code.m_nSubAccountKind << ' ' << code.m_strSubAccountId;
    out << ']';
}

} // namespace

std::string describe(const TC::COrderComandParam& command) {
    std::ostringstream out;
    out << "command trader " << number(command.m_eTraderType) << " tag "
        << (command.m_strTag.empty() ? "-" : command.m_strTag);
    if (!command.m_strRemark.empty()) out << " remark \"" << command.m_strRemark << '"';
    if (!command.m_strAlgoParam.empty()) out << " algo \"" << command.m_strAlgoParam << '"';
    if (number(command.m_ePlatform) != 0) out << " platform " << number(command.m_ePlatform);
    if (command.m_bForceConfirm) out << " confirm";
    for (const TC::CCodeOrderParam& code : command.m_codes)
        describeCode(out, code);
    return out.str();
}

std::string describe(const TC::CConfirmQuestion& question) {
    std::ostringstream out;
    out << "question " << question.m_strTitle.toStdString() << " trader " << number(question.m_eTraderType);
    for (const auto& [index, row] : question.m_rows) {
        out << " row " << index;
        describeCode(out, row);
    }
    for (const auto& [index, remark] : question.m_remarks) {
        if (!remark.empty()) out << " remark " << index << " \"" << remark << '"';
    }
    return out.str();
}

std::string describeDetails(const TC::COrderComandParam& command) {
    std::ostringstream out;
    out << "details hedge " << number(command.m_eHedgeType) << " button " << number(command.m_eBtnType)
        << (command.m_bUnion ? " union" : " split") << (command.m_bCommandFlag ? " flag" : "") << " source "
        << number(command.m_eStrategyType) << " weights";
    for (const auto& [account, weight] : command.m_weights)
        out << ' ' << account << '=' << weight;
    out << " created " << (command.m_strCreateTime.empty() ? "-" : command.m_strCreateTime);
    if (!command.m_extra.isEmpty()) out << " extra " << command.m_extra.jsonString();
    return out.str();
}

std::string describe(const TC::CIntakeReport& report) {
    std::ostringstream out;
    out << "intake channel " << report.m_nChannel << ": " << report.m_nLines << " lines, " << report.m_nOrders
        << " orders";
    if (report.m_nUnreadTradeParams != 0)
        out << ", " << report.m_nUnreadTradeParams << " parameters not understood";
    if (report.m_bLeftOver) out << ", left over: " << report.m_strCause.toStdString();
    if (report.m_bRejected) out << ", refused: " << report.m_strCause.toStdString();
    if (report.m_bCutShort) out << ", cut short at " << report.m_strCause.toStdString();
    return out.str();
}

std::string describe(const TC::CDoorReport& report) {
    static constexpr const char* kEvents[] = {"opened", "closed", "stuck", "refused"};
    std::string line = std::string("door ") + kEvents[number(report.m_eEvent)];
    if (!report.m_strCause.isEmpty()) line += ": " + report.m_strCause.toStdString();
    return line;
}
