#pragma once

#include <cstdint>
#include <exception>

#include "runtime/text/String.h"

namespace vx {

// Root of every failure the system raises. Raised by value and caught by
// reference to const, by class; subclasses are caught with their bases.
class RuntimeException : public std::exception {
public:
    RuntimeException() = default;
    ~RuntimeException() override = default;

    const char* what() const noexcept override { return Message.c_str(); }

    int64_t ErrorNumber = 0;
    String Message;
    // The newer text type's second description; nothing in the program sets it.
    String Reason;
};

// Declares a failure class that adds nothing to its base. Most of the tree is
// of this kind: the class itself is the information.
#define VX_DECLARE_EXCEPTION(Name, Base) \
    class Name : public Base {           \
    public:                              \
        using Base::Base;                \
    }

VX_DECLARE_EXCEPTION(EndException, RuntimeException);
VX_DECLARE_EXCEPTION(FunctionNotFoundException, RuntimeException);
VX_DECLARE_EXCEPTION(IllegalCastException, RuntimeException);
VX_DECLARE_EXCEPTION(InvalidParentException, RuntimeException);
VX_DECLARE_EXCEPTION(IOException, RuntimeException);
VX_DECLARE_EXCEPTION(KeyNotFoundException, RuntimeException);
VX_DECLARE_EXCEPTION(LogicException, RuntimeException);
VX_DECLARE_EXCEPTION(InvalidArgumentException, LogicException);
VX_DECLARE_EXCEPTION(MenuHasParentException, RuntimeException);
VX_DECLARE_EXCEPTION(NilObjectException, RuntimeException);
VX_DECLARE_EXCEPTION(OutOfBoundsException, RuntimeException);
VX_DECLARE_EXCEPTION(OutOfMemoryException, RuntimeException);
VX_DECLARE_EXCEPTION(PlatformNotSupportedException, RuntimeException);
VX_DECLARE_EXCEPTION(ServiceNotAvailableException, RuntimeException);
VX_DECLARE_EXCEPTION(StackOverflowException, RuntimeException);
VX_DECLARE_EXCEPTION(ThreadAlreadyRunningException, RuntimeException);
VX_DECLARE_EXCEPTION(ThreadEndException, RuntimeException);
VX_DECLARE_EXCEPTION(TypeMismatchException, RuntimeException);
VX_DECLARE_EXCEPTION(UnsupportedFormatException, RuntimeException);
VX_DECLARE_EXCEPTION(UnsupportedOperationException, RuntimeException);

#undef VX_DECLARE_EXCEPTION

// A failure reported by the platform's object runtime; carries the platform's
// handle of the failing object.
class ObjCException : public RuntimeException {
public:
    explicit ObjCException(void* handle = nullptr) : handle_(handle) {}
    void* handle() const { return handle_; }

private:
    void* handle_;
};

// Raised by the user interface guard when a thread other than the main thread
// touches a window, a control or a dialog.
class ThreadAccessingUIException : public RuntimeException {
public:
    ThreadAccessingUIException();
};

// Makes an exception of class E with the given number, for the many places
// that raise a failure whose number is its only information.
template <class E>
E MakeException(int64_t errorNumber) {
    E failure;
    failure.ErrorNumber = errorNumber;
    return failure;
}

}  // namespace vx
