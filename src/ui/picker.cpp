#include "ui/picker.h"

#include <QHelpEvent>
#include <QListView>
#include <QProxyStyle>
#include <QSignalBlocker>
#include <QStylePainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

namespace ui {
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

/// A name as a tooltip: as it was typed, never taken for rich text, and in several lines where it is long.
QString tooltipText(const QString &name) {
    return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(name.toHtmlEscaped());
}

void showTooltip(QPoint globalPosition, const QString &name, bool isCut, QWidget *over) {
    QToolTip::showText(globalPosition, isCut ? tooltipText(name) : QString(), over);
}

}  // namespace

Picker::Picker(QWidget *parent) : QComboBox(parent) {
    // Every entry as high as the first: hundreds of rooms are laid out at once.
    auto *list = new QListView(this);
    list->setUniformItemSizes(true);
    list->setTextElideMode(Qt::ElideMiddle);
    setView(list);
    list->viewport()->installEventFilter(this);
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
    int widest = 0;
    for (int i = 0; i < count(); ++i)
        widest = std::max(widest, view()->sizeHintForIndex(model()->index(i, 0)).width());
    const int scrollBar = count() > maxVisibleItems() ? style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
    view()->setMinimumWidth(std::min(widest + scrollBar, kWidestPopup));
    QComboBox::showPopup();
}

QSize Picker::minimumSizeHint() const {
    // The same, but QComboBox would go on giving the one of its first font.
    return sizeHint();
}

bool Picker::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip) return QComboBox::event(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    showTooltip(help->globalPos(), currentText(), shownText() != currentText(), this);
    return true;
}

bool Picker::eventFilter(QObject *watched, QEvent *event) {
    if (watched != view()->viewport() || event->type() != QEvent::ToolTip)
        return QComboBox::eventFilter(watched, event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const QModelIndex entry = view()->indexAt(help->pos());
    const bool isCut = view()->sizeHintForIndex(entry).width() > view()->viewport()->width();
    showTooltip(help->globalPos(), entry.data().toString(), isCut, view()->viewport());
    return true;
}

/// The chosen name, or as much of it as fits into the box.
QString Picker::shownText() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    return fontMetrics().elidedText(currentText(), Qt::ElideRight, field.width() - kTextMargin);
}

void Picker::paintEvent(QPaintEvent *) {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = shownText();

    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void Picker::wheelEvent(QWheelEvent *event) {
    event->ignore();
}

}  // namespace ui
