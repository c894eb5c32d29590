#include <gtest/gtest.h>

#include "runtime/values/Collection.h"
#include "support/RecordingUIServices.h"

namespace vx {
namespace {

std::vector<Variant> values(const Collection& cells) {
    std::vector<Variant> all;
    for (int64_t index = 1; index <= cells.Count(); ++index) {
        all.push_back(cells.Item(index));
    }
    return all;
}

TEST(Collection, itemByIndex_countsFromOneInTheOrderOfAdd) {
    Collection cells;
    EXPECT_THROW(cells.Item(1), OutOfBoundsException);
    EXPECT_NO_THROW(cells.Remove("absent"));
    cells.Add(10, "a");
    cells.Add("twenty");
    cells.Add(30.5, "c");
    EXPECT_EQ(cells.Count(), 3);
    EXPECT_EQ(values(cells), (std::vector<Variant>{10, "twenty", 30.5}));
    EXPECT_EQ(cells.Key(1), Variant("a"));
    EXPECT_EQ(VarType(cells.Key(2)), VarTypes::String) << "a missing key is the empty String";
    EXPECT_THROW(cells.Item(0), OutOfBoundsException);
    EXPECT_THROW(cells.Item(4), OutOfBoundsException);
}

TEST(Collection, duplicateKeys_itemAndRemoveTakeTheFirstOnly) {
    Collection cells;
    cells.Add(1, "k");
    cells.Add(2, "x");
    cells.Add(3, "k");
    EXPECT_EQ(cells.Item("k"), Variant(1));
    cells.Remove("k");
    EXPECT_EQ(values(cells), (std::vector<Variant>{2, 3}));
    EXPECT_EQ(cells.Item("k"), Variant(3));
    EXPECT_EQ(VariantCompare(cells.Item("K"), Variant()), 0) << "keys are compared exactly";
}

TEST(Collection, removeByIndexInTheMiddle_movesLaterCellsDown) {
    Collection cells;
    for (int value = 1; value <= 4; ++value) {
        cells.Add(value, String(std::to_string(value), nullptr));
    }
    cells.Remove(2);
    EXPECT_EQ(values(cells), (std::vector<Variant>{1, 3, 4}));
    EXPECT_EQ(cells.Key(2), Variant("3"));
    EXPECT_THROW(cells.Remove(4), OutOfBoundsException);
}

TEST(Collection, keyWalk_yieldsAtEachCellThatDoesNotMatch) {
    test::RecordingUIServices recorder;
    const test::InstalledUIServices installed(recorder);
    Collection cells;
    cells.Add(1, "a");
    cells.Add(2, "b");
    cells.Add(3, "c");
    EXPECT_EQ(cells.Item("c"), Variant(3));
    EXPECT_EQ(recorder.backgroundTasks, 2);
    EXPECT_EQ(VariantCompare(cells.Item("z"), Variant()), 0);
    EXPECT_EQ(recorder.backgroundTasks, 5);
}

}  // namespace
}  // namespace vx
