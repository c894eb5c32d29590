#pragma once

namespace vx {

// Root of every class whose objects the system shares by reference, so that a
// Variant can hold any of them and ask for its class at run time.
class Object {
public:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
    virtual ~Object() = default;
};

}  // namespace vx
