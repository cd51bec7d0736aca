#pragma once

#include <atomic>

/// An atomic with relaxed ordering that is assigned and read like a plain member. Any thread may do
/// both.
template <class T>
class Relaxed
{
public:
    Relaxed(T value = T())
        : m_value(value)
    {
    }
    Relaxed(const Relaxed &other)
        : m_value(T(other))
    {
    }
    ~Relaxed() = default;

    Relaxed &operator=(const Relaxed &other)
    {
        *this = T(other);
        return *this;
    }
    Relaxed &operator=(T value)
    {
        m_value.store(value, std::memory_order_relaxed);
        return *this;
    }
    operator T() const { return m_value.load(std::memory_order_relaxed); }

    /// Writes a value and returns the one that it replaced, in one step.
    T exchange(T value) { return m_value.exchange(value, std::memory_order_relaxed); }
    /// Adds in one step, so that no other thread's write is lost.
    Relaxed &operator+=(T step)
    {
        m_value.fetch_add(step, std::memory_order_relaxed);
        return *this;
    }

private:
    std::atomic<T> m_value;
    static_assert(std::atomic<T>::is_always_lock_free);
};
