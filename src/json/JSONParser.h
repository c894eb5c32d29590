#pragma once

// Builds a tree of new JSONItems from JSON text for the item that loads it,
// keeping the open containers on a stack of its own, so that a deep document
// costs heap rather than call stack, and refusing one deeper than
// JSONItem::MaxDepth with StackOverflowException.

#include <optional>
#include <string_view>
#include <vector>

#include "json/JSONItem.h"
#include "json/JSONScanner.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"
#include "runtime/values/Variant.h"

namespace vx {

class JSONParser {
public:
    // The text must outlive the parser. The loader is the item whose Load
    // runs: text that opens with "[" makes it an array before anything else.
    JSONParser(JSONItem& loader, std::string_view text) : loader_(loader), scanner_(text) {}

    // The top-level object or array. Whatever follows its closing bracket is
    // not read.
    Ref<JSONItem> Parse();

private:
    // A container whose members are still being read.
    struct OpenContainer {
        Ref<JSONItem> item;
        bool isArray = false;
        // The name of the member being read, in an object.
        String name;
    };

    // A value complete, or nothing when it opened a container that now waits
    // for its first member.
    std::optional<Variant> parseValue();
    // The next member of the innermost open container, read as parseValue.
    std::optional<Variant> parseMember();
    // Reads the opening bracket. An empty container comes back whole;
    // otherwise it is pushed and nil comes back.
    Ref<JSONItem> openContainer(bool isArray);
    // Stores a whole member in the innermost open container and reads what
    // follows it: true when the container ends there, false after a comma.
    bool storeMember(const Variant& value);

    JSONItem& loader_;
    JSONScanner scanner_;
    std::vector<OpenContainer> open_;
};

}  // namespace vx
