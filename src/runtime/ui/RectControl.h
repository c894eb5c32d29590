#pragma once

#include <cstdint>

#include "runtime/ui/Control.h"
#include "runtime/values/Color.h"

namespace vx {

// A control with a frame. Its Left and Top are in window coordinates, also for
// a control on a page of a panel. When its container changes size the control
// follows its Lock flags: locked on both opposite sides it stretches, locked on
// the far side only it moves with that side, otherwise it stays.
class RectControl : public Control {
public:
    int64_t Left() const { return Frame().left; }
    void Left(int64_t left);
    int64_t Top() const { return Frame().top; }
    void Top(int64_t top);
    int64_t Width() const { return Frame().width; }
    void Width(int64_t width);
    int64_t Height() const { return Frame().height; }
    void Height(int64_t height);

    bool LockLeft() const { return locks_.left; }
    void LockLeft(bool locked);
    bool LockTop() const { return locks_.top; }
    void LockTop(bool locked);
    bool LockRight() const { return locks_.right; }
    void LockRight(bool locked);
    bool LockBottom() const { return locks_.bottom; }
    void LockBottom(bool locked);

    // The name of the control that encloses this one (a page panel), or empty
    // for the window itself.
    String InitialParent() const { return initialParent_; }
    void InitialParent(const String& name);
    // The enclosing control found by InitialParent, or nil.
    RectControl* Parent() const { return parent_; }

    bool Enabled() const;
    void Enabled(bool enabled);
    // The control's own flag; a control on a page that is not shown keeps it.
    bool Visible() const;
    void Visible(bool visible);
    // The tool tip.
    String HelpTag() const;
    void HelpTag(const String& tag);
    // Order of the keyboard focus among the controls of the same container.
    int64_t TabIndex() const { return tabIndex_; }
    void TabIndex(int64_t index);
    bool TabStop() const { return tabStop_; }
    void TabStop(bool stop);
    // Lets the container show through where the control draws nothing.
    bool Transparent() const { return transparent_; }
    void Transparent(bool transparent);

    // "System" is the platform's own font; a size of 0 the platform's own size.
    String TextFont() const { return textFont_; }
    void TextFont(const String& family);
    double TextSize() const { return textSize_; }
    void TextSize(double size);
    bool Bold() const { return bold_; }
    void Bold(bool bold);
    bool Italic() const { return italic_; }
    void Italic(bool italic);
    bool Underline() const { return underline_; }
    void Underline(bool underline);
    Color TextColor() const { return textColor_; }
    void TextColor(Color color);

    void SetFocus();

    struct Rect {
        int64_t left = 0, top = 0, width = 0, height = 0;
    };
    // The frame in window coordinates as it stands now.
    Rect Frame() const;
    // Puts the widget where the frame says, and the controls inside it after it.
    void _Place();

protected:
    explicit RectControl(QWidget* widget);
    // Whether the control can take the keyboard focus at all (labels cannot).
    virtual bool _CanTakeFocus() const { return true; }
    void ApplyFocusPolicy();

private:
    struct Size {
        int64_t width = 0, height = 0;
    };
    struct Locks {
        bool left = true, top = true, right = false, bottom = false;
    };

    void _AddedTo(Window* window) override;
    void _PlacementChanged() override;
    Size ContainerSize() const;
    RectControl* FindParent() const;
    // Makes the given frame the one the locks start from, at the container's
    // present size.
    void Rebase(const Rect& frame);
    // One side of the frame or one lock changed; the others stay as they are.
    void SetFrameSide(int64_t Rect::*side, int64_t value);
    void SetLock(bool Locks::*lock, bool locked);
    void ApplyFont();

    Rect base_;
    Size baseContainer_;
    Locks locks_;
    String initialParent_;
    RectControl* parent_ = nullptr;
    int64_t tabIndex_ = 0;
    bool tabStop_ = true;
    bool visible_ = true;
    bool transparent_ = false;
    String textFont_ = "System";
    double textSize_ = 0;
    bool bold_ = false;
    bool italic_ = false;
    bool underline_ = false;
    Color textColor_;
};

}  // namespace vx
