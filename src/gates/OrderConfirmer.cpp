#include "orderservice/gates/OrderConfirmer.h"

#include "orderservice/base/Thread.h"

#include <QCoreApplication>

#include <atomic>
#include <deque>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace TC {
namespace {

/// A question of another thread, which waits for the main thread.
struct CPending {
    CConfirmQuestion m_question;
    std::promise<CConfirmAnswer> m_answer;
};

CConfirmAnswer notAsked(const QString& reason) {
    CConfirmAnswer answer;
    answer.m_eResult = EConfirmResult::NotAsked;
    answer.m_strReason = reason;
    return answer;
}

/// The questions of this process, one open at a time.
class CQuestions {
public:
    /// Never destroyed: a thread of the host may ask until the process ends.
    static CQuestions& instance() {
        static auto* const questions = new CQuestions;
        return *questions;
    }

    void setConfirmer(IOrderConfirmer* confirmer) { m_pConfirmer = confirmer; }
    bool isOpen() const { return m_bOpen; }

    CConfirmAnswer askHere(const CConfirmQuestion& question) {
        if (m_bOpen) return notAsked(QStringLiteral("另一批指令正在确认"));
        if (m_pConfirmer == nullptr) return notAsked(QStringLiteral("没有确认窗口"));
        const COpen open(*this);
        return m_pConfirmer->confirm(question);
    }

    int openQuestion() const { return m_bAsking ? m_nQuestion : 0; }
    void withdraw(int question) {
        if (question != 0 && question == openQuestion() && m_pConfirmer != nullptr) m_pConfirmer->withdraw();
    }

    CConfirmAnswer askFromThread(const CConfirmQuestion& question) {
        const auto pending = std::make_shared<CPending>();
        pending->m_question = question;
        std::future<CConfirmAnswer> answer = pending->m_answer.get_future();
        {
            const std::lock_guard lock(m_mutex);
            if (m_nStops > 0) return notAsked(m_strStopReason);
            m_pending.push_back(pending);
        }
        (void)continueLater();
        return answer.get();
    }

    void whenClosed(std::function<void()> action) {
        {
            const std::lock_guard lock(m_mutex);
            m_actions.push_back(std::move(action));
        }
        if (m_bOpen || continueLater()) return;
        const std::lock_guard lock(m_mutex);
        m_actions.pop_back();
        throw std::runtime_error("the main thread has no event loop");
    }

    /// Returns whether a question was open before.
    bool beginHold() { return m_bOpen.exchange(true); }
    void endHold() {
        m_bOpen = false;
        (void)continueLater();
    }

    void beginStop(const QString& reason) {
        {
            const std::lock_guard lock(m_mutex);
            ++m_nStops;
            m_strStopReason = reason;
        }
        refusePending(reason);
    }
    void endStop() {
        const std::lock_guard lock(m_mutex);
        --m_nStops;
    }

private:
    /// Marks a question as open during its lifetime. What waits for its end continues from the event loop, so
    /// that the commands of the answered batch are sent first.
    class COpen {
    public:
        explicit COpen(CQuestions& questions) : m_questions(questions) {
            m_questions.m_bOpen = true;
            m_questions.m_bAsking = true;
            ++m_questions.m_nQuestion;
        }
        ~COpen() {
            m_questions.m_bAsking = false;
            m_questions.m_bOpen = false;
            (void)m_questions.continueLater();
        }
        COpen(const COpen&) = delete;
        COpen& operator=(const COpen&) = delete;

    private:
        CQuestions& m_questions;
    };

    /// If nothing can be queued on the main thread, it refuses the questions and returns false: a thread must
    /// not wait for an answer that nobody will give.
    [[nodiscard]] bool continueLater() noexcept {
        try {
            QCoreApplication* const app = QCoreApplication::instance();
            if (app == nullptr) return refusePending(QStringLiteral("主线程已结束"));
            QMetaObject::invokeMethod(
                app, [this] { continueHere(); }, Qt::QueuedConnection);
            return true;
        } catch (...) {
            return refusePending(QStringLiteral("内存不足"));
        }
    }

    /// Returns false.
    bool refusePending(const QString& reason) {
        std::deque<std::shared_ptr<CPending>> refused;
        {
            const std::lock_guard lock(m_mutex);
            refused.swap(m_pending);
        }
        for (const auto& pending : refused)
            pending->m_answer.set_value(notAsked(reason));
        return false;
    }

    void continueHere() {
        while (!m_bOpen) {
            if (std::function<void()> action = nextAction()) {
                action();
                continue;
            }
            const std::shared_ptr<CPending> pending = nextPending();
            if (pending == nullptr) return;
            answer(*pending);
        }
    }

    void answer(CPending& pending) {
        try {
            pending.m_answer.set_value(askHere(pending.m_question));
        } catch (...) {
            pending.m_answer.set_exception(std::current_exception());
        }
    }

    std::function<void()> nextAction() {
        const std::lock_guard lock(m_mutex);
        if (m_actions.empty()) return nullptr;
        std::function<void()> action = std::move(m_actions.front());
        m_actions.pop_front();
        return action;
    }

    std::shared_ptr<CPending> nextPending() {
        const std::lock_guard lock(m_mutex);
        if (m_pending.empty()) return nullptr;
        std::shared_ptr<CPending> pending = std::move(m_pending.front());
        m_pending.pop_front();
        return pending;
    }

    IOrderConfirmer* m_pConfirmer = nullptr; ///< main thread
    std::atomic<bool> m_bOpen{false};        ///< written on the main thread
    bool m_bAsking = false;                  ///< the confirmer is asked; main thread
    int m_nQuestion = 0;                     ///< number of the last question; main thread
    std::mutex m_mutex;                      ///< guards the rest
    std::deque<std::shared_ptr<CPending>> m_pending;
    std::deque<std::function<void()>> m_actions;
    int m_nStops = 0;
    QString m_strStopReason;
};

} // namespace

void setOrderConfirmer(IOrderConfirmer* confirmer) {
    CQuestions::instance().setConfirmer(confirmer);
}

CConfirmAnswer askForConfirmation(const CConfirmQuestion& question) {
    CQuestions& questions = CQuestions::instance();
    return utils::isMainThread() ? questions.askHere(question) : questions.askFromThread(question);
}

int openConfirmation() {
    return utils::isMainThread() ? CQuestions::instance().openQuestion() : 0;
}

void withdrawConfirmation(int question) {
    CQuestions::instance().withdraw(question);
}

CConfirmationStop::CConfirmationStop(const QString& reason) {
    CQuestions::instance().beginStop(reason);
}

CConfirmationStop::~CConfirmationStop() {
    CQuestions::instance().endStop();
}

CConfirmationHold::CConfirmationHold() : m_bWasOpen(CQuestions::instance().beginHold()) {}

CConfirmationHold::~CConfirmationHold() {
    if (!m_bWasOpen) CQuestions::instance().endHold();
}

bool isConfirmationOpen() {
    return CQuestions::instance().isOpen();
}

void whenNoConfirmationIsOpen(std::function<void()> action) {
    CQuestions::instance().whenClosed(std::move(action));
}

} // namespace TC
