#include <gtest/gtest.h>

#include "app/FileTypes.h"
#include "runtime/ui/FileTypeRegistry.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

TEST(FileTypes, initialize_makesBothTypesAndRegistersThem) {
    FileTypes::_Initialize();

    ASSERT_EQ(FileTypes::pAllFileTypes.size(), 2u);
    EXPECT_EQ(FileTypes::pAllFileTypes[0], FileTypes::vxpk());
    EXPECT_EQ(FileTypes::pAllFileTypes[1], FileTypes::Any());
    struct Expected {
        Ref<FileType> type;
        const char* name;
        const char* extensions;
        bool imported;
    };
    for (const Expected& e : {Expected{FileTypes::vxpk(), "Vantrelix App", ".vxpk", false},
                              Expected{FileTypes::Any(), "Any", ".*", true}}) {
        EXPECT_EQ(e.type->Name(), e.name);
        EXPECT_EQ(e.type->Extensions(), e.extensions);
        EXPECT_EQ(e.type->MacType(), "????");
        EXPECT_EQ(e.type->MacCreator(), "");
        EXPECT_EQ(e.type->Imported(), e.imported);
        EXPECT_EQ(e.type->UTI(), "");
        EXPECT_EQ(e.type->Icon(), nullptr);
        EXPECT_TRUE(e.type->Registered());
        EXPECT_TRUE(_IsFileTypeRegistered(e.name));
    }
}

TEST(FileTypes, convertedPackageType_filtersTheDialogByItsExtension) {
    FileTypes::_Initialize();
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

TEST(FileType, setterOnRegisteredType_deregistersUnderTheOldName) {
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
}

TEST(FileType, destroyed_deregisters) {
    {
        auto type = New<FileType>();
        type->Name("Passing");
        (void)type->Operator_Convert();
        ASSERT_TRUE(_IsFileTypeRegistered("Passing"));
    }
    EXPECT_FALSE(_IsFileTypeRegistered("Passing"));
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
