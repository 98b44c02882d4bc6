#include "platform/qt/qt_web_pages.h"

#include <QDesktopServices>
#include <QUrl>

#include "platform/fatal.h"

namespace platform {

void QtWebPages::open(const std::string &address) {
    const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    if (!url.isValid()) fatalStop();
    QDesktopServices::openUrl(url);
}

}  // namespace platform
