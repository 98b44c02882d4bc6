#include "ui/picker.h"

#include <QListView>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QWheelEvent>

namespace {

constexpr int kTextMargin = 4;

}  // namespace

Picker::Picker(QWidget *parent) : QComboBox(parent) {
    // A few hundred rooms open at once when the popup need not measure each of them.
    auto *list = new QListView(this);
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideMiddle);
    setView(list);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    setMaxVisibleItems(16);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    connect(this, &QComboBox::activated, this, [this](int chosen) {
        if (chosen == index_) return;
        index_ = chosen;
        if (chosen_) chosen_(chosen);
    });
}

void Picker::show(const std::vector<std::string> &names, int index) {
    const QSignalBlocker silent(this);
    if (names != names_) {
        hidePopup();
        clear();
        QStringList items;
        for (const std::string &name : names) items.append(QString::fromStdString(name));
        addItems(items);
        names_ = names;
    }
    index_ = index < count() ? index : -1;
    setCurrentIndex(index_);
}

void Picker::paintEvent(QPaintEvent *) {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText =
        fontMetrics().elidedText(option.currentText, Qt::ElideRight, field.width() - kTextMargin);

    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void Picker::wheelEvent(QWheelEvent *event) {
    event->ignore();
}
