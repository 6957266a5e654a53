#include "BankValues.h"

#include <thread>

BankValues::BankValues() : current (new Copy {})
{
}

BankValues::~BankValues()
{
    delete current.load();
}

void BankValues::publish (const std::array<PresetRecord, PresetBankRecord::numSlots>& slots)
{
    auto fresh = std::make_unique<Copy>();

    for (size_t i = 0; i < slots.size(); ++i)
        (*fresh)[i] = slots[i].values;

    std::unique_ptr<Copy> old (current.exchange (fresh.release()));

    // A reader that counted itself in before the swap may still hold the old
    // copy; one that counts itself in after it finds the new one. Readers
    // stay for one slot's copy, so this wait is short.
    while (readers.load() != 0)
        std::this_thread::yield();
}

bool BankValues::read (int slot, Values& values) const noexcept
{
    if (slot < 0 || slot >= PresetBankRecord::numSlots)
        return false;

    readers.fetch_add (1);
    values = (*current.load())[(size_t) slot];
    readers.fetch_sub (1);
    return true;
}
