// A second yardstick: the least a Qt Widgets program does to show one window
// with a menu bar and a line of text. Any window with text pays for the font
// system's start, which the empty window never loads; this shows that floor.
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QWidget>

#include "FirstWindowProbe.h"

int main(int argc, char** argv) {
    InstallFirstWindowProbe();
    QApplication app(argc, argv);
    QWidget window;
    auto* bar = new QMenuBar(&window);
    bar->addMenu("&File");
    auto* label = new QLabel("Build", &window);
    label->move(20, 40);
    window.resize(600, 600);
    window.show();
    return QApplication::exec();
}
