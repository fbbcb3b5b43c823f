#pragma once

#include "desk/host/TextSink.h"
#include "desk/paper/PaperRecords.h"
#include "orderservice/base/SecondLimit.h"

#include <map>
#include <mutex>
#include <string>

namespace desk {

/// Tells the user what happens to the orders: one line for each order that waits, was filled, cancelled or
/// rejected. In a flood of orders only the first ones of a second get a line. One more line then gives the
/// numbers of the others and the most frequent reasons of rejections. The sink must outlive it.
class COrderLines {
public:
    /// Number of orders that get a line in a second, by the clock of base/Clock.h.
    static constexpr int kOrdersPerSecond = 50;

    explicit COrderLines(CTextSink& sink) : m_sink(sink) {}

    /// Takes an event that the journal has taken. Any thread. Writes nothing, so a caller with locks does not
    /// wait for the screen.
    void take(const CBrokerEvent& event);

    /// Writes the lines of the orders that have changed since the last call. At the end of a second it also
    /// writes the numbers of the other orders. One thread at a time, several times a second.
    void show();

    /// Writes everything that was taken, before the end of the second. Main thread, at the end.
    void finish();

private:
    /// Rejections whose reasons differ only in their numbers.
    struct CReason {
        int m_nOrders = 0;
        std::string m_strFirst; ///< the reason of the first order
    };
    /// Changes of the orders that got no line.
    struct CUnshown {
        int m_nAccepted = 0;
        int m_nPartFilled = 0; ///< an order that is filled in several parts is counted several times
        int m_nFilled = 0;
        int m_nCancelled = 0;
        int m_nRejected = 0;
        std::map<std::string, CReason> m_reasons; ///< by the reason without its numbers
        bool isEmpty() const {
            return m_nAccepted + m_nPartFilled + m_nFilled + m_nCancelled + m_nRejected == 0;
        }
    };
    static void count(const CPaperOrder& order, CUnshown& unshown);
    static void countReason(const std::string& reason, CUnshown& unshown);
    static std::string reasonsText(const CUnshown& unshown);
    static std::string text(const CUnshown& unshown);
    void write(bool isSecondOver);

    CTextSink& m_sink;
    std::mutex m_mutex;
    std::map<int, CPaperOrder> m_changed; ///< the latest state of the orders that get a line, by order
    utils::CSecondLimit m_limit{kOrdersPerSecond}; ///< of orders that get a line
    CUnshown m_unshown;
};

/// One order and its state as a line for the user.
std::string orderLine(const CPaperOrder& order);

} // namespace desk
