#pragma once

#include <cstdint>
#include <vector>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

class QAction;
class QKeySequence;
class QMenu;

namespace vx {

// An entry of a menu, and the menu of its children once it has any. The item
// is one toolkit action, so the one menu bar can stand in every window at once
// and a change to an item shows everywhere.
class MenuItem : public Object, public std::enable_shared_from_this<MenuItem> {
public:
    MenuItem();
    ~MenuItem() override;
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    // Nothing to do beyond construction; kept so that the system's code reads
    // as it is described.
    void Constructor() {}

    String Name() const { return name_; }
    void Name(const String& name);
    String Text() const { return text_; }
    // "&" marks the mnemonic; "-" alone makes the item a separator.
    void Text(const String& text);
    String KeyboardShortcut() const { return shortcut_; }
    // "Cmd+N" and its like; Cmd is the platform's command modifier (Control
    // where there is no Command key).
    void KeyboardShortcut(const String& shortcut);
    bool Visible() const;
    void Visible(bool visible);
    bool Enabled() const;
    void Enabled(bool enabled);
    // When True the enabled state follows whether the item can act right now.
    bool AutoEnable = true;

    void Append(Ref<MenuItem> child);
    int64_t Count() const { return static_cast<int64_t>(children_.size()); }
    // The child at a position counted from 0, or nil.
    Ref<MenuItem> Item(int64_t index) const;
    // The direct child of that name, or nil.
    Ref<MenuItem> Child(const String& name) const;
    // The item of that name anywhere under this one (this one included), or nil.
    Ref<MenuItem> _Lookup(const String& name);

    // What choosing the item does: the application's handler bound to its name,
    // else the text command of that name on the focused text control.
    virtual void _Choose();
    // Sets Enabled from what the item can do now, for this item and all below.
    void _UpdateEnabled();
    // Whether choosing the item would do anything at this moment.
    virtual bool _CanAct() const;
    // Whether this item or one below it answers to the keys.
    bool _HasShortcut(const QKeySequence& keys) const;

    QAction* _Action() const;
    // The popup of the children; made with the first child.
    QMenu* _Menu() const;
    MenuItem* _Parent() const { return parent_; }

private:
    QAction* action_;
    QMenu* menu_ = nullptr;
    MenuItem* parent_ = nullptr;
    std::vector<Ref<MenuItem>> children_;
    String name_;
    String text_;
    String shortcut_;
};

}  // namespace vx
