#include "app/menu_strip.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QVBoxLayout>

#include "app/main_menu.h"
#include "platform/qt/accessible_role.h"
#include "platform/qt/window_order.h"
#include "product/product.h"

namespace app {
namespace {

constexpr int kWidth = 360;

}  // namespace

MenuStrip::MenuStrip(const MainMenu &menu) : bar_(new QMenuBar(this)) {
    setObjectName(QStringLiteral("menuStrip"));
    setWindowTitle(QString::fromUtf8(product::kApplicationName));
    platform::setAccessibleRole(*this, QAccessible::Window);
    bar_->setNativeMenuBar(false);
    menu.fill(*bar_);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar_);
}

void MenuStrip::showAt(QPoint position) {
    setFixedSize(kWidth, bar_->sizeHint().height());
    move(position);
    platform::bringToFront(*this);
}

void MenuStrip::closeEvent(QCloseEvent *event) {
    event->accept();
    QApplication::quit();
}

}  // namespace app
