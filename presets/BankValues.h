#pragma once

#include "PresetBankRecord.h"

#include <array>
#include <atomic>
#include <memory>

// The bank's preset values as the audio thread reads them: one immutable copy
// of every slot, replaced whole whenever anything in the bank changes. A
// reader takes one slot from one copy, never half of one bank and half of the
// next, and neither waits nor allocates. Publishing (any other thread, one at
// a time: the caller serialises it) builds the new copy, swaps it in and
// frees the old one once no reader can still be in it.
class BankValues
{
public:
    using Values = std::array<float, PresetRecord::numValues>;

    BankValues();
    ~BankValues();

    void publish (const std::array<PresetRecord, PresetBankRecord::numSlots>& slots);

    // False for a slot outside the bank.
    bool read (int slot, Values& values) const noexcept;

private:
    using Copy = std::array<Values, PresetBankRecord::numSlots>;

    std::atomic<Copy*> current;
    mutable std::atomic<int> readers { 0 };

    BankValues (const BankValues&) = delete;
    BankValues& operator= (const BankValues&) = delete;
};
