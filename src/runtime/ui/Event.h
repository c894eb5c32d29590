#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "runtime/ui/Application.h"

namespace vx {

// One event of one object (a button's Action, a field's TextChange): the
// handlers bound to it, called in the order of binding. Every call runs under
// the application's exception handling, so a failure in a handler ends in the
// default report instead of unwinding through the toolkit.
template <class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    // Binds a handler; the counterpart of the system's RuntimeAddEventHandler.
    void AddHandler(Handler handler) { handlers_.push_back(std::move(handler)); }

    // Binds a method of an object that outlives the event's owner, as a window
    // outlives its controls.
    template <class Object, class... Params>
    void AddHandler(Object* object, void (Object::*method)(Params...)) {
        handlers_.push_back(
            [object, method](Args... args) { (object->*method)(std::forward<Args>(args)...); });
    }

    bool IsImplemented() const { return !handlers_.empty(); }

    void Raise(Args... args) const {
        for (const Handler& handler : handlers_) {
            _CallFunctionWithExceptionHandling([&] { handler(args...); });
        }
    }

private:
    std::vector<Handler> handlers_;
};

}  // namespace vx
