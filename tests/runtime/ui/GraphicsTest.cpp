#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QWidget>

#include "WindowHarness.h"
#include "runtime/ui/Canvas.h"
#include "runtime/ui/Graphics.h"
#include "runtime/ui/Picture.h"
#include "support/ToolkitEnvironment.h"

namespace vx {
namespace {

// A picture whose left half is red and right half blue.
Ref<Picture> Halves(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::blue);
    QPainter(&image).fillRect(0, 0, size / 2, size, Qt::red);
    return New<Picture>(image);
}

TEST(Graphics, drawPicture_scalesTheSourceRectangleIntoTheDestination) {
    QImage surface(128, 128, QImage::Format_ARGB32_Premultiplied);
    surface.fill(Qt::white);
    {
        QPainter painter(&surface);
        Graphics g(painter, 128, 128);
        // Only the red half of a large picture, drawn into the top-left quarter.
        g.DrawPicture(Halves(1067), 0, 0, 64, 64, 0, 0, 533, 1067);
    }
    EXPECT_EQ(QColor(surface.pixel(10, 10)), QColor(Qt::red));
    EXPECT_EQ(QColor(surface.pixel(54, 54)), QColor(Qt::red));
    EXPECT_EQ(QColor(surface.pixel(100, 10)), QColor(Qt::white));
    EXPECT_EQ(QColor(surface.pixel(10, 100)), QColor(Qt::white));
}

TEST(Picture, sizeOutsideTheRange_raisesOutOfBounds) {
    for (auto [width, height] : {std::pair{0, 10}, std::pair{10, 32768}, std::pair{-1, -1}}) {
        try {
            Picture picture(width, height);
            ADD_FAILURE() << width << "x" << height << " was accepted";
        } catch (const OutOfBoundsException& failure) {
            EXPECT_EQ(failure.Message, "Width/Height needs to be in the range 1-32767");
        }
    }
    EXPECT_EQ(Picture(32767, 1).Width(), 32767);
}

TEST(Picture, openFromAppWithUnknownName_givesNil) {
    EXPECT_EQ(Picture::_OpenFromApp("no_such_picture"), nullptr);
}

TEST(Picture, storedButUnreadable_isEmptyAndDrawsAsNothing) {
    Ref<Picture> picture = Picture::_OpenFromApp("unreadable_picture");
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->Width(), 0);
    QImage surface(32, 32, QImage::Format_ARGB32_Premultiplied);
    surface.fill(Qt::white);
    const QImage before = surface;
    {
        QPainter painter(&surface);
        Graphics g(painter, 32, 32);
        g.DrawPicture(picture, 0, 0, 32, 32, 0, 0, 1067, 1067);
        g.DrawPicture(picture, 0, 0);
    }
    EXPECT_EQ(surface, before);
}

TEST(Canvas, paint_raisedWithTheSurfaceToDrawOn) {
    auto window = test::HiddenWindow();
    auto canvas = test::AddControl<Canvas>(*window, "Canvas1", {0, 0, 32, 32});
    int64_t paintedWidth = 0;
    canvas->Paint.AddHandler([&](Canvas&, Graphics& g, const std::vector<Canvas::Rect>& areas) {
        paintedWidth = g.Width();
        EXPECT_FALSE(areas.empty());
        g.DrawPicture(Halves(4), 0, 0, 32, 32, 0, 0, 2, 4);
    });

    const QImage shot = canvas->_Widget()->grab().toImage();

    EXPECT_EQ(paintedWidth, 32);
    EXPECT_EQ(QColor(shot.pixel(16, 16)), QColor(Qt::red));
}

}  // namespace
}  // namespace vx
