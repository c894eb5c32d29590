#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

class QWidget;

namespace vx {

class Window;

// Anything placed in a window. A control is known in its window by its Name,
// which is also the object name of its toolkit widget, so tests and code find
// it under the same word.
class Control : public Object {
public:
    ~Control() override;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const String& Name() const { return name_; }
    void Name(const String& name);
    // The window the control was added to, or nil.
    Window* ParentWindow() const { return window_; }
    // The page of the enclosing page panel that the control stands on, as the
    // page's Value plus 1; 0 means on every page.
    int64_t TabPanelIndex() const { return tabPanelIndex_; }
    void TabPanelIndex(int64_t index);

    // The toolkit widget; every operation on the control passes through here,
    // so this is where the guard against other threads stands.
    QWidget* _Widget() const;
    // The control whose widget this is, or nil.
    static Control* _FromWidget(const QWidget* widget);

protected:
    explicit Control(QWidget* widget);

    friend class Window;
    // Called by the window when the control is added, when the control's
    // container may have changed, and once when the window has been built.
    virtual void _AddedTo(Window* window);
    virtual void _PlacementChanged() {}
    virtual void _Opened() {}

private:
    QWidget* widget_;
    Window* window_ = nullptr;
    String name_;
    int64_t tabPanelIndex_ = 0;
};

}  // namespace vx
