// What parses is printed, parsed again and printed again: the two texts must
// be equal, so the printer writes nothing the parser reads differently.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "json/JSONException.h"
#include "json/JSONItem.h"
#include "runtime/core/RuntimeException.h"

namespace {

using vx::JSONItem;
using vx::Ref;
using vx::Variant;

// An overflowing number reads as an infinity, whose printed form is no JSON;
// only documents without one can come back.
bool holdsInfinity(const Ref<JSONItem>& root) {
    std::vector<Ref<JSONItem>> pending{root};
    while (!pending.empty()) {
        const Ref<JSONItem> item = pending.back();
        pending.pop_back();
        std::vector<Variant> values;
        if (item->IsArray()) {
            for (int64_t i = 0; i < item->Count(); ++i) {
                values.push_back(item->Value(i));
            }
        } else {
            const auto names = item->Names();
            for (int64_t i = 0; i <= names->Ubound(); ++i) {
                values.push_back(item->Value((*names)[i]));
            }
        }
        for (const Variant& value : values) {
            if (vx::VarType(value) == vx::VarTypes::Double &&
                !std::isfinite(vx::VariantToDouble(value))) {
                return true;
            }
            if (vx::VarType(value) == vx::VarTypes::Object) {
                pending.push_back(vx::RuntimeCheckCast<JSONItem>(vx::VariantToObject(value)));
            }
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto first = vx::New<JSONItem>();
    try {
        first->Load(vx::String(bytes, nullptr));
    } catch (const vx::JSONException&) {
        return 0;
    } catch (const vx::StackOverflowException&) {
        return 0;
    }
    if (holdsInfinity(first)) {
        return 0;
    }
    const vx::String printed = first->ToString();
    JSONItem second;
    second.Load(printed);
    const vx::String reprinted = second.ToString();
    if (printed != reprinted) {
        std::fprintf(stderr, "printed:   %s\nreprinted: %s\n", printed.c_str(), reprinted.c_str());
        std::abort();
    }
    return 0;
}
