#pragma once

#include "orderservice/gates/OrderGate.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

/// A gate in front of a service that processes orders only when the test asks for it. An order is named by
/// the volume of its first line, a cancel by "cancel" and the task. Thread-safe.
class CSlowGate final : public TC::IOrderGate {
public:
    ~CSlowGate() { processOrders(m_queue.size()); }

    void placeorder(TC::COrderParam order) override {
        add({std::to_string(order.m_orders.isEmpty() ? 0 : order.m_orders[0].m_nVolume), nullptr});
    }
    void placeOrders(QVector<TC::COrderParam> orders) override {
        for (const TC::COrderParam& order : orders)
            placeorder(order);
    }
    void cancelOrder(int taskId) override { add({"cancel " + std::to_string(taskId), nullptr}); }
    void cancelOrders(std::vector<std::string>&) override {}
    void holdUntilProcessed(std::shared_ptr<const void> ticket) override { add({"", std::move(ticket)}); }
    QString getOrderStrategyText(TC::EOrderStrategyType) const override { return {}; }
    std::string defaultRemark(const TC::COrderStrategyParam&) const override { return {}; }

    /// Processes this number of orders and cancels, or all if there are fewer. Returns the number.
    std::size_t processOrders(std::size_t count) {
        std::size_t done = 0;
        while (const auto entry = take(done < count)) {
            if (entry->name.empty()) continue;
            const std::lock_guard lock(m_mutex);
            m_done.push_back(entry->name);
            ++done;
        }
        return done;
    }
    /// Processes the orders and cancels one by one as they arrive, until this number is reached.
    void processUntil(std::size_t done) {
        while (processed().size() < done) {
            waitForQueue(1);
            processOrders(1);
        }
    }
    /// The names of the waiting orders and cancels, in their order.
    std::vector<std::string> queue() {
        const std::lock_guard lock(m_mutex);
        std::vector<std::string> names;
        for (const CEntry& entry : m_queue) {
            if (!entry.name.empty()) names.push_back(entry.name);
        }
        return names;
    }
    std::vector<std::string> processed() {
        const std::lock_guard lock(m_mutex);
        return m_done;
    }
    std::size_t longestQueue() {
        const std::lock_guard lock(m_mutex);
        return m_nLongest;
    }
    void waitForQueue(std::size_t count) {
        std::unique_lock lock(m_mutex);
        if (!m_changed.wait_for(lock, std::chrono::seconds(60), [&] { return waiting() >= count; }))
            throw std::runtime_error("the queue stays short");
    }
    /// Waits for the entry. Returns the number of orders and cancels before it.
    std::size_t placeOf(const std::string& name) {
        std::unique_lock lock(m_mutex);
        const auto find = [&] {
            return std::find_if(m_queue.begin(), m_queue.end(),
                                [&](const CEntry& e) { return e.name == name; });
        };
        if (!m_changed.wait_for(lock, std::chrono::seconds(60), [&] { return find() != m_queue.end(); }))
            throw std::runtime_error(name + " does not come");
        const auto isNamed = [](const CEntry& entry) { return !entry.name.empty(); };
        return static_cast<std::size_t>(std::count_if(m_queue.begin(), find(), isNamed));
    }

private:
    struct CEntry {
        std::string name; ///< empty for a ticket
        std::shared_ptr<const void> ticket;
    };

    void add(CEntry entry) {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back(std::move(entry));
        m_nLongest = std::max(m_nLongest, waiting());
        m_changed.notify_all();
    }
    /// Takes the first entry. If mayBeOrder is false, it takes only a ticket. The caller destroys the ticket
    /// without holding the lock.
    std::unique_ptr<CEntry> take(bool mayBeOrder) {
        const std::lock_guard lock(m_mutex);
        if (m_queue.empty() || (!mayBeOrder && !m_queue.front().name.empty())) return nullptr;
        auto entry = std::make_unique<CEntry>(std::move(m_queue.front()));
        m_queue.pop_front();
        return entry;
    }
    std::size_t waiting() const {
        const auto isNamed = [](const CEntry& entry) { return !entry.name.empty(); };
        return static_cast<std::size_t>(std::count_if(m_queue.begin(), m_queue.end(), isNamed));
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<CEntry> m_queue;
    std::vector<std::string> m_done;
    std::size_t m_nLongest = 0;
};
