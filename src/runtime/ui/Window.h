#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"
#include "runtime/ui/Event.h"
#include "runtime/values/Color.h"

class QWidget;

namespace vx {

class Control;
class MenuBar;
class RectControl;

// A top-level window with a menu bar and controls placed at pixel positions.
// An open window keeps itself alive until the user closes it, so code may drop
// its reference right after Show. Width and Height are those of the content,
// below the menu bar.
class Window : public Object, public std::enable_shared_from_this<Window> {
public:
    Window();
    ~Window() override;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Builds the window: Layout, CreateControls, the controls' Open events, the
    // window's Open event; then shows it if Visible is True.
    void Constructor();

    void Show();
    void Hide();
    void Close();

    Ref<vx::MenuBar> MenuBar() const { return menuBar_; }
    void MenuBar(Ref<vx::MenuBar> bar);

    String Title() const;
    void Title(const String& title);
    int64_t Width() const { return contentWidth_; }
    void Width(int64_t width);
    int64_t Height() const { return contentHeight_; }
    void Height(int64_t height);
    int64_t MinWidth() const { return minWidth_; }
    void MinWidth(int64_t width);
    int64_t MinHeight() const { return minHeight_; }
    void MinHeight(int64_t height);
    int64_t MaxWidth() const { return maxWidth_; }
    void MaxWidth(int64_t width);
    int64_t MaxHeight() const { return maxHeight_; }
    void MaxHeight(int64_t height);
    // Before the window is built this only says whether it will show then.
    bool Visible() const;
    void Visible(bool visible);
    bool Resizeable() const { return resizeable_; }
    void Resizeable(bool resizeable);
    bool CloseButton() const { return closeButton_; }
    void CloseButton(bool shown);
    bool MinimizeButton() const { return minimizeButton_; }
    void MinimizeButton(bool shown);
    bool MaximizeButton() const { return maximizeButton_; }
    void MaximizeButton(bool shown);
    bool MenuBarVisible() const { return menuBarVisible_; }
    void MenuBarVisible(bool visible);
    // BackColor paints the content only while HasBackColor is True.
    bool HasBackColor() const { return hasBackColor_; }
    void HasBackColor(bool has);
    Color BackColor() const { return backColor_; }
    void BackColor(Color color);

    Event<Window&> Open;

    // Adds the control under its Name; the window keeps it.
    void _AddControl(Ref<Control> control);
    // The control of that name, or nil.
    Ref<Control> _ControlByName(const String& name) const;
    const std::vector<Ref<Control>>& _Controls() const { return controls_; }
    // The widget that the controls stand on, below the menu bar.
    QWidget* _Content() const;
    QWidget* _Widget() const;
    // The class name of the object, as _GetImplicitWindow is asked for it.
    String _ClassName() const;

    // Called by the toolkit.
    void _ContentResized(int64_t width, int64_t height);
    void _Closed();
    // Built and not closed since.
    bool _IsOpen() const;
    void _ReturnPressed();
    void _UpdateTabOrder();
    // The controls that stand inside that one.
    std::vector<RectControl*> _ChildrenOf(const RectControl* container) const;

protected:
    // Filled in by a window class: the window's own properties, then its controls.
    virtual void Layout() {}
    virtual void CreateControls() {}

private:
    void ApplySize();
    void ApplyFlags();
    void ApplyBackground();

    QWidget* widget_;
    QWidget* content_;
    Ref<vx::MenuBar> menuBar_;
    std::vector<Ref<Control>> controls_;
    int64_t contentWidth_ = 300;
    int64_t contentHeight_ = 300;
    int64_t minWidth_ = 64;
    int64_t minHeight_ = 64;
    int64_t maxWidth_ = 32000;
    int64_t maxHeight_ = 32000;
    bool visible_ = true;
    bool opened_ = false;
    bool closed_ = false;
    bool resizeable_ = true;
    bool closeButton_ = true;
    bool minimizeButton_ = true;
    bool maximizeButton_ = true;
    bool menuBarVisible_ = true;
    bool hasBackColor_ = false;
    Color backColor_{255, 255, 255, 0};
};

// The open window of that class ("frmMain"), or nil.
Ref<Window> _GetImplicitWindow(const String& className);
// Every open window, in the order they were opened.
std::vector<Ref<Window>> _OpenWindows();

}  // namespace vx
