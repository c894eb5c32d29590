#include "runtime/Dictionary.h"

#include "runtime/AllocationGuard.h"

namespace vx {

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
    index_.clear();
    holes_ = 0;
}

bool Dictionary::HasKey(const Variant& key) const {
    return index_.contains(key);
}

Variant Dictionary::Key(int64_t place) const {
    if (place < 0 || place >= Count()) {
        throw OutOfBoundsException();
    }
    compact();
    return entries_[static_cast<std::size_t>(place)].key;
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
    const auto found = index_.find(key);
    return found == index_.end() ? defaultValue : entries_[found->second].value;
}

void Dictionary::Remove(const Variant& key) {
    const auto found = index_.find(key);
    if (found == index_.end()) {
        throw KeyNotFoundException();
    }
    const std::size_t position = found->second;
    index_.erase(found);
    entries_[position] = Entry{Variant(), Variant(), true};
    ++holes_;
    // Holes at the end cost nothing to drop; the JSON engine removes the last
    // element of an array this way, and keeps places valid without a compaction.
    while (!entries_.empty() && entries_.back().removed) {
        entries_.pop_back();
        --holes_;
    }
    // Holes never outnumber the live entries, so memory stays proportional to Count.
    if (holes_ > index_.size()) {
        compact();
    }
}

Variant Dictionary::Value(const Variant& key) const {
    const auto found = index_.find(key);
    if (found == index_.end()) {
        throw KeyNotFoundException();
    }
    return entries_[found->second].value;
}

void Dictionary::Value(const Variant& key, const Variant& value) {
    GuardAllocation([&] {
        const auto [found, added] = index_.try_emplace(key, entries_.size());
        if (!added) {
            entries_[found->second].value = value;
            return;
        }
        try {
            entries_.push_back(Entry{key, value});
        } catch (...) {
            index_.erase(found);
            throw;
        }
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
    return static_cast<int64_t>(index_.bucket_count());
}

void Dictionary::BinCount(int64_t bins) {
    if (bins > 0) {
        index_.rehash(static_cast<std::size_t>(bins));
    }
}

int64_t Dictionary::Count() const {
    return static_cast<int64_t>(index_.size());
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
        index_.find(entries_[position].key)->second = kept;
        if (kept != position) {
            entries_[kept] = std::move(entries_[position]);
        }
        ++kept;
    }
    entries_.resize(kept);
    holes_ = 0;
}

}  // namespace vx
