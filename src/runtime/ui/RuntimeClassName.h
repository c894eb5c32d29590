#pragma once

#include <typeinfo>

#include "runtime/text/String.h"

namespace vx {

// The system's name of an object's class, without namespaces:
// "NilObjectException", "frmMain".
String RuntimeClassName(const std::type_info& type);

}  // namespace vx
