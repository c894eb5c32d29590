#include "runtime/ui/RuntimeClassName.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "runtime/text/TextEncoding.h"

namespace vx {

String RuntimeClassName(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    std::string name = status == 0 && demangled ? demangled.get() : type.name();
    // The system's classes all live in one namespace; its name is no part of
    // theirs.
    if (auto colons = name.rfind("::"); colons != std::string::npos) {
        name.erase(0, colons + 2);
    }
    return String(std::move(name), Encodings::UTF8);
}

}  // namespace vx
