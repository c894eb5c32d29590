#include "runtime/ui/Graphics.h"

#include <QImage>
#include <QPainter>

#include "runtime/ui/Picture.h"

namespace vx {

Graphics::Graphics(QPainter& painter, int64_t width, int64_t height)
    : painter_(painter), width_(width), height_(height) {}

void Graphics::DrawPicture(const Ref<Picture>& picture, int64_t x, int64_t y, int64_t width,
                           int64_t height, int64_t sourceX, int64_t sourceY, int64_t sourceWidth,
                           int64_t sourceHeight) {
    const QImage& image = picture->_Image();
    const QRectF target(static_cast<qreal>(x), static_cast<qreal>(y), static_cast<qreal>(width),
                        static_cast<qreal>(height));
    const QRectF source(static_cast<qreal>(sourceX), static_cast<qreal>(sourceY),
                        static_cast<qreal>(sourceWidth), static_cast<qreal>(sourceHeight));
    painter_.save();
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.drawImage(target, image, source);
    painter_.restore();
}

void Graphics::DrawPicture(const Ref<Picture>& picture, int64_t x, int64_t y) {
    DrawPicture(picture, x, y, picture->Width(), picture->Height(), 0, 0, picture->Width(),
                picture->Height());
}

}  // namespace vx
