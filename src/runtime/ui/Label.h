#pragma once

#include <cstdint>

#include "runtime/ui/RectControl.h"

namespace vx {

// A static text.
class Label : public RectControl {
public:
    static constexpr int64_t kAlignLeft = 0;
    static constexpr int64_t kAlignCenter = 1;
    static constexpr int64_t kAlignRight = 2;

    Label();

    String Text() const;
    void Text(const String& text);
    int64_t TextAlign() const { return textAlign_; }
    void TextAlign(int64_t align);
    bool Multiline() const;
    void Multiline(bool multiline);

private:
    bool _CanTakeFocus() const override { return false; }

    int64_t textAlign_ = kAlignLeft;
};

}  // namespace vx
