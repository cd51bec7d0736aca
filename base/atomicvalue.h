#pragma once

#include <atomic>

/// An atomic value that any thread assigns and reads like a plain member. All accesses use the
/// memory order `order`. Always lock-free.
template <class T, std::memory_order order>
class AtomicValue
{
public:
    AtomicValue(T value = T())
        : m_value(value)
    {
    }
    AtomicValue(const AtomicValue &other)
        : m_value(T(other))
    {
    }
    ~AtomicValue() = default;

    AtomicValue &operator=(const AtomicValue &other)
    {
        *this = T(other);
        return *this;
    }
    AtomicValue &operator=(T value)
    {
        m_value.store(value, order);
        return *this;
    }
    operator T() const { return m_value.load(order); }

    /// Atomically replaces the value and returns the old one.
    T exchange(T value) { return m_value.exchange(value, order); }
    /// Atomically writes `value` if the current one is `expected`. Returns whether it was.
    bool replace(T expected, T value)
    {
        return m_value.compare_exchange_strong(expected, value, order);
    }
    /// Adds atomically, so that no other thread's write is lost.
    AtomicValue &operator+=(T step)
    {
        m_value.fetch_add(step, order);
        return *this;
    }

private:
    std::atomic<T> m_value;
    static_assert(std::atomic<T>::is_always_lock_free);
};

/// A standalone value: reading it says nothing about other values.
template <class T>
using Relaxed = AtomicValue<T, std::memory_order_relaxed>;

/// One of several values that belong together: all threads see the writes to them in one order.
template <class T>
using Ordered = AtomicValue<T, std::memory_order_seq_cst>;
