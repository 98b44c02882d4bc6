#include "ui/picker.h"

#include <QListView>
#include <QProxyStyle>
#include <QScreen>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QWheelEvent>
#include <algorithm>

namespace {

constexpr int kTextMargin = 4;

/// Some styles open a combo box like a menu, as high as the screen and without a scroll bar. With hundreds of
/// rooms that is no list to choose from.
class ListPopupStyle : public QProxyStyle {
 public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returned) const override {
        if (hint == SH_ComboBox_Popup) return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

}  // namespace

Picker::Picker(QWidget *parent) : QComboBox(parent) {
    // A few hundred rooms open at once when the popup need not measure each of them.
    auto *list = new QListView(this);
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideMiddle);
    setView(list);
    auto *popupStyle = new ListPopupStyle;
    popupStyle->setParent(this);
    setStyle(popupStyle);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(8);
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

void Picker::showPopup() {
    QComboBox::showPopup();
    QWidget *popup = view()->window();
    const int widest = std::max(kWidestPopup, width());
    if (popup->width() <= widest) return;

    const QRect area = screen()->availableGeometry();
    const int left = std::min(mapToGlobal(QPoint(0, 0)).x(), area.right() - widest);
    popup->setGeometry(std::max(left, area.left()), popup->y(), widest, popup->height());
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
