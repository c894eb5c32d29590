#include "DecodedPackage.h"

#include <stdexcept>

namespace vx::test {
namespace {

class Cursor {
public:
    explicit Cursor(std::string_view bytes) : bytes_(bytes) {}

    bool atEnd() const { return offset_ == bytes_.size(); }

    std::string take(std::size_t count) {
        if (bytes_.size() - offset_ < count) {
            throw std::runtime_error("package cut short at offset " + std::to_string(offset_));
        }
        std::string taken(bytes_.substr(offset_, count));
        offset_ += count;
        return taken;
    }
    std::string pstring() { return take(static_cast<unsigned char>(take(1)[0])); }
    int32_t int32() {
        const std::string raw = take(4);
        uint32_t value = 0;
        for (const char c : raw) {
            value = value << 8 | static_cast<unsigned char>(c);
        }
        return static_cast<int32_t>(value);
    }

private:
    std::string_view bytes_;
    std::size_t offset_ = 0;
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const PackageRecord& record) {
    return out << "{" << record.name << " in '" << record.parent << "' type " << int{record.type}
               << " length " << record.length << " with " << record.contents.size() << " bytes}";
}

DecodedPackage DecodePackage(std::string_view bytes) {
    Cursor cursor(bytes);
    DecodedPackage package;
    package.version = cursor.pstring();
    package.name = cursor.pstring();
    package.uid = cursor.pstring();
    package.folderName = cursor.pstring();
    while (!cursor.atEnd()) {
        PackageRecord record;
        record.name = cursor.pstring();
        record.parent = cursor.pstring();
        record.type = static_cast<int8_t>(cursor.take(1)[0]);
        record.length = cursor.int32();
        if (record.type != 2) {
            record.contents = cursor.take(static_cast<uint32_t>(record.length));
        }
        package.records.push_back(std::move(record));
    }
    return package;
}

}  // namespace vx::test
