#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFont>
#include <QPushButton>
#include <QTest>

namespace support {

/// The desktop's font has that size and width as long as this object lives.
class DesktopFont {
 public:
    explicit DesktopFont(int points, int stretch = QFont::Unstretched) : before_(QApplication::font()) {
        QFont font = before_;
        font.setPointSize(points);
        font.setStretch(stretch);
        QApplication::setFont(font);
        QApplication::processEvents();
    }
    ~DesktopFont() { QApplication::setFont(before_); }
    DesktopFont(const DesktopFont &) = delete;
    DesktopFont &operator=(const DesktopFont &) = delete;

 private:
    QFont before_;
};

/// Clicks and chooses in a window as a person does, who knows its parts by their object names.
class WindowUser {
 protected:
    virtual ~WindowUser() = default;
    [[nodiscard]] virtual QWidget *window() const = 0;

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return window()->findChild<Widget *>(QLatin1String(name));
    }
    [[nodiscard]] QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    [[nodiscard]] QComboBox *picker(const char *name) const { return find<QComboBox>(name); }

    void click(const char *name) {
        QTest::mouseClick(button(name), Qt::LeftButton);
        QApplication::processEvents();
    }

    void choose(const char *name, const char *entry) {
        QComboBox *box = picker(name);
        const int index = box->findText(QString::fromUtf8(entry));
        ASSERT_GE(index, 0) << entry;
        while (box->currentIndex() != index)
            QTest::keyClick(box, box->currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
        QApplication::processEvents();
    }

    [[nodiscard]] QStringList entries(const char *name) const {
        QStringList texts;
        for (int i = 0; i < picker(name)->count(); ++i) texts.append(picker(name)->itemText(i));
        return texts;
    }
};

}  // namespace support
