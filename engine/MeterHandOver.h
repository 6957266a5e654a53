#pragma once

#include <array>
#include <atomic>
#include <cstdint>

// Two meter levels from an engine to the editor, without a lock: the engine
// publishes the held peaks after every process call, the editor asks for a
// reading and collects it once a publication has answered the request.
class MeterHandOver
{
public:
    static constexpr int tableSize = 400;

    // Maps an output sample in -2..2 (index = sample * 100 + 200) to 0..1.
    static const std::array<double, tableSize>& getTable();

    // Engine: stores both levels clamped to 0..1 in one atomic word.
    void publish (double left, double right) noexcept;

    // Editor.
    void request() noexcept;
    bool take (float& left, float& right) noexcept;

private:
    void peek (float& left, float& right) const noexcept;

    std::atomic<uint64_t> levels { 0 }; // the left level's bits low, the right's high
    std::atomic<int> pendingReaders { 0 };
    std::atomic<bool> ready { false };
};
