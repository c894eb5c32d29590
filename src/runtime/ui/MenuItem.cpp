#include "runtime/ui/MenuItem.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>

#include "runtime/ui/Application.h"
#include "runtime/ui/EditCommands.h"
#include "runtime/ui/MenuBar.h"
#include "runtime/ui/TextEdit.h"
#include "runtime/ui/UITrap.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {

// "Cmd+Shift+N" -> the toolkit's key sequence. Cmd is the command modifier of
// the platform, which the toolkit calls Ctrl on every platform; the Control
// key of a Mac keyboard is its Meta.
QKeySequence ShortcutFromText(const QString& text) {
    QStringList parts = text.split('+', Qt::SkipEmptyParts);
    for (QString& part : parts) {
        const QString word = part.trimmed().toLower();
        if (word == "cmd" || word == "command") {
            part = "Ctrl";
        } else if (word == "ctrl" || word == "control") {
#ifdef Q_OS_MACOS
            part = "Meta";
#else
            part = "Ctrl";
#endif
        } else if (word == "option" || word == "alt") {
            part = "Alt";
        } else if (word == "shift") {
            part = "Shift";
        }
    }
    return QKeySequence::fromString(parts.join('+'), QKeySequence::PortableText);
}

}  // namespace

MenuItem::MenuItem() : action_(new QAction()) {
    QObject::connect(action_, &QAction::triggered, action_,
                     [this] { _CallFunctionWithExceptionHandling([this] { _Choose(); }); });
}

MenuItem::~MenuItem() {
    delete menu_;
    delete action_;
}

QAction* MenuItem::_Action() const {
    _UITrap();
    return action_;
}

QMenu* MenuItem::_Menu() const {
    return menu_;
}

void MenuItem::Name(const String& name) {
    name_ = name;
    _Action()->setObjectName(ToQString(name));
    if (menu_ != nullptr) {
        menu_->setObjectName(ToQString(name));
    }
}

void MenuItem::Text(const String& text) {
    text_ = text;
    QAction* action = _Action();
    action->setSeparator(text == "-");
    action->setText(ToQString(text));
    if (menu_ != nullptr) {
        menu_->setTitle(ToQString(text));
    }
}

void MenuItem::KeyboardShortcut(const String& shortcut) {
    shortcut_ = shortcut;
    _Action()->setShortcut(ShortcutFromText(ToQString(shortcut)));
}

bool MenuItem::Visible() const {
    return _Action()->isVisible();
}
void MenuItem::Visible(bool visible) {
    _Action()->setVisible(visible);
}
bool MenuItem::Enabled() const {
    return _Action()->isEnabled();
}
void MenuItem::Enabled(bool enabled) {
    _Action()->setEnabled(enabled);
}

void MenuItem::Append(Ref<MenuItem> child) {
    if (child->parent_ != nullptr) {
        throw MenuHasParentException();
    }
    auto* bar = dynamic_cast<MenuBar*>(this);
    if (bar == nullptr && menu_ == nullptr) {
        menu_ = new QMenu();
        menu_->setObjectName(ToQString(name_));
        menu_->setTitle(ToQString(text_));
        // What the items can do depends on the focus of the moment, which is
        // known for certain only when the menu opens.
        QObject::connect(menu_, &QMenu::aboutToShow, menu_, [this] { _UpdateEnabled(); });
        _Action()->setMenu(menu_);
    }
    child->parent_ = this;
    children_.push_back(child);
    if (bar != nullptr) {
        bar->_ChildAppended(child);
    } else {
        menu_->addAction(child->_Action());
    }
    child->_UpdateEnabled();
}

Ref<MenuItem> MenuItem::Item(int64_t index) const {
    if (index < 0 || index >= Count()) {
        return nullptr;
    }
    return children_[static_cast<std::size_t>(index)];
}

Ref<MenuItem> MenuItem::Child(const String& name) const {
    for (const Ref<MenuItem>& child : children_) {
        if (child->name_ == name) {
            return child;
        }
    }
    return nullptr;
}

Ref<MenuItem> MenuItem::_Lookup(const String& name) {
    if (name_ == name) {
        return Ref<MenuItem>(shared_from_this());
    }
    for (const Ref<MenuItem>& child : children_) {
        if (Ref<MenuItem> found = child->_Lookup(name)) {
            return found;
        }
    }
    return nullptr;
}

void MenuItem::_Choose() {
    Ref<Application> app = _GetAppObject();
    if (app && app->_HandleMenuCommand(name_)) {
        return;
    }
    const EditCommand* command = EditCommandNamed(name_);
    TextEdit* field = TextEdit::_Focused();
    if (command != nullptr && field != nullptr && (field->*command->canAct)()) {
        (field->*command->act)();
    }
}

bool MenuItem::_CanAct() const {
    if (!children_.empty()) {
        return true;
    }
    Ref<Application> app = _GetAppObject();
    if (app && app->_HasMenuHandler(name_)) {
        return true;
    }
    const EditCommand* command = EditCommandNamed(name_);
    TextEdit* field = TextEdit::_Focused();
    return command != nullptr && field != nullptr && (field->*command->canAct)();
}

bool MenuItem::_HasShortcut(const QKeySequence& keys) const {
    if (!action_->shortcut().isEmpty() && action_->shortcut() == keys) {
        return true;
    }
    return std::any_of(children_.begin(), children_.end(),
                       [&keys](const Ref<MenuItem>& child) { return child->_HasShortcut(keys); });
}

void MenuItem::_UpdateEnabled() {
    if (AutoEnable) {
        Enabled(_CanAct());
    }
    for (const Ref<MenuItem>& child : children_) {
        child->_UpdateEnabled();
    }
}

}  // namespace vx
