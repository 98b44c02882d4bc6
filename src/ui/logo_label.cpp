#include "ui/logo_label.h"

#include <QPainter>
#include <QSvgRenderer>

#include "platform/qt/accessible_role.h"

// The linker drops a static library's resources unless somebody asks for them. The macro must stand outside
// any namespace.
static void initAssets() {
    Q_INIT_RESOURCE(assets);
}

namespace ui {
namespace {

constexpr int kMargin = 4;

}  // namespace

LogoLabel::LogoLabel(const QString &asset, QSize pictureSize, QWidget *parent)
    : QWidget(parent), asset_(asset) {
    initAssets();
    platform::setAccessibleRole(*this, QAccessible::Graphic);
    setFixedSize(pictureSize + QSize(2 * kMargin, 2 * kMargin));
}

void LogoLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer picture(asset_);
    picture.render(&painter, QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin));
}

}  // namespace ui
