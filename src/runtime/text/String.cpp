#include "runtime/text/String.h"

#include "runtime/text/TextEncoding.h"

namespace vx {
namespace {

std::shared_ptr<const std::string> share(std::string&& bytes) {
    if (bytes.empty()) {
        return nullptr;
    }
    return std::make_shared<const std::string>(std::move(bytes));
}

}  // namespace

String::String(const char* utf8Literal) : String(std::string_view(utf8Literal), Encodings::UTF8) {}

String::String(std::string_view bytes, const TextEncoding* encoding)
    : bytes_(share(std::string(bytes))), encoding_(encoding) {}

String::String(std::string&& bytes, const TextEncoding* encoding)
    : bytes_(share(std::move(bytes))), encoding_(encoding) {}

String RuntimeAddString(const String& left, const String& right) {
    const TextEncoding* tag = left.encoding() ? left.encoding() : right.encoding();
    if (right.isEmpty()) {
        return left.withEncoding(tag);
    }
    if (left.isEmpty()) {
        return right.withEncoding(tag);
    }
    std::string joined;
    joined.reserve(left.byteLength() + right.byteLength());
    joined.append(left.bytes()).append(right.bytes());
    return String(std::move(joined), tag);
}

int32_t RuntimeStringCompare(const String& left, const String& right) {
    return _CompareStringBytes(left.bytes(), right.bytes());
}

int32_t _CompareStringBytes(std::string_view left, std::string_view right) {
    const int order = left.compare(right);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

}  // namespace vx
