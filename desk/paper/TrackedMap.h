#pragma once

#include <map>
#include <optional>

namespace desk {

/// A map that can undo the changes made since the last keep. Not thread-safe.
template<typename K, typename V>
class CTrackedMap {
public:
    /// The value, to be changed. Created if the key is new. The reference is valid until rollBack or erase.
    V& edit(const K& key) {
        const auto found = m_values.find(key);
        m_before.try_emplace(key, found != m_values.end() ? std::optional<V>(found->second) : std::nullopt);
        return found != m_values.end() ? found->second : m_values[key];
    }

    const V* find(const K& key) const {
        const auto found = m_values.find(key);
        return found != m_values.end() ? &found->second : nullptr;
    }

    const std::map<K, V>& values() const { return m_values; }

    /// Set or erase a value directly. rollBack does not undo this.
    void set(const K& key, V value) { m_values[key] = std::move(value); }
    void erase(const K& key) { m_values.erase(key); }

    /// Visits each value that was edited since the last keep, with its old value (null if the key is new) and
    /// its present value.
    template<typename F>
    void visitChanged(F visit) const {
        for (const auto& [key, before] : m_before) {
            visit(before ? &*before : nullptr, m_values.at(key));
        }
    }

    void keep() { m_before.clear(); }

    void rollBack() {
        for (auto& [key, before] : m_before) {
            if (before)
                m_values[key] = std::move(*before);
            else
                m_values.erase(key);
        }
        m_before.clear();
    }

private:
    std::map<K, V> m_values;
    std::map<K, std::optional<V>> m_before;
};

} // namespace desk
