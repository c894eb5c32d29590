#include <gtest/gtest.h>

#include "app/FileTypes.h"
#include "runtime/ui/FileTypeRegistry.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

TEST(FileTypes, initialize_registersBothTypesAndThePackageTypeFiltersByExtension) {
    FileTypes::_Initialize();

    ASSERT_EQ(FileTypes::pAllFileTypes.size(), 2u);
    EXPECT_EQ(FileTypes::pAllFileTypes[0], FileTypes::vxpk());
    EXPECT_EQ(FileTypes::pAllFileTypes[1], FileTypes::Any());
    EXPECT_EQ(FileTypes::Any()->Extensions(), ".*");
    EXPECT_TRUE(FileTypes::Any()->Imported());
    EXPECT_FALSE(FileTypes::vxpk()->Imported());
    EXPECT_EQ(FileTypes::vxpk()->MacType(), "????");
    EXPECT_TRUE(_IsFileTypeRegistered("Any"));

    // The package type, given where a filter is wanted, filters the dialog by
    // its extension.
    const String filter = FileTypes::vxpk()->Operator_Convert();
    EXPECT_EQ(filter, "Vantrelix App");
    EXPECT_EQ(_DialogNameFilters(filter), "Vantrelix App (*.vxpk)");
    EXPECT_EQ(_DialogDefaultSuffix(filter), "vxpk");
}

TEST(FileType, secondConversion_doesNotRegisterAgain) {
    auto type = New<FileType>();
    type->Name("Sample");
    (void)type->Operator_Convert();
    // Taken out behind the type's back: a type that thinks itself registered
    // does not tell the toolkit again.
    RuntimeDeregisterFileType("Sample");
    (void)type->Operator_Convert();
    EXPECT_FALSE(_IsFileTypeRegistered("Sample"));
}

TEST(FileType, setterOrDestruction_deregistersUnderTheOldName) {
    auto type = New<FileType>();
    type->Name("Old");
    type->Extensions(".old");
    (void)type->Operator_Convert();
    ASSERT_TRUE(_IsFileTypeRegistered("Old"));

    type->Name("New");
    EXPECT_FALSE(_IsFileTypeRegistered("Old"));
    EXPECT_FALSE(_IsFileTypeRegistered("New"));
    EXPECT_FALSE(type->Registered());

    EXPECT_EQ(type->Operator_Convert(), "New");
    EXPECT_TRUE(_IsFileTypeRegistered("New"));
    EXPECT_EQ(_DialogNameFilters("New"), "New (*.old)");

    type->MimeType("application/x-old");
    EXPECT_FALSE(_IsFileTypeRegistered("New")) << "every setter deregisters";

    (void)type->Operator_Convert();
    ASSERT_TRUE(_IsFileTypeRegistered("New"));
    type = nullptr;
    EXPECT_FALSE(_IsFileTypeRegistered("New")) << "a destroyed type deregisters";
}

TEST(FileType, joins_separateNamesByExactlyOneSemicolon) {
    auto a = New<FileType>();
    a->Name("A");
    auto b = New<FileType>();
    b->Name("B");
    struct Case {
        String joined;
        const char* expected;
    };
    for (const Case& c :
         {Case{a->Operator_Add(b), "A;B"}, Case{a->Operator_AddRight(b), "B;A"},
          Case{a->Operator_Add(String("x")), "A;x"}, Case{a->Operator_Add(String(";x")), "A;x"},
          Case{a->Operator_AddRight(String("x;")), "x;A"},
          Case{a->Operator_AddRight(String("x")), "x;A"}}) {
        EXPECT_EQ(c.joined, c.expected);
    }
    EXPECT_TRUE(_IsFileTypeRegistered("A"));
    EXPECT_TRUE(_IsFileTypeRegistered("B"));
}

}  // namespace
}  // namespace vx
