#include "runtime/ui/Picture.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include "runtime/RuntimeException.h"
#include "runtime/ui/QtText.h"

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
    const QString path = ":/" + ToQString(resourceName);
    if (QFile::exists(path + ".svg")) {
        QSvgRenderer drawing(path + ".svg");
        if (!drawing.isValid()) {
            return nullptr;
        }
        auto picture = New<Picture>(drawing.defaultSize().width(), drawing.defaultSize().height());
        QPainter painter(picture->image_.get());
        painter.setRenderHint(QPainter::Antialiasing);
        drawing.render(&painter);
        return picture;
    }
    QImage image(path + ".png");
    if (image.isNull()) {
        return nullptr;
    }
    return New<Picture>(image);
}

}  // namespace vx
