#include "FirstWindowProbe.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWindow>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

class Probe : public QObject {
protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose) {
            auto* window = qobject_cast<QWindow*>(watched);
            if (window != nullptr && window->isExposed()) {
                timespec now{};
                clock_gettime(CLOCK_MONOTONIC, &now);
                std::printf("%lld\n",
                            static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec);
                std::fflush(stdout);
                std::_Exit(0);
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

void Install() {
    QCoreApplication::instance()->installEventFilter(new Probe());
}

}  // namespace

void InstallFirstWindowProbe() {
    qAddPreRoutine(Install);
}
