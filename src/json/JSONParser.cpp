#include "json/JSONParser.h"

#include <utility>

#include "json/JSONException.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/text/StringFunctions.h"
#include "runtime/values/MemoryBlock.h"

namespace vx {

JSONItem::JSONItem(const String& text) : JSONItem() {
    if (!Trim(text).isEmpty()) {
        Load(text);
    }
}

void JSONItem::Load(const String& text) {
    // Only a parse that succeeds replaces the values; the flag and the
    // settings of this item stay, whatever the text held.
    _data = Parse(text)->_data;
}

Ref<JSONItem> JSONItem::Parse(const String& text) {
    // The copy stays with the item after parsing, failed or not.
    _ParseBuffer = New<MemoryBlock>(0);
    _ParseBuffer->Operator_Convert(text);
    return JSONParser(*this, _ParseBuffer->bytes()).Parse();
}

Ref<JSONItem> JSONParser::Parse() {
    scanner_.skipWhiteSpace();
    const int first = scanner_.ParsePeek();
    if (first == '[') {
        // Set before anything is read, so that it stays when the text fails.
        loader_._mIsArray = true;
    } else if (first != '{') {
        throw JSONException("Parse Error: Expecting '{' or '['", 1, scanner_.position());
    }
    if (Ref<JSONItem> empty = openContainer(first == '[')) {
        return empty;
    }
    for (;;) {
        std::optional<Variant> member = parseMember();
        if (!member) {
            // A container opened: its own first member comes next.
            continue;
        }
        Variant value = std::move(*member);
        while (storeMember(value)) {
            Ref<JSONItem> closed = std::move(open_.back().item);
            open_.pop_back();
            if (open_.empty()) {
                return closed;
            }
            value = closed;
        }
    }
}

std::optional<Variant> JSONParser::parseMember() {
    OpenContainer& innermost = open_.back();
    if (!innermost.isArray) {
        scanner_.skipWhiteSpace();
        innermost.name = scanner_.parseString();
        scanner_.skipWhiteSpace();
        if (scanner_.ParseGet() != ':') {
            throw JSONException("Missing :", 5, scanner_.position());
        }
    }
    scanner_.skipWhiteSpace();
    return parseValue();
}

std::optional<Variant> JSONParser::parseValue() {
    // The three words are told apart by one read of four bytes, so "false"
    // comes in two pieces and whatever follows a word is the caller's.
    const std::string_view word = scanner_.ParseGet(4);
    if (JSONScanner::IsWord(word, "true")) {
        return Variant(true);
    }
    if (JSONScanner::IsWord(word, "fals")) {
        if (JSONScanner::IsWord(scanner_.ParseGet(1), "e")) {
            return Variant(false);
        }
        throw JSONException("Illegal Value", 10, scanner_.position());
    }
    if (JSONScanner::IsWord(word, "null")) {
        return Variant();
    }
    scanner_.back(word.size());
    if (word.empty()) {
        // The end of the text reads as nil; the container's next read fails.
        return Variant();
    }
    const char first = word.front();
    if (first == '-' || JSONScanner::IsDigit(first)) {
        return scanner_.parseNumber();
    }
    if (first == '"') {
        return Variant(scanner_.parseString());
    }
    if (first == '{' || first == '[') {
        if (Ref<JSONItem> empty = openContainer(first == '[')) {
            return Variant(empty);
        }
        return std::nullopt;
    }
    throw JSONException("Illegal Value", 10, scanner_.position());
}

Ref<JSONItem> JSONParser::openContainer(bool isArray) {
    if (static_cast<int64_t>(open_.size()) >= JSONItem::MaxDepth) {
        throw StackOverflowException();
    }
    scanner_.ParseGet();
    auto item = New<JSONItem>();
    scanner_.skipWhiteSpace();
    if (scanner_.ParsePeek() == (isArray ? ']' : '}')) {
        scanner_.ParseGet();
        // Unlike an empty array stored by name, the parser's is a true array.
        item->_mIsArray = isArray;
        return item;
    }
    open_.push_back({std::move(item), isArray, String()});
    return nullptr;
}

bool JSONParser::storeMember(const Variant& value) {
    OpenContainer& innermost = open_.back();
    if (innermost.isArray) {
        innermost.item->Append(value);
    } else {
        // A repeated name replaces the earlier value: the last one wins.
        innermost.item->Value(innermost.name, value);
    }
    scanner_.skipWhiteSpace();
    const int separator = scanner_.ParseGet();
    if (separator == ',') {
        return false;
    }
    if (separator == (innermost.isArray ? ']' : '}')) {
        return true;
    }
    if (innermost.isArray) {
        throw JSONException("A parsing error occurred", 2, scanner_.position());
    }
    throw JSONException("Missing , or }", 6, scanner_.position());
}

}  // namespace vx
