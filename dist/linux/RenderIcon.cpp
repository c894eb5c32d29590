// Renders the icon's one drawing as a square PNG of the size asked for, with
// the renderer the App Builder itself draws it with, so that the installed
// bitmaps never drift from the drawing.
//
//   vx-render-icon <drawing.svg> <size> <picture.png>

#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char* argv[]) {
    if (argc != 4) {
        std::fputs("usage: vx-render-icon <drawing.svg> <size> <picture.png>\n", stderr);
        return 2;
    }
    QSvgRenderer drawing{QString::fromLocal8Bit(argv[1])};
    bool isNumber = false;
    const int size = QString::fromLocal8Bit(argv[2]).toInt(&isNumber);
    if (!drawing.isValid() || !isNumber || size < 1) {
        std::fprintf(stderr, "vx-render-icon: cannot render %s at %s pixels\n", argv[1], argv[2]);
        return 1;
    }
    QImage picture(size, size, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        drawing.render(&painter);
    }
    if (!picture.save(QString::fromLocal8Bit(argv[3]), "PNG")) {
        std::fprintf(stderr, "vx-render-icon: cannot write %s\n", argv[3]);
        return 1;
    }
    return 0;
}
