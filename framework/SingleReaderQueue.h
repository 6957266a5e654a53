#pragma once

#include <array>
#include <atomic>
#include <cstdint>

// A bounded first-in first-out hand-over from one writing thread to one
// reading thread, without locks or allocation: the audio thread leaves items
// in the order they happen and the message thread takes them in that order.
// A full queue drops what comes after, rather than make the writer wait.
template <typename Item, uint32_t capacity>
class SingleReaderQueue
{
    static_assert ((capacity & (capacity - 1)) == 0, "the capacity is a power of two");

public:
    bool push (const Item& item) noexcept
    {
        const auto tail = written.load (std::memory_order_relaxed);

        if (tail - read.load (std::memory_order_acquire) >= capacity)
            return false;

        items[tail & (capacity - 1)] = item;
        written.store (tail + 1, std::memory_order_release);
        return true;
    }

    bool pop (Item& item) noexcept
    {
        const auto head = read.load (std::memory_order_relaxed);

        if (head == written.load (std::memory_order_acquire))
            return false;

        item = items[head & (capacity - 1)];
        read.store (head + 1, std::memory_order_release);
        return true;
    }

private:
    std::array<Item, capacity> items {};
    std::atomic<uint32_t> written { 0 }, read { 0 };
};
