#include <gtest/gtest.h>

#include <vector>

#include "app/FileTypes.h"
#include "runtime/ui/FileTypeRegistry.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

Ref<FileType> Named(const char* name) {
    auto type = New<FileType>();
    type->Name(name);
    return type;
}

TEST(FileTypes, initialize_registersBothTypesWhichFilterByTheirExtensions) {
    FileTypes::_Initialize();

    EXPECT_EQ(FileTypes::pAllFileTypes,
              (std::vector<Ref<FileType>>{FileTypes::vxpk(), FileTypes::Any()}));
    EXPECT_EQ(FileTypes::vxpk()->Operator_Convert(), "Vantrelix App");
    EXPECT_EQ(_DialogNameFilters("Vantrelix App;Any"), "Vantrelix App (*.vxpk);;Any (*)");
}

TEST(FileType, secondConversion_doesNotRegisterAgain) {
    auto type = Named("Sample");
    (void)type->Operator_Convert();
    // Taken out behind the type's back: a type that thinks itself registered
    // does not tell the toolkit again.
    RuntimeDeregisterFileType("Sample");
    (void)type->Operator_Convert();
    EXPECT_FALSE(_IsFileTypeRegistered("Sample"));
}

TEST(FileType, setterOrDestruction_deregistersUnderTheOldName) {
    auto type = Named("Old");
    type->Extensions(".old");
    (void)type->Operator_Convert();
    ASSERT_TRUE(_IsFileTypeRegistered("Old"));

    type->Name("New");
    EXPECT_FALSE(_IsFileTypeRegistered("Old"));
    EXPECT_FALSE(_IsFileTypeRegistered("New"));
    EXPECT_EQ(type->Operator_Convert(), "New");
    EXPECT_EQ(_DialogNameFilters("New"), "New (*.old)") << "registered anew, with its extension";

    type->MimeType("application/x-old");
    EXPECT_FALSE(_IsFileTypeRegistered("New")) << "every setter deregisters";
    (void)type->Operator_Convert();
    ASSERT_TRUE(_IsFileTypeRegistered("New"));
    type = nullptr;
    EXPECT_FALSE(_IsFileTypeRegistered("New")) << "a destroyed type deregisters";
}

TEST(FileType, joins_separateNamesByExactlyOneSemicolonAndRegisterBoth) {
    auto a = Named("A");
    auto b = Named("B");
    for (const auto& [joined, expected] : {std::pair{a->Operator_Add(b), "A;B"},
                                           {a->Operator_AddRight(b), "B;A"},
                                           {a->Operator_Add(String("x")), "A;x"},
                                           {a->Operator_Add(String(";x")), "A;x"},
                                           {a->Operator_AddRight(String("x;")), "x;A"},
                                           {a->Operator_AddRight(String("x")), "x;A"}}) {
        EXPECT_EQ(joined, expected);
    }
    EXPECT_TRUE(_IsFileTypeRegistered("A"));
    EXPECT_TRUE(_IsFileTypeRegistered("B"));
}

}  // namespace
}  // namespace vx
