#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>

#include "WindowHarness.h"
#include "runtime/text/TextEncoding.h"
#include "runtime/ui/TextArea.h"
#include "runtime/ui/TextField.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

struct FieldInWindow {
    Ref<Window> window = test::HiddenWindow();
    Ref<TextField> field = test::AddControl<TextField>(*window, "txtName", {0, 0, 200, 22});
    int changes = 0;

    FieldInWindow() {
        field->TextChange.AddHandler([this](TextField&) { ++changes; });
    }
};

TEST(TextField, textAssigned_raisesTextChangeOnceAndReadsBackAsUTF8) {
    FieldInWindow f;
    struct Case {
        String assigned;
        const char* read;
    };
    for (const Case& c :
         {Case{"My App", "My App"}, Case{"", ""},
          Case{String(std::string_view("caf\xE9"), Encodings::ISOLatin1), "caf\xC3\xA9"},
          Case{String(std::string("\x00\x41\x20\xAC", 4), Encodings::UTF16), "A\xE2\x82\xAC"}}) {
        const int before = f.changes;
        f.field->Text(c.assigned);
        EXPECT_EQ(f.field->Text(), c.read);
        EXPECT_EQ(f.field->Text().encoding(), Encodings::UTF8);
        EXPECT_EQ(f.changes, before + 1);
    }
}

// Typing goes through the mask and the read-only flag; assigned text passes
// both, also where the mask would refuse it.
TEST(TextField, userTypes_fieldTakesWhatMaskAndReadOnlyAllow) {
    struct Case {
        const char* mask;
        bool readOnly;
        const char* typed;
        const char* shown;
        int changes;  // one per keystroke that changed the text
    };
    for (const Case& c : {Case{"", false, "abc", "abc", 3}, Case{"0#", false, "7x-9", "7-", 2},
                          Case{"", true, "typed", "", 0}}) {
        FieldInWindow f;
        f.field->Mask(c.mask);
        f.field->ReadOnly(c.readOnly);
        ASSERT_TRUE(test::ShowActive(f.window->_Widget()));
        f.field->SetFocus();
        QTest::keyClicks(f.field->_Widget(), c.typed);
        EXPECT_EQ(f.field->Text(), c.shown) << c.typed;
        EXPECT_EQ(f.changes, c.changes) << c.typed;
        f.field->Text("600");
        EXPECT_EQ(f.field->Text(), "600") << c.typed;
    }
}

// Text gives back what it was given, byte for byte; only the display turns
// carriage returns into line ends. Once the user edits, the display's text is
// the text.
TEST(TextArea, assignedAndAppendedText_readsBackAsGivenUntilTheUserEdits) {
    auto area = New<TextArea>();
    auto* shown = static_cast<QPlainTextEdit*>(area->_Widget());
    area->Text("first\r\rsecond\r\nthird\r");
    area->AppendText(String("raw \xFF\r\n", nullptr));
    const std::string given = "first\r\rsecond\r\nthird\rraw \xFF\r\n";
    EXPECT_EQ(area->Text().bytes(), given);
    QCoreApplication::processEvents();
    const std::string displayed = "first\n\nsecond\nthird\nraw \xEF\xBF\xBD\n";
    EXPECT_EQ(shown->toPlainText().toStdString(), displayed);
    EXPECT_EQ(area->Text().bytes(), given) << "the display leaves the text alone";

    shown->moveCursor(QTextCursor::End);
    shown->insertPlainText("!");
    area->AppendText("more\r");
    EXPECT_EQ(area->Text().bytes(), displayed + "!more\r");
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
            "line " + std::to_string(i) + std::string(i % 7 == 0 ? 200 : 0, 'w') + "\n";
        area->AppendText(line.c_str());
        expected += line;
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

TEST(TextArea, longLogScrolledToALine_showsThatLineAtTheTop) {
    // The scroll bar counts lines, also of the parts of the log that have not
    // been laid out yet; a wrong count puts another line at the top.
    auto window = test::HiddenWindow();
    auto area = test::AddControl<TextArea>(*window, "log", QRect(0, 0, 520, 400));
    window->Visible(true);
    for (int i = 0; i < 2000; ++i) {
        area->AppendText(("line " + std::to_string(i) + "\n").c_str());
        if (i % 300 == 0) {
            QCoreApplication::processEvents();
        }
    }
    QCoreApplication::processEvents();
    auto* widget = static_cast<QPlainTextEdit*>(area->_Widget());
    for (const int line : {1000, 1500, 37}) {
        widget->verticalScrollBar()->setValue(line);
        QCoreApplication::processEvents();
        QTextCursor top = widget->cursorForPosition(QPoint(4, 4));
        top.select(QTextCursor::LineUnderCursor);
        EXPECT_EQ(top.selectedText().trimmed().toStdString(), "line " + std::to_string(line));
    }
    window->Close();
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
    auto area = New<TextArea>();
    for (const auto& [family, evenlySpaced] : {std::pair{"Monaco", true}, {"System", false}}) {
        area->TextFont(family);
        const QFontMetrics metrics(area->_Widget()->font());
        EXPECT_EQ(metrics.horizontalAdvance('i') == metrics.horizontalAdvance('M'), evenlySpaced)
            << family;
    }
}

TEST(TextEdit, commandWithPartOfTheTextSelected_actsOnTheSelectionOnly) {
    struct Case {
        void (TextEdit::*act)();
        const char* textAfter;
        const char* clipboardAfter;
    };
    for (const Case& c :
         {Case{&TextEdit::Cut, "hello ", "world"}, Case{&TextEdit::Copy, "hello world", "world"},
          Case{&TextEdit::Paste, "hello PASTED", "PASTED"},
          Case{&TextEdit::DeleteSelection, "hello ", "PASTED"}}) {
        FieldInWindow f;
        f.field->Text("hello world");
        static_cast<QLineEdit*>(f.field->_Widget())->setSelection(6, 5);
        QApplication::clipboard()->setText("PASTED");
        (f.field.get()->*c.act)();
        EXPECT_EQ(f.field->Text(), c.textAfter);
        EXPECT_EQ(QApplication::clipboard()->text().toStdString(), c.clipboardAfter);
    }
}

}  // namespace
}  // namespace vx
