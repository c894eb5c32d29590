#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "NamedCase.h"
#include "PackageDescriptionText.h"
#include "app/PackageDescription.h"
#include "runtime/TextEncoding.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using PackageDescription::Fields;
using test::PrintTo;

Fields wizardDefaults() {
    return {.name = "My App",
            .uid = "com.example.myapp",
            .version = "1.0",
            .company = "http://www.example.com",
            .main = "index.html",
            .title = "My App",
            .width = "600",
            .height = "600"};
}

std::string textOf(const Fields& fields) {
    const String text = PackageDescription::document(fields)->ToString();
    return std::string(text.bytes());
}

TEST(PackageDescription, wizardDefaults_giveThePrettyDocumentMemberByMember) {
    EXPECT_EQ(textOf(wizardDefaults()), test::PackageDescriptionText());
}

struct FieldCase {
    const char* name;
    std::function<void(Fields&)> edit;
    const char* expectedLine;
};

class FieldForms : public ::testing::TestWithParam<FieldCase> {};

TEST_P(FieldForms, editedField_isWrittenInItsOwnForm) {
    Fields fields = wizardDefaults();
    GetParam().edit(fields);
    EXPECT_NE(textOf(fields).find(GetParam().expectedLine), std::string::npos) << textOf(fields);
}

INSTANTIATE_TEST_SUITE_P(
    PackageDescription, FieldForms,
    ::testing::Values(FieldCase{"mainIsTrimmed", [](Fields& f) { f.main = "  start.html \t"; },
                                "\n  \"main\":\"start.html\",\n"},
                      FieldCase{"nameKeepsItsBlanks", [](Fields& f) { f.name = " My App "; },
                                "\n  \"name\":\" My App \",\n"},
                      FieldCase{"uidKeepsItsBlanks", [](Fields& f) { f.uid = "com.x.y "; },
                                "\n  \"uid\":\"com.x.y \",\n"},
                      FieldCase{"oneDigitVersionStaysText", [](Fields& f) { f.version = "2"; },
                                "\n  \"version\":\"2\",\n"},
                      FieldCase{"emptyTitleStaysAMember", [](Fields& f) { f.title = ""; },
                                "\n    \"title\":\"\",\n"},
                      FieldCase{"slashIsEscaped", [](Fields& f) { f.company = "Acme/Support"; },
                                "\n  \"company\":\"Acme\\/Support\",\n"},
                      FieldCase{"quoteIsEscaped", [](Fields& f) { f.name = "My \"Best\" App"; },
                                "\n  \"name\":\"My \\\"Best\\\" App\",\n"},
                      FieldCase{"emptyWidthIsZero", [](Fields& f) { f.width = ""; },
                                "\n    \"width\":0.0,\n"},
                      FieldCase{"heightReadsItsLeadingNumber", [](Fields& f) { f.height = "48px"; },
                                "\n    \"height\":48.0\n"}),
    test::CaseName);

struct WriteCase {
    const char* name;
    std::string before;  // empty: no file yet
    std::string text;
};

class Writing : public ::testing::TestWithParam<WriteCase> {};

TEST_P(Writing, anyEarlierFile_endsAsExactlyTheNewText) {
    test::ScratchFolder scratch;
    if (!GetParam().before.empty()) {
        scratch.writeFile("package.json", GetParam().before);
    }
    const String text(GetParam().text, Encodings::UTF8);

    ASSERT_TRUE(PackageDescription::write(scratch.item("package.json"), text));

    EXPECT_EQ(scratch.readFile("package.json"), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    PackageDescription, Writing,
    ::testing::Values(WriteCase{"newFile", "", "{\n  \"a\":1\n}"},
                      WriteCase{"longerOldFile", std::string(500, 'x'), "{\n  \"a\":1\n}"},
                      WriteCase{"shorterOldFile", "{}", "{\n  \"a\":1\n}"},
                      // More bytes than characters: the write runs past the cut.
                      WriteCase{"nonAsciiOverLongerFile", std::string(40, 'x'),
                                "{\"name\":\"Caf\xC3\xA9 \xE2\x82\xAC\"}"}),
    test::CaseName);

TEST(PackageDescription, fileThatCanNeitherBeOpenedNorMade_givesFalse) {
    test::ScratchFolder scratch;
    // A folder in the way cannot be opened as a file, not even by root.
    scratch.makeFolder("package.json");
    EXPECT_FALSE(PackageDescription::write(scratch.item("package.json"), "{}"));
    EXPECT_FALSE(PackageDescription::write(scratch.item("missing/package.json"), "{}"));
}

}  // namespace
}  // namespace vx
