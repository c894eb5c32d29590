// The yardstick: the least a Qt Widgets program does to show one empty window.
#include <QApplication>
#include <QWidget>

#include "FirstWindowProbe.h"

int main(int argc, char** argv) {
    InstallFirstWindowProbe();
    QApplication app(argc, argv);
    QWidget window;
    window.resize(600, 600);
    window.show();
    return QApplication::exec();
}
