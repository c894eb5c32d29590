#include "runtime/ui/Picture.h"

#include <QFile>
#include <QImage>

#include "runtime/core/RuntimeException.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

Picture::Picture(int64_t width, int64_t height) {
    if (width < 1 || width > 32767 || height < 1 || height > 32767) {
        OutOfBoundsException failure;
        failure.Message = "Width/Height needs to be in the range 1-32767";
        throw failure;
    }
    image_ = std::make_unique<QImage>(static_cast<int>(width), static_cast<int>(height),
                                      QImage::Format_ARGB32_Premultiplied);
    image_->fill(Qt::transparent);
}

Picture::Picture(const QImage& image) : image_(std::make_unique<QImage>(image)) {}

Picture::~Picture() = default;

int64_t Picture::Width() const {
    return image_->width();
}
int64_t Picture::Height() const {
    return image_->height();
}

Ref<Picture> Picture::_OpenFromApp(const String& resourceName) {
    // A drawing is rendered at its own size by the toolkit's image plugin,
    // which is loaded only now, when the first picture is wanted.
    const QString path = ":/" + ToQString(resourceName);
    const QString file = QFile::exists(path + ".svg") ? path + ".svg" : path + ".png";
    if (!QFile::exists(file)) {
        return nullptr;
    }
    // A stored picture that cannot be read (no image plugin for it) is an
    // empty one, which draws as nothing: the window that paints it on every
    // repaint must not fail on every repaint.
    return New<Picture>(QImage(file));
}

}  // namespace vx
