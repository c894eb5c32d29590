#include "runtime/ui/CheckBox.h"

#include <QCheckBox>

#include "runtime/core/RuntimeException.h"
#include "runtime/ui/internal/QtText.h"

namespace vx {

namespace {
QCheckBox* Box(const CheckBox& box) {
    return static_cast<QCheckBox*>(box._Widget());
}
}  // namespace

CheckBox::CheckBox() : RectControl(new QCheckBox()) {}

String CheckBox::Caption() const {
    return FromQString(Box(*this)->text());
}

void CheckBox::Caption(const String& caption) {
    Box(*this)->setText(ToQString(caption));
}

int64_t CheckBox::State() const {
    switch (Box(*this)->checkState()) {
        case Qt::Unchecked:
            return 0;
        case Qt::Checked:
            return 1;
        case Qt::PartiallyChecked:
            break;
    }
    return 2;
}

void CheckBox::State(int64_t state) {
    static constexpr Qt::CheckState states[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
    if (state < 0 || state > 2) {
        throw OutOfBoundsException();
    }
    QCheckBox* box = Box(*this);
    box->setTristate(state == 2 || box->isTristate());
    box->setCheckState(states[state]);
}

}  // namespace vx
