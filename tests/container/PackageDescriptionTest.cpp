#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "PackageDescriptionText.h"
#include "container/PackageDescription.h"
#include "runtime/text/TextEncoding.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using PackageDescription::Fields;

using PackageDescription::wizardDefaults;

std::string textOf(const Fields& fields) {
    const String text = PackageDescription::document(fields)->ToString();
    return std::string(text.bytes());
}

TEST(PackageDescription, wizardDefaults_giveThePrettyDocumentMemberByMember) {
    EXPECT_EQ(textOf(wizardDefaults()), test::PackageDescriptionText());
}

TEST(PackageDescription, editedField_isWrittenInItsOwnForm) {
    struct Case {
        std::function<void(Fields&)> edit;
        const char* expectedLine;
    };
    for (const Case& c : {
             Case{[](Fields& f) { f.main = "  start.html \t"; }, "\n  \"main\":\"start.html\",\n"},
             Case{[](Fields& f) { f.name = " My App "; }, "\n  \"name\":\" My App \",\n"},
             Case{[](Fields& f) { f.uid = "com.x.y "; }, "\n  \"uid\":\"com.x.y \",\n"},
             // A version that looks like a number stays text.
             Case{[](Fields& f) { f.version = "2"; }, "\n  \"version\":\"2\",\n"},
             Case{[](Fields& f) { f.title = ""; }, "\n    \"title\":\"\",\n"},
             Case{[](Fields& f) { f.company = "Acme/Support"; },
                  "\n  \"company\":\"Acme\\/Support\",\n"},
             Case{[](Fields& f) { f.name = "My \"Best\" App"; },
                  "\n  \"name\":\"My \\\"Best\\\" App\",\n"},
             Case{[](Fields& f) { f.width = ""; }, "\n    \"width\":0.0,\n"},
             // The leading number of the text, whatever follows.
             Case{[](Fields& f) { f.height = "48px"; }, "\n    \"height\":48.0\n"},
         }) {
        Fields fields = wizardDefaults();
        c.edit(fields);
        EXPECT_NE(textOf(fields).find(c.expectedLine), std::string::npos) << textOf(fields);
    }
}

TEST(PackageDescription, anyEarlierFile_endsAsExactlyTheNewText) {
    const std::string text = "{\n  \"a\":1\n}";
    for (const auto& [before, written] : {
             std::pair<std::string, std::string>{"", text},  // no file yet
             {std::string(500, 'x'), text},
             {"{}", text},
             // More bytes than characters: the write runs past the cut.
             {std::string(40, 'x'), "{\"name\":\"Caf\xC3\xA9 \xE2\x82\xAC\"}"},
         }) {
        test::ScratchFolder scratch;
        if (!before.empty()) {
            scratch.writeFile("package.json", before);
        }
        ASSERT_TRUE(PackageDescription::write(scratch.item("package.json"),
                                              String(written, Encodings::UTF8)));
        EXPECT_EQ(scratch.readFile("package.json"), written);
    }
}

TEST(PackageDescription, fileThatCanNeitherBeOpenedNorMade_givesFalse) {
    test::ScratchFolder scratch;
    // A folder in the way cannot be opened as a file, not even by root.
    scratch.makeFolder("package.json");
    EXPECT_FALSE(PackageDescription::write(scratch.item("package.json"), "{}"));
    EXPECT_FALSE(PackageDescription::write(scratch.item("missing/package.json"), "{}"));
}

}  // namespace
}  // namespace vx
