#include "runtime/ui/EditCommands.h"

#include <array>

#include "runtime/ui/TextEdit.h"

namespace vx {

namespace {
const std::array<EditCommand, 6> commands{{
    {"EditUndo", &TextEdit::CanUndo, &TextEdit::Undo},
    {"EditCut", &TextEdit::CanCut, &TextEdit::Cut},
    {"EditCopy", &TextEdit::CanCopy, &TextEdit::Copy},
    {"EditPaste", &TextEdit::CanPaste, &TextEdit::Paste},
    {"EditClear", &TextEdit::CanDelete, &TextEdit::DeleteSelection},
    {"EditSelectAll", &TextEdit::CanSelectAll, &TextEdit::SelectAll},
}};
}  // namespace

const EditCommand* EditCommandNamed(const String& itemName) {
    for (const EditCommand& command : commands) {
        if (itemName == command.itemName) {
            return &command;
        }
    }
    return nullptr;
}

}  // namespace vx
