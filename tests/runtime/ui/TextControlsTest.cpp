#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include "runtime/StringFunctions.h"
#include "runtime/TextEncoding.h"
#include "runtime/ui/TextArea.h"
#include "runtime/ui/TextField.h"
#include "runtime/ui/Window.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

struct FieldInWindow {
    Ref<Window> window = New<Window>();
    Ref<TextField> field = New<TextField>();
    int changes = 0;

    FieldInWindow() {
        window->Visible(false);
        window->Constructor();
        field->Name("txtName");
        window->_AddControl(field);
        field->Width(200);
        field->Height(22);
        field->TextChange.AddHandler([this](TextField&) { ++changes; });
    }
};

TEST(TextField, textAssigned_raisesTextChangeOnce) {
    FieldInWindow f;
    f.field->Text("My App");
    EXPECT_EQ(f.changes, 1);
    EXPECT_EQ(f.field->Text(), "My App");
    EXPECT_EQ(f.field->Text().encoding(), Encodings::UTF8);

    f.field->Text("");
    EXPECT_EQ(f.changes, 2);
    EXPECT_EQ(Len(f.field->Text()), 0);
}

TEST(TextField, userTypes_raisesTextChangePerKeystroke) {
    FieldInWindow f;
    ASSERT_TRUE(test::ShowActive(f.window->_Widget()));
    f.field->SetFocus();
    QTest::keyClicks(f.field->_Widget(), "abc");
    EXPECT_EQ(f.changes, 3);
    EXPECT_EQ(f.field->Text(), "abc");
}

TEST(TextField, textInOtherEncodings_readsAsTheSameCharacters) {
    FieldInWindow f;
    f.field->Text(String(std::string_view("caf\xE9"), Encodings::ISOLatin1));
    EXPECT_EQ(f.field->Text(), "caf\xC3\xA9");
    f.field->Text(String(std::string("\x00\x41\x20\xAC", 4), Encodings::UTF16));
    EXPECT_EQ(f.field->Text(), "A\xE2\x82\xAC");
}

TEST(TextField, mask_limitsTypingButKeepsAssignedText) {
    FieldInWindow f;
    f.field->Mask("0#");
    f.field->Text("600");
    EXPECT_EQ(f.field->Text(), "600") << "assigned text is not cut to the mask";

    ASSERT_TRUE(test::ShowActive(f.window->_Widget()));
    f.field->SetFocus();
    f.field->Text("");
    QTest::keyClicks(f.field->_Widget(), "7x-9");
    EXPECT_EQ(f.field->Text(), "7-") << "a letter is refused, and nothing past two places";
}

TEST(TextField, readOnly_refusesTypingButTakesAssignments) {
    FieldInWindow f;
    f.field->ReadOnly(true);
    ASSERT_TRUE(test::ShowActive(f.window->_Widget()));
    f.field->SetFocus();
    QTest::keyClicks(f.field->_Widget(), "typed");
    EXPECT_EQ(f.field->Text(), "");
    f.field->Text("/chosen/path");
    EXPECT_EQ(f.field->Text(), "/chosen/path");
    EXPECT_EQ(f.changes, 1);
}

TEST(TextArea, carriageReturns_readBackAsLineFeeds) {
    auto area = New<TextArea>();
    area->Text("first\r\rsecond\r\nthird\r");
    EXPECT_EQ(area->Text(), "first\n\nsecond\nthird\n");
}

TEST(TextArea, appendText_addsAtTheEndWithoutTouchingTheRest) {
    auto area = New<TextArea>();
    area->ReadOnly(true);
    area->Text("old\n");
    // Enough lines, some long enough to wrap, to fill several of the blocks
    // that appends are gathered in; each flush of the toolkit adds a batch.
    std::string expected = "old\n";
    for (int i = 0; i < 300; ++i) {
        const std::string line =
            "line " + std::to_string(i) + std::string(i % 7 == 0 ? 200 : 0, 'w');
        area->AppendText((line + "\n").c_str());
        expected += line + "\n";
        if (i % 50 == 0) {
            QCoreApplication::processEvents();
        }
    }
    EXPECT_EQ(area->Text().bytes(), expected);
    area->SelectAll();
    area->Copy();
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), expected)
        << "what is copied has line feeds, whatever separates the lines inside";
    EXPECT_FALSE(area->CanUndo()) << "a read-only area keeps no history";
}

TEST(TextArea, appendsInALoop_reachTheWidgetWhenTheToolkitRunsAndNotBefore) {
    auto area = New<TextArea>();
    area->Text("old\n");
    auto* widget = static_cast<QPlainTextEdit*>(area->_Widget());
    area->AppendText("one\r");
    area->AppendText("two\n");
    EXPECT_EQ(widget->toPlainText(), "old\n") << "one insertion for the whole batch, later";

    QCoreApplication::processEvents();

    EXPECT_EQ(widget->toPlainText(), "old\none\ntwo\n");
    area->AppendText("three\n");
    area->Text("new");
    QCoreApplication::processEvents();
    EXPECT_EQ(area->Text(), "new") << "an assignment drops appends still waiting";
}

TEST(TextArea, fixedPitchFamilyMissingHere_fallsBackToAFixedPitchFont) {
    // Whatever family stands in, a narrow and a wide letter take the same room.
    const auto evenlySpaced = [](const TextArea& area) {
        const QFontMetrics metrics(area._Widget()->font());
        return metrics.horizontalAdvance('i') == metrics.horizontalAdvance('M');
    };
    auto area = New<TextArea>();
    area->TextFont("Monaco");
    EXPECT_TRUE(evenlySpaced(*area));
    area->TextFont("System");
    EXPECT_FALSE(evenlySpaced(*area));
}

// Each editing command on a field holding "hello world" with "world" selected.
struct EditCase {
    const char* name;
    void (TextEdit::*act)();
    const char* textAfter;
    const char* clipboardAfter;
};

class EditCommandsOnField : public ::testing::TestWithParam<EditCase> {};

TEST_P(EditCommandsOnField, selectionPresent_commandActsOnIt) {
    const EditCase& c = GetParam();
    FieldInWindow f;
    f.field->Text("hello world");
    auto* line = static_cast<QLineEdit*>(f.field->_Widget());
    line->setSelection(6, 5);
    QApplication::clipboard()->setText("PASTED");

    (f.field.get()->*c.act)();

    EXPECT_EQ(f.field->Text(), c.textAfter);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), c.clipboardAfter);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, EditCommandsOnField,
    ::testing::Values(EditCase{"Cut", &TextEdit::Cut, "hello ", "world"},
                      EditCase{"Copy", &TextEdit::Copy, "hello world", "world"},
                      EditCase{"Paste", &TextEdit::Paste, "hello PASTED", "PASTED"},
                      EditCase{"Delete", &TextEdit::DeleteSelection, "hello ", "PASTED"}),
    [](const auto& testCase) { return std::string(testCase.param.name); });

TEST(TextEdit, canAct_followsSelectionReadOnlyAndClipboard) {
    FieldInWindow f;
    QApplication::clipboard()->setText("x");
    EXPECT_FALSE(f.field->CanCopy());
    EXPECT_FALSE(f.field->CanSelectAll()) << "nothing to select in an empty field";
    EXPECT_TRUE(f.field->CanPaste());

    f.field->Text("abc");
    f.field->SelectAll();
    EXPECT_TRUE(f.field->CanCopy());
    EXPECT_TRUE(f.field->CanCut());

    f.field->ReadOnly(true);
    EXPECT_TRUE(f.field->CanCopy());
    EXPECT_FALSE(f.field->CanCut());
    EXPECT_FALSE(f.field->CanDelete());
    EXPECT_FALSE(f.field->CanPaste());

    QApplication::clipboard()->clear();
    f.field->ReadOnly(false);
    EXPECT_FALSE(f.field->CanPaste());
}

}  // namespace
}  // namespace vx
