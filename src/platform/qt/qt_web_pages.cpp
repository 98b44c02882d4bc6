#include "platform/qt/qt_web_pages.h"

#include "platform/fatal.h"

#include <QDesktopServices>
#include <QUrl>

namespace platform {

void QtWebPages::open(const std::string &address) {
    const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    if (!url.isValid()) fatalStop();
    QDesktopServices::openUrl(url);
}

}  // namespace platform
