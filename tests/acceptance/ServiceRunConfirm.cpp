// The statements of the two-pass variant.
#include "orderservice/service/OrderService.h"
#include "tests/acceptance/ServiceRun.h"
#include "tests/support/Builders.h"
#include "tests/support/Describe.h"

#include <QStringList>

#include <stdexcept>

using namespace TC;

/// `confirm accept|decline|throw|none|refuse [TEXT]`: the answer to every question from now on. `accept`
/// gives each order the text as remark, `throw` throws it, and `refuse` asks nobody for this reason. `none`
/// leaves no confirmer.
void CServiceRun::setAnswer(const CStatement& statement) {
    const std::size_t blank = statement.rest.find(' ');
    const std::string kind = statement.rest.substr(0, blank);
    const std::string text = blank != std::string::npos ? statement.rest.substr(blank + 1) : "";
    m_confirmer.answer = {};
    m_confirmer.onQuestion = [this, text, isThrowing = kind == "throw"] {
        report(describe(m_confirmer.questions.back()));
        if (isThrowing) throw std::runtime_error(text);
    };
    setOrderConfirmer(kind == "none" ? nullptr : &m_confirmer);
    if (kind == "accept") {
        m_confirmer.answer.m_eResult = EConfirmResult::Accepted;
        if (!text.empty()) m_confirmer.answer.m_remarks = {{0, text}, {1, text}};
    } else if (kind == "refuse") {
        m_confirmer.answer.m_eResult = EConfirmResult::NotAsked;
        m_confirmer.answer.m_strReason = QString::fromStdString(text);
    } else if (kind != "decline" && kind != "none" && kind != "throw") {
        throw std::runtime_error("unknown answer: " + kind);
    }
}

/// `leaves`: the user leaves while each question is open, and then accepts.
void CServiceRun::leaveInQuestions() {
    m_confirmer.answer.m_eResult = EConfirmResult::Accepted;
    m_confirmer.onQuestion = [this] {
        report(describe(m_confirmer.questions.back()));
        m_host.user.loggedIn = false;
    };
}

/// `hostplaces CHANNEL`: a receiver of the host removes this strategy before it places a checked batch
/// itself.
void CServiceRun::placeByHost(const CStatement& statement) {
    const int channel = std::stoi(statement.rest);
    COrderService* const running = &runningService();
    QObject::connect(running, &COrderService::sigPlaceLegalOrders,
                     [running, channel](const auto& orders, const auto*) {
                         (void)running->removeOrderStrategy(channel);
                         running->placeLegalOrders(orders);
                     });
}

/// `place NUMBER,CHANNEL,PRICE,CODE,VOLUME[,REMARK] ...`: the host places a batch of file orders. A batch of
/// the host can have several channels; an order file cannot.
void CServiceRun::placeBatch(const CStatement& statement) {
    QVector<COrderParam> orders;
    for (const QString& text : QString::fromStdString(statement.rest).split(QLatin1Char(' '))) {
        const QStringList fields = text.split(QLatin1Char(','));
        orders.push_back(COrderBuilder(fields.at(0).toInt())
                             .channel(fields.at(1).toInt())
                             .line(fields.at(3), fields.at(2).toDouble(), fields.at(4).toInt())
                             .set([&](COrderParam& o) { o.m_strRemark = fields.value(5).toStdString(); }));
    }
    runningService().placeOrders(orders);
    settle();
}

std::map<std::string, CServiceRun::CAction> CServiceRun::confirmStatements() {
    return {
        {"twopasses", [this](const auto&) { m_host.user.orderService = false; }},
        {"hint", [this](const auto& s) { m_host.user.hints.insert(std::stoi(s.rest)); }},
        {"globalhint", [this](const auto& s) { m_host.user.globalHints.insert(std::stoi(s.rest)); }},
        {"confirm", [this](const auto& s) { setAnswer(s); }},
        {"leaves", [this](const auto&) { leaveInQuestions(); }},
        {"place", [this](const auto& s) { placeBatch(s); }},
        {"hostplaces", [this](const auto& s) { placeByHost(s); }},
        // The host removes every record of an order.
        {"novolumes",
         [this](const auto&) { m_host.rules.isZeroStock = [](const CCodeOrderParam&) { return true; }; }},
    };
}
