#include <gtest/gtest.h>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"

namespace vx {
namespace {

struct Base : Object {
    int value = 7;
};
struct Derived : Base {};
struct Other : Object {};

TEST(Ref, memberThroughNil_raisesNilObjectException) {
    Ref<Base> nothing;
    EXPECT_THROW((void)nothing->value, NilObjectException);
    EXPECT_THROW((void)*nothing, NilObjectException);
    EXPECT_EQ(New<Base>()->value, 7);
}

TEST(Ref, isaAndCheckCast_followTheClassTree) {
    Ref<Object> derived = New<Derived>();
    EXPECT_TRUE(RuntimeObjectIsa<Base>(derived));
    EXPECT_TRUE(RuntimeObjectIsa<Derived>(derived));
    EXPECT_FALSE(RuntimeObjectIsa<Other>(derived));
    EXPECT_FALSE(RuntimeObjectIsa<Object>(Ref<Object>()));

    EXPECT_EQ(RuntimeCheckCast<Base>(derived).get(), derived.get());
    EXPECT_THROW(RuntimeCheckCast<Other>(derived), IllegalCastException);
    EXPECT_EQ(RuntimeCheckCast<Other>(Ref<Object>()), nullptr);
}

TEST(RuntimeException, subclassesAreCaughtWithTheirBases) {
    try {
        throw InvalidArgumentException();
    } catch (const LogicException& e) {
        EXPECT_EQ(e.ErrorNumber, 0);
        EXPECT_STREQ(e.what(), "");
    }
    ThreadAccessingUIException guard;
    EXPECT_EQ(guard.Message,
              String("A thread has attempted to manipulate a user interface element. This can "
                     "only be done from the application's main thread."));
    EXPECT_EQ(MakeException<IOException>(104).ErrorNumber, 104);
}

}  // namespace
}  // namespace vx
