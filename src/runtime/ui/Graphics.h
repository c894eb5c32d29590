#pragma once

#include <cstdint>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"

class QPainter;

namespace vx {

class Picture;

// A drawing context over a surface that the toolkit is painting.
class Graphics : public Object {
public:
    Graphics(QPainter& painter, int64_t width, int64_t height);

    int64_t Width() const { return width_; }
    int64_t Height() const { return height_; }

    // Draws the source rectangle of the picture scaled into the destination
    // rectangle. A source reaching past the picture takes what there is.
    void DrawPicture(const Ref<Picture>& picture, int64_t x, int64_t y, int64_t width,
                     int64_t height, int64_t sourceX, int64_t sourceY, int64_t sourceWidth,
                     int64_t sourceHeight);
    // Draws the whole picture at its own size.
    void DrawPicture(const Ref<Picture>& picture, int64_t x, int64_t y);

private:
    QPainter& painter_;
    int64_t width_;
    int64_t height_;
};

}  // namespace vx
