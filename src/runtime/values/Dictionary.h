#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/values/Array.h"
#include "runtime/values/Pair.h"
#include "runtime/values/Variant.h"

namespace vx {

// A hash table from Variant to Variant that keeps its keys in the order they
// were first added. Reading, writing, removing and asking for the key at a
// place all take constant time on average, so a walk by place is linear.
class Dictionary : public Object {
public:
    Dictionary() = default;
    // Assigns each pair's Right under its Left, in order, so a later pair with
    // an equal key wins. A nil array gives an empty table; a nil pair raises
    // NilObjectException.
    explicit Dictionary(const Ref<Array<Ref<Pair>>>& entries);

    virtual void Clear();
    virtual bool HasKey(const Variant& key) const;
    // The key at place, counted from 0 in insertion order; OutOfBoundsException
    // outside 0 to Count - 1.
    virtual Variant Key(int64_t place) const;
    // The key and the value at place, by reference, so that a walk over every
    // entry needs no lookup and no copy; OutOfBoundsException outside 0 to
    // Count - 1. The references hold until the table next changes.
    std::pair<const Variant&, const Variant&> EntryAt(int64_t place) const;
    virtual Ref<Array<Variant>> Keys() const;
    // The value, or defaultValue when the key is absent.
    virtual Variant Lookup(const Variant& key, const Variant& defaultValue) const;
    // KeyNotFoundException when the key is absent.
    virtual void Remove(const Variant& key);
    // KeyNotFoundException when the key is absent.
    virtual Variant Value(const Variant& key) const;
    // Adds the key at the end if it is new, otherwise replaces its value in place.
    virtual void Value(const Variant& key, const Variant& value);
    virtual Ref<Array<Variant>> Values() const;

    // The number of slots of the hash table. Setting it makes room for that
    // many ahead of time; the table never shrinks below what Count needs.
    int64_t BinCount() const;
    void BinCount(int64_t bins);
    int64_t Count() const;

private:
    struct Entry {
        Variant key;
        Variant value;
        uint64_t hash = 0;
        bool removed = false;
    };

    // Where the probe for a hash starts.
    std::size_t homeSlot(uint64_t hash) const;
    // The slot that holds the key's entry, or the empty slot where it would go.
    std::size_t slotOf(const Variant& key, uint64_t hash) const;
    // The key's entry, or null.
    const Entry* entryOf(const Variant& key) const;
    // Grows the slots ahead of an insertion so that at most three in four are used.
    void reserveSlot();
    // Points a fresh table of slotCount slots at the live entries.
    void rebuildSlots(std::size_t slotCount) const;
    // Squeezes out removed entries so that a place is again an index of entries_.
    void compact() const;

    // Insertion order, with removed entries left as holes until the next compaction.
    mutable std::vector<Entry> entries_;
    // Open addressing with linear probing: a slot holds an index of entries_
    // plus 1, or 0 when empty. Its size is a power of two, or 0 before the first key.
    mutable std::vector<uint32_t> slots_;
    // 64 minus the number of bits of a slot index.
    mutable int shift_ = 64;
    std::size_t count_ = 0;
    mutable std::size_t holes_ = 0;
};

}  // namespace vx
