#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "runtime/values/Dictionary.h"

namespace vx {
namespace {

std::vector<Variant> keysByPlace(const Dictionary& table) {
    std::vector<Variant> keys;
    for (int64_t place = 0; place < table.Count(); ++place) {
        keys.push_back(table.Key(place));
    }
    return keys;
}

std::vector<Variant> items(const Ref<Array<Variant>>& array) {
    return std::vector<Variant>(array->begin(), array->end());
}

TEST(Dictionary, madeFromPairs_keepsFirstPlacesAndLastValuesAndRefusesNil) {
    for (const auto& table :
         {New<Dictionary>(CreateArray<Ref<Pair>>(-1)), New<Dictionary>(Ref<Array<Ref<Pair>>>())}) {
        EXPECT_EQ(table->Count(), 0);
        EXPECT_FALSE(table->HasKey(Variant()));
        EXPECT_THROW(table->Key(0), OutOfBoundsException);
    }
    auto array = CreateArray<Ref<Pair>>(-1);
    for (const auto& [key, value] : {std::pair<Variant, Variant>{"a", 1}, {"b", 2}, {"a", 3}}) {
        array->Append(New<Pair>(key, value));
    }
    const auto table = New<Dictionary>(array);
    EXPECT_EQ(keysByPlace(*table), (std::vector<Variant>{"a", "b"}));
    EXPECT_EQ(table->Value("a"), Variant(3));
    array->Append(nullptr);
    EXPECT_THROW(New<Dictionary>(array), NilObjectException);
}

TEST(Dictionary, absentKeyOrPlace_raisesExceptOnLookupAndClearEmpties) {
    Dictionary table;
    table.Value("present", 1);
    EXPECT_THROW(table.Value("absent"), KeyNotFoundException);
    EXPECT_THROW(table.Remove("absent"), KeyNotFoundException);
    EXPECT_EQ(table.Lookup("absent", "default"), Variant("default"));
    EXPECT_EQ(table.Lookup("present", "default"), Variant(1));
    EXPECT_EQ(table.Count(), 1);
    EXPECT_THROW(table.Key(1), OutOfBoundsException);
    EXPECT_THROW(table.Key(-1), OutOfBoundsException);
    EXPECT_THROW(table.EntryAt(1), OutOfBoundsException);
    table.Clear();
    EXPECT_FALSE(table.HasKey("present"));
    table.Value("c", 3);
    EXPECT_EQ(keysByPlace(table), (std::vector<Variant>{"c"}));
}

TEST(Dictionary, numbersOfAnyWidthAreOneKey_butTheirTextIsAnother) {
    Dictionary table;
    table.Value(int64_t{1}, "number");
    table.Value("1", "text");
    EXPECT_EQ(table.Count(), 2);
    EXPECT_EQ(table.Value(1), Variant("number"));
    EXPECT_EQ(table.Value(1.0), Variant("number"));
    table.Value(1U, "replaced");
    EXPECT_EQ(table.Count(), 2);
    EXPECT_EQ(table.Value(int64_t{1}), Variant("replaced"));
    EXPECT_EQ(table.Value("1"), Variant("text"));
    EXPECT_FALSE(table.HasKey("01"));
}

// Random writes, removals and walks by place, checked against a plain list of
// pairs in insertion order, so every path through the holes and the probe
// runs is exercised, in a crowded key space and in a sparse one.
TEST(Dictionary, randomEditsAndWalks_matchAnOrderedList) {
    for (const int64_t keySpace : {64, 4096}) {
        SCOPED_TRACE(keySpace);
        std::mt19937 random(12345);
        Dictionary table;
        std::vector<std::pair<int64_t, int64_t>> model;
        const auto find = [&](int64_t key) {
            return std::find_if(model.begin(), model.end(),
                                [key](const auto& entry) { return entry.first == key; });
        };
        for (int64_t step = 0; step < 20000; ++step) {
            const int64_t key = static_cast<int64_t>(random() % keySpace);
            const auto entry = find(key);
            switch (random() % 4) {
                case 0:
                case 1:
                    table.Value(key, step);
                    if (entry != model.end()) {
                        entry->second = step;
                    } else {
                        model.emplace_back(key, step);
                    }
                    break;
                case 2:
                    if (entry != model.end()) {
                        table.Remove(key);
                        model.erase(entry);
                    } else {
                        ASSERT_THROW(table.Remove(key), KeyNotFoundException);
                    }
                    break;
                default:
                    ASSERT_EQ(table.HasKey(key), entry != model.end());
                    ASSERT_EQ(table.Count(), static_cast<int64_t>(model.size()));
                    if (!model.empty()) {
                        const std::size_t place = random() % model.size();
                        const auto [placeKey, value] = table.EntryAt(static_cast<int64_t>(place));
                        ASSERT_EQ(VariantToInt64(table.Key(static_cast<int64_t>(place))),
                                  model[place].first);
                        ASSERT_EQ(VariantToInt64(placeKey), model[place].first);
                        ASSERT_EQ(VariantToInt64(value), model[place].second);
                        ASSERT_EQ(VariantToInt64(table.Value(model[place].first)),
                                  model[place].second);
                    }
            }
        }
        std::vector<Variant> keys, values;
        for (const auto& [key, value] : model) {
            keys.emplace_back(key);
            values.emplace_back(value);
        }
        EXPECT_EQ(keysByPlace(table), keys);
        EXPECT_EQ(items(table.Keys()), keys);
        EXPECT_EQ(items(table.Values()), values);
    }
}

TEST(Dictionary, binCount_growsOnRequestAndKeepsEveryKey) {
    Dictionary table;
    for (int64_t i = 0; i < 100; ++i) {
        table.Value(String(std::to_string(i), nullptr), i);
    }
    const int64_t before = table.BinCount();
    EXPECT_GE(before, table.Count());
    table.BinCount(5000);
    EXPECT_GE(table.BinCount(), 5000);
    table.BinCount(1);
    EXPECT_GE(table.BinCount(), 5000);
    for (int64_t i = 0; i < 100; ++i) {
        ASSERT_EQ(table.Value(String(std::to_string(i), nullptr)), Variant(i));
    }
}

}  // namespace
}  // namespace vx
