#include "runtime/ui/Window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>
#include <typeinfo>

#include "runtime/ui/MenuBar.h"
#include "runtime/ui/PushButton.h"
#include "runtime/ui/RectControl.h"
#include "runtime/ui/RuntimeClassName.h"
#include "runtime/ui/RuntimeLifecycle.h"
#include "runtime/ui/UITrap.h"
#include "runtime/ui/internal/DesktopUIServices.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {

// The record of open windows: an open window lives here, so that a handler
// may drop its reference after Show.
struct OpenWindowRecord {
    std::vector<Ref<Window>> windows;
    bool finalizerRegistered = false;
};

OpenWindowRecord& Record() {
    static OpenWindowRecord record;
    return record;
}

void Remember(const Ref<Window>& window) {
    OpenWindowRecord& record = Record();
    if (std::find(record.windows.begin(), record.windows.end(), window) != record.windows.end()) {
        return;
    }
    record.windows.push_back(window);
    if (!record.finalizerRegistered) {
        record.finalizerRegistered = true;
        RuntimeAddFinalizer([] {
            OpenWindowRecord& shutting = Record();
            std::vector<Ref<Window>> windows = std::move(shutting.windows);
            shutting.windows.clear();
            shutting.finalizerRegistered = false;
            for (const Ref<Window>& open : windows) {
                open->Hide();
            }
        });
    }
}

void Forget(const Window* window) {
    std::erase_if(Record().windows,
                  [window](const Ref<Window>& open) { return open.get() == window; });
}

// The area below the menu bar that the controls stand on.
class ContentWidget : public QWidget {
public:
    Window* owner = nullptr;

protected:
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        if (owner != nullptr) {
            owner->_ContentResized(width(), height());
        }
    }

    // A text field leaves the Return key to its window, which gives it to the
    // default button, as a dialog would.
    void keyPressEvent(QKeyEvent* event) override {
        if (owner != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
            owner->_ReturnPressed();
            return;
        }
        QWidget::keyPressEvent(event);
    }
};

class WindowWidget : public QWidget {
public:
    Window* owner = nullptr;
    QMenuBar* bar;
    ContentWidget* content;
    bool menuBarVisible = true;

    WindowWidget() : bar(new QMenuBar(this)), content(new ContentWidget()) {
        content->setParent(this);
    }

    int MenuBarHeight() const {
        if (!menuBarVisible || bar->isNativeMenuBar() || bar->actions().isEmpty()) {
            return 0;
        }
        bar->ensurePolished();
        return bar->sizeHint().height();
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        const int barHeight = MenuBarHeight();
        bar->setGeometry(0, 0, width(), barHeight);
        bar->setVisible(barHeight > 0);
        content->setGeometry(0, barHeight, width(), height() - barHeight);
    }

    void closeEvent(QCloseEvent* event) override {
        // Closing is the user's input too, and waits like the rest until the
        // long loop that is yielding has ended.
        if (DesktopUIServices::_Yielding()) {
            event->ignore();
            QTimer::singleShot(0, this, [this] { close(); });
            return;
        }
        event->accept();
        if (owner != nullptr) {
            owner->_Closed();
        }
    }
};

WindowWidget* Frame(const Window& window) {
    return static_cast<WindowWidget*>(window._Widget());
}

}  // namespace

Window::Window()
    : widget_(new WindowWidget()), content_(static_cast<WindowWidget*>(widget_)->content) {
    auto* frame = static_cast<WindowWidget*>(widget_);
    frame->owner = this;
    frame->content->owner = this;
    frame->setAttribute(Qt::WA_DeleteOnClose, false);
    ApplySize();
}

Window::~Window() {
    auto* frame = static_cast<WindowWidget*>(widget_);
    frame->owner = nullptr;
    frame->content->owner = nullptr;
    if (menuBar_) {
        menuBar_->_Detach(frame->bar);
    }
    controls_.clear();
    delete widget_;
}

QWidget* Window::_Widget() const {
    _UITrap();
    return widget_;
}

QWidget* Window::_Content() const {
    _UITrap();
    return content_;
}

String Window::_ClassName() const {
    return RuntimeClassName(typeid(*this));
}

void Window::Constructor() {
    _Widget()->setObjectName(ToQString(_ClassName()));
    Layout();
    CreateControls();
    opened_ = true;
    _UpdateTabOrder();
    Remember(Ref<Window>(shared_from_this()));
    for (const Ref<Control>& control : std::vector<Ref<Control>>(controls_)) {
        control->_Opened();
    }
    Open.Raise(*this);
    if (visible_) {
        Show();
    }
}

void Window::Show() {
    QWidget* widget = _Widget();
    visible_ = true;
    closed_ = false;
    Remember(Ref<Window>(shared_from_this()));
    // The menu bar has its final height only now that it is polished.
    ApplySize();
    widget->show();
    widget->raise();
    widget->activateWindow();
}

void Window::Hide() {
    visible_ = false;
    _Widget()->hide();
}

void Window::Close() {
    _Widget()->close();
}

void Window::_Closed() {
    visible_ = false;
    closed_ = true;
    // The window may be closing from inside one of its own events; it leaves
    // the record (and may be destroyed) once that event is over.
    std::weak_ptr<Window> closing = weak_from_this();
    QMetaObject::invokeMethod(
        QApplication::instance(),
        [closing] {
            if (auto window = closing.lock(); window && window->closed_) {
                Forget(window.get());
            }
        },
        Qt::QueuedConnection);
}

bool Window::_IsOpen() const {
    return opened_ && !closed_;
}

void Window::MenuBar(Ref<vx::MenuBar> bar) {
    WindowWidget* frame = Frame(*this);
    if (menuBar_) {
        menuBar_->_Detach(frame->bar);
    }
    menuBar_ = std::move(bar);
    if (menuBar_) {
        menuBar_->_AttachTo(frame->bar);
    }
    ApplySize();
}

String Window::Title() const {
    return FromQString(_Widget()->windowTitle());
}
void Window::Title(const String& title) {
    _Widget()->setWindowTitle(ToQString(title));
}

void Window::Width(int64_t width) {
    _ContentResized(width, contentHeight_);
    ApplySize();
}

void Window::Height(int64_t height) {
    _ContentResized(contentWidth_, height);
    ApplySize();
}

void Window::MinWidth(int64_t width) {
    minWidth_ = width;
    ApplySize();
}

void Window::MinHeight(int64_t height) {
    minHeight_ = height;
    ApplySize();
}

void Window::MaxWidth(int64_t width) {
    maxWidth_ = width;
    ApplySize();
}

void Window::MaxHeight(int64_t height) {
    maxHeight_ = height;
    ApplySize();
}

void Window::Resizeable(bool resizeable) {
    resizeable_ = resizeable;
    ApplySize();
}

void Window::ApplySize() {
    WindowWidget* frame = Frame(*this);
    const int barHeight = frame->MenuBarHeight();
    const auto clamp = [](int64_t value) {
        return static_cast<int>(std::clamp<int64_t>(value, 0, QWIDGETSIZE_MAX));
    };
    const QSize size(clamp(contentWidth_), clamp(contentHeight_ + barHeight));
    if (resizeable_) {
        frame->setMinimumSize(clamp(minWidth_), clamp(minHeight_ + barHeight));
        frame->setMaximumSize(clamp(maxWidth_), clamp(maxHeight_ + barHeight));
    } else {
        frame->setFixedSize(size);
    }
    frame->resize(size);
}

bool Window::Visible() const {
    return opened_ ? _Widget()->isVisible() : visible_;
}

void Window::Visible(bool visible) {
    if (!opened_) {
        visible_ = visible;
    } else if (visible) {
        Show();
    } else {
        Hide();
    }
}

void Window::CloseButton(bool shown) {
    closeButton_ = shown;
    ApplyFlags();
}

void Window::MinimizeButton(bool shown) {
    minimizeButton_ = shown;
    ApplyFlags();
}

void Window::MaximizeButton(bool shown) {
    maximizeButton_ = shown;
    ApplyFlags();
}

void Window::ApplyFlags() {
    QWidget* widget = _Widget();
    Qt::WindowFlags flags = Qt::Window;
    if (!(closeButton_ && minimizeButton_ && maximizeButton_)) {
        flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint;
        flags.setFlag(Qt::WindowCloseButtonHint, closeButton_);
        flags.setFlag(Qt::WindowMinimizeButtonHint, minimizeButton_);
        flags.setFlag(Qt::WindowMaximizeButtonHint, maximizeButton_);
    }
    if (widget->windowFlags() != flags) {
        const bool shown = widget->isVisible();
        widget->setWindowFlags(flags);
        widget->setVisible(shown);
    }
}

void Window::MenuBarVisible(bool visible) {
    menuBarVisible_ = visible;
    Frame(*this)->menuBarVisible = visible;
    ApplySize();
}

void Window::HasBackColor(bool has) {
    hasBackColor_ = has;
    ApplyBackground();
}

void Window::BackColor(Color color) {
    backColor_ = color;
    ApplyBackground();
}

void Window::ApplyBackground() {
    QWidget* content = _Content();
    content->setAutoFillBackground(hasBackColor_);
    QPalette palette = QApplication::palette(content);
    if (hasBackColor_) {
        palette.setColor(QPalette::Window,
                         QColor(backColor_.Red, backColor_.Green, backColor_.Blue));
    }
    content->setPalette(palette);
}

void Window::_AddControl(Ref<Control> control) {
    controls_.push_back(control);
    control->_AddedTo(this);
    // A control may be the container that others name as their parent.
    for (const Ref<Control>& other : controls_) {
        auto* rect = dynamic_cast<RectControl*>(other.get());
        if (other != control && rect != nullptr && rect->InitialParent() == control->Name()) {
            other->_PlacementChanged();
        }
    }
    if (opened_) {
        control->_Opened();
        _UpdateTabOrder();
    }
}

Ref<Control> Window::_ControlByName(const String& name) const {
    for (const Ref<Control>& control : controls_) {
        if (control->Name() == name) {
            return control;
        }
    }
    return nullptr;
}

std::vector<RectControl*> Window::_ChildrenOf(const RectControl* container) const {
    std::vector<RectControl*> children;
    for (const Ref<Control>& control : controls_) {
        auto* rect = dynamic_cast<RectControl*>(control.get());
        if (rect != nullptr && rect->Parent() == container) {
            children.push_back(rect);
        }
    }
    return children;
}

void Window::_ContentResized(int64_t width, int64_t height) {
    if (width == contentWidth_ && height == contentHeight_) {
        return;
    }
    contentWidth_ = width;
    contentHeight_ = height;
    for (RectControl* control : _ChildrenOf(nullptr)) {
        control->_Place();
    }
}

void Window::_ReturnPressed() {
    for (const Ref<Control>& control : controls_) {
        auto* button = dynamic_cast<PushButton*>(control.get());
        if (button != nullptr && button->Default() && button->_Widget()->isVisible() &&
            button->_Widget()->isEnabled()) {
            button->Push();
            return;
        }
    }
}

void Window::_UpdateTabOrder() {
    if (!opened_) {
        return;
    }
    // Within a container the TabIndex decides; the containers themselves are
    // ordered by theirs. Equal places keep the order of creation.
    struct Stop {
        std::vector<int64_t> path;
        QWidget* widget;
    };
    std::vector<Stop> stops;
    for (const Ref<Control>& control : controls_) {
        auto* rect = dynamic_cast<RectControl*>(control.get());
        if (rect == nullptr || rect->_Widget()->focusPolicy() == Qt::NoFocus) {
            continue;
        }
        std::vector<int64_t> path;
        for (const RectControl* at = rect; at != nullptr; at = at->Parent()) {
            path.insert(path.begin(), at->TabIndex());
        }
        stops.push_back({std::move(path), rect->_Widget()});
    }
    std::stable_sort(stops.begin(), stops.end(),
                     [](const Stop& a, const Stop& b) { return a.path < b.path; });
    for (std::size_t i = 1; i < stops.size(); ++i) {
        QWidget::setTabOrder(stops[i - 1].widget, stops[i].widget);
    }
}

Ref<Window> _GetImplicitWindow(const String& className) {
    for (const Ref<Window>& window : Record().windows) {
        if (window->_IsOpen() && window->_ClassName() == className) {
            return window;
        }
    }
    return nullptr;
}

std::vector<Ref<Window>> _OpenWindows() {
    std::vector<Ref<Window>> open;
    for (const Ref<Window>& window : Record().windows) {
        if (window->_IsOpen()) {
            open.push_back(window);
        }
    }
    return open;
}

}  // namespace vx
