#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <functional>
#include <map>
#include <string>

namespace TC {

/// A batch of checked orders that the user must confirm before its commands are sent.
struct CConfirmQuestion {
    QString m_strTitle;
    EQdTraderType m_eTraderType = EQdTraderType::Stock; ///< of the whole batch
    /// One row for each order, by the index of the order in the batch. An order of several accounts has the
    /// record of its last account here.
    std::map<int, CCodeOrderParam> m_rows;
    std::map<int, std::string> m_remarks; ///< of all orders, by the same index; UTF-8
};

enum class EConfirmResult {
    Declined,
    Accepted,
    NotAsked, ///< nobody could be asked, or nobody has answered; m_strReason says why
};

struct CConfirmAnswer {
    EConfirmResult m_eResult = EConfirmResult::Declined;
    std::map<int, std::string> m_remarks; ///< by the index of the order; UTF-8; a missing one is empty
    QString m_strReason;                  ///< for NotAsked: for the user, in Chinese
};

/// Asks the user whether a batch may be sent. The dialog of the second library is one; a host without a
/// window gives its own.
class IOrderConfirmer {
public:
    virtual ~IOrderConfirmer() = default;
    /// Asks and waits for the answer. Called on the main thread, for one question at a time. It may run an
    /// event loop. If it throws, nobody has confirmed.
    virtual CConfirmAnswer confirm(const CConfirmQuestion& question) = 0;
    /// The user of the open question has left or was switched, so its batch cannot be sent any more. A window
    /// should close and answer NotAsked: it shows the accounts of that user. Called on the main thread from
    /// the event loop of `confirm`, without a lock of the library. By default the question stays open.
    virtual void withdraw() {}
};

/// Installs the confirmer of this process, or removes it with null. The caller owns it and keeps it alive
/// until it is removed. Main thread, while no question is open.
ORDERSERVICE_EXPORT void setOrderConfirmer(IOrderConfirmer* confirmer);

/// Asks the user by the installed confirmer and waits for the answer. Any thread: on another thread the
/// question is handed to the main thread. Questions of other threads are asked one after the other. A
/// question on the main thread while another one is open is not asked. Exceptions of the confirmer leave it.
ORDERSERVICE_EXPORT CConfirmAnswer askForConfirmation(const CConfirmQuestion& question);

/// Whether a question is open. Any thread.
ORDERSERVICE_EXPORT bool isConfirmationOpen();

/// The number of the question that is open. 0 if no question is open, and on every other thread than the main
/// thread.
ORDERSERVICE_EXPORT int openConfirmation();
/// Withdraws this question (IOrderConfirmer::withdraw) if it is still open. Exceptions of the confirmer leave
/// it. Main thread.
ORDERSERVICE_EXPORT void withdrawConfirmation(int question);

/// During its lifetime no question is opened: checked batches and questions of other threads wait until it
/// ends. For a host that shows a question of its own, so that no other one opens above it. isConfirmationOpen
/// is true meanwhile. Main thread.
class ORDERSERVICE_EXPORT CConfirmationHold {
public:
    CConfirmationHold();
    ~CConfirmationHold();
    CConfirmationHold(const CConfirmationHold&) = delete;
    CConfirmationHold& operator=(const CConfirmationHold&) = delete;

private:
    const bool m_bWasOpen; ///< a question or another hold was there before
};

/// Calls `action` once on the main thread, from its event loop, when no question is open. Actions are called
/// in their order, and before waiting questions of other threads. It must not throw. Throws if
/// the call cannot be queued; then `action` is not called. Any thread.
ORDERSERVICE_EXPORT void whenNoConfirmationIsOpen(std::function<void()> action);

/// During its lifetime the main thread answers no questions of other threads, for instance because it waits
/// for them. Questions that are not yet asked are answered with NotAsked and the reason. Any thread.
class ORDERSERVICE_EXPORT CConfirmationStop {
public:
    explicit CConfirmationStop(const QString& reason);
    ~CConfirmationStop();
    CConfirmationStop(const CConfirmationStop&) = delete;
    CConfirmationStop& operator=(const CConfirmationStop&) = delete;
};

} // namespace TC
