#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "runtime/core/RuntimeException.h"

namespace vx {

// A shared reference to an object of the system. Reaching a member through a
// nil Ref raises NilObjectException instead of crashing, as every member
// access through nil does in this program.
template <class T>
class Ref {
public:
    Ref() = default;
    Ref(std::nullptr_t) {}
    Ref(std::shared_ptr<T> object) : object_(std::move(object)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other) : object_(other.shared()) {}

    T* operator->() const { return &**this; }
    T& operator*() const {
        if (!object_) {
            throw NilObjectException();
        }
        return *object_;
    }

    T* get() const { return object_.get(); }
    const std::shared_ptr<T>& shared() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    friend bool operator==(const Ref& a, const Ref& b) { return a.object_ == b.object_; }
    friend bool operator==(const Ref& a, std::nullptr_t) { return a.object_ == nullptr; }

private:
    std::shared_ptr<T> object_;
};

// Makes a new object of class T held by a Ref, as the system's `New` does.
template <class T, class... Args>
Ref<T> New(Args&&... args) {
    return Ref<T>(std::make_shared<T>(std::forward<Args>(args)...));
}

// True when the object is of class T or of one of its subclasses; nil is of no class.
template <class T, class U>
bool RuntimeObjectIsa(const Ref<U>& object) {
    return dynamic_cast<T*>(object.get()) != nullptr;
}

// Gives the object back as a T, or raises IllegalCastException when it is not
// one. Nil passes as nil: a cast has nothing to check on it.
template <class T, class U>
Ref<T> RuntimeCheckCast(const Ref<U>& object) {
    if (!object) {
        return nullptr;
    }
    auto cast = std::dynamic_pointer_cast<T>(object.shared());
    if (!cast) {
        throw IllegalCastException();
    }
    return Ref<T>(std::move(cast));
}

}  // namespace vx
