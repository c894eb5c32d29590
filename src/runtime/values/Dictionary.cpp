#include "runtime/values/Dictionary.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "runtime/core/AllocationGuard.h"

namespace vx {
namespace {

constexpr uint32_t emptySlot = 0;
constexpr std::size_t smallestTable = 8;

uint64_t hashOf(const Variant& key) {
    return static_cast<uint64_t>(key.Operator_Hash());
}

}  // namespace

Dictionary::Dictionary(const Ref<Array<Ref<Pair>>>& entries) {
    if (!entries) {
        return;
    }
    for (const Ref<Pair>& entry : *entries) {
        Value(entry->Left(), entry->Right());
    }
}

void Dictionary::Clear() {
    entries_.clear();
    slots_.clear();
    shift_ = 64;
    count_ = 0;
    holes_ = 0;
}

bool Dictionary::HasKey(const Variant& key) const {
    return entryOf(key) != nullptr;
}

Variant Dictionary::Key(int64_t place) const {
    return EntryAt(place).first;
}

std::pair<const Variant&, const Variant&> Dictionary::EntryAt(int64_t place) const {
    if (place < 0 || place >= Count()) {
        throw OutOfBoundsException();
    }
    compact();
    const Entry& entry = entries_[static_cast<std::size_t>(place)];
    return {entry.key, entry.value};
}

Ref<Array<Variant>> Dictionary::Keys() const {
    auto keys = New<Array<Variant>>();
    for (const Entry& entry : entries_) {
        if (!entry.removed) {
            keys->Append(entry.key);
        }
    }
    return keys;
}

Variant Dictionary::Lookup(const Variant& key, const Variant& defaultValue) const {
    const Entry* entry = entryOf(key);
    return entry == nullptr ? defaultValue : entry->value;
}

void Dictionary::Remove(const Variant& key) {
    if (count_ == 0) {
        throw KeyNotFoundException();
    }
    std::size_t hole = slotOf(key, hashOf(key));
    if (slots_[hole] == emptySlot) {
        throw KeyNotFoundException();
    }
    entries_[slots_[hole] - 1] = Entry{Variant(), Variant(), 0, true};
    --count_;
    ++holes_;
    // Close the gap in the probe run: a later slot moves back into the hole
    // unless its home lies cyclically after the hole, where the move would hide it.
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = (hole + 1) & mask; slots_[slot] != emptySlot;
         slot = (slot + 1) & mask) {
        const std::size_t home = homeSlot(entries_[slots_[slot] - 1].hash);
        if (((slot - home) & mask) >= ((slot - hole) & mask)) {
            slots_[hole] = slots_[slot];
            hole = slot;
        }
    }
    slots_[hole] = emptySlot;
    // Holes at the end cost nothing to drop; the JSON engine removes the last
    // element of an array this way, and keeps places valid without a compaction.
    while (!entries_.empty() && entries_.back().removed) {
        entries_.pop_back();
        --holes_;
    }
    // Holes never outnumber the live entries, so memory stays proportional to Count.
    if (holes_ > count_) {
        compact();
    }
}

Variant Dictionary::Value(const Variant& key) const {
    const Entry* entry = entryOf(key);
    if (entry == nullptr) {
        throw KeyNotFoundException();
    }
    return entry->value;
}

void Dictionary::Value(const Variant& key, const Variant& value) {
    GuardAllocation([&] {
        reserveSlot();
        const uint64_t hash = hashOf(key);
        const std::size_t slot = slotOf(key, hash);
        if (slots_[slot] != emptySlot) {
            entries_[slots_[slot] - 1].value = value;
            return;
        }
        entries_.push_back(Entry{key, value, hash, false});
        slots_[slot] = static_cast<uint32_t>(entries_.size());
        ++count_;
    });
}

Ref<Array<Variant>> Dictionary::Values() const {
    auto values = New<Array<Variant>>();
    for (const Entry& entry : entries_) {
        if (!entry.removed) {
            values->Append(entry.value);
        }
    }
    return values;
}

int64_t Dictionary::BinCount() const {
    return static_cast<int64_t>(slots_.size());
}

void Dictionary::BinCount(int64_t bins) {
    if (bins <= 0 || static_cast<uint64_t>(bins) <= slots_.size()) {
        return;
    }
    GuardAllocation([&] { rebuildSlots(std::bit_ceil(static_cast<std::size_t>(bins))); });
}

int64_t Dictionary::Count() const {
    return static_cast<int64_t>(count_);
}

std::size_t Dictionary::slotOf(const Variant& key, uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t slot = homeSlot(hash);; slot = (slot + 1) & mask) {
        const uint32_t held = slots_[slot];
        if (held == emptySlot) {
            return slot;
        }
        const Entry& entry = entries_[held - 1];
        if (entry.hash == hash && VariantCompare(entry.key, key) == 0) {
            return slot;
        }
    }
}

std::size_t Dictionary::homeSlot(uint64_t hash) const {
    // Fibonacci hashing: the multiplication spreads hashes whose low bits are
    // poor, as object addresses are, over the top bits that pick the slot.
    return static_cast<std::size_t>(hash * 0x9e3779b97f4a7c15ULL >> shift_);
}

const Dictionary::Entry* Dictionary::entryOf(const Variant& key) const {
    if (count_ == 0) {
        return nullptr;
    }
    const uint32_t held = slots_[slotOf(key, hashOf(key))];
    return held == emptySlot ? nullptr : &entries_[held - 1];
}

void Dictionary::reserveSlot() {
    if (entries_.size() >= std::numeric_limits<uint32_t>::max() - 1) {
        compact();
        if (entries_.size() >= std::numeric_limits<uint32_t>::max() - 1) {
            throw OutOfMemoryException();
        }
    }
    if ((count_ + 1) * 4 > slots_.size() * 3) {
        rebuildSlots(std::max(smallestTable, slots_.size() * 2));
    }
}

void Dictionary::rebuildSlots(std::size_t slotCount) const {
    slots_.assign(slotCount, emptySlot);
    shift_ = 64 - std::countr_zero(slotCount);
    const std::size_t mask = slotCount - 1;
    for (std::size_t position = 0; position < entries_.size(); ++position) {
        if (entries_[position].removed) {
            continue;
        }
        std::size_t slot = homeSlot(entries_[position].hash);
        while (slots_[slot] != emptySlot) {
            slot = (slot + 1) & mask;
        }
        slots_[slot] = static_cast<uint32_t>(position + 1);
    }
}

void Dictionary::compact() const {
    if (holes_ == 0) {
        return;
    }
    std::size_t kept = 0;
    for (std::size_t position = 0; position < entries_.size(); ++position) {
        if (entries_[position].removed) {
            continue;
        }
        if (kept != position) {
            entries_[kept] = std::move(entries_[position]);
        }
        ++kept;
    }
    entries_.resize(kept);
    holes_ = 0;
    rebuildSlots(slots_.size());
}

}  // namespace vx
