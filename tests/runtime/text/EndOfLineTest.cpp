#include <gtest/gtest.h>

#include "runtime/text/EncodingConversion.h"
#include "runtime/text/EndOfLine.h"
#include "runtime/text/StringFunctions.h"

namespace vx {
namespace {

TEST(EndOfLine, joinedToAString_addsOneLineFeedOnItsSideOrRaisesWhenNil) {
    const String log = String("BUILD DONE...") + EndOfLine();
    EXPECT_EQ(log, String("BUILD DONE...\n"));
    EXPECT_THROW(String("x") + Ref<class EndOfLine>(), NilObjectException);
    EXPECT_EQ("first" + EndOfLine() + "second", String("first\nsecond"));
    EXPECT_EQ(EndOfLine() + "x", String("\nx"));
    EXPECT_EQ(Encoding(log), Encodings::UTF8);
}

TEST(EndOfLine, sharedObject_convertsToTheUnixEnding) {
    EXPECT_EQ(EndOfLine().get(), EndOfLine().get());
    EXPECT_EQ(EndOfLine()->Operator_Convert(), ChrB(10));
    EXPECT_EQ(EndOfLine()->Operator_Compare("\n"), 0);
    EXPECT_LT(EndOfLine()->Operator_Compare("\r\n"), 0);
    EXPECT_GT(EndOfLine()->Operator_Compare(""), 0);
    EXPECT_EQ(EndOfLine::OSX(), EndOfLine::UNIX());
    EXPECT_EQ(EndOfLine::Macintosh(), ChrB(13));
    EXPECT_EQ(EndOfLine::Windows(), ChrB(13) + ChrB(10));
}

}  // namespace
}  // namespace vx
