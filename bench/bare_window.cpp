// What the start of ours is compared with: the least that a program with a window is made of; and, given any
// argument, the same with a menu, buttons, pickers and labels as many as ours, which brings fonts and a
// style.
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

void addWidgets(QMainWindow &window) {
    for (const char *title : {"&Archivo", "&Cámara", "A&yuda"}) {
        QMenu *menu = window.menuBar()->addMenu(QString::fromUtf8(title));
        for (int i = 0; i < 6; ++i)
            menu->addAction(QStringLiteral("Mover"))->setShortcut(Qt::CTRL | Qt::Key_M);
    }
    auto *content = new QWidget(&window);
    auto *lines = new QVBoxLayout(content);
    for (int i = 0; i < 12; ++i) lines->addWidget(new QPushButton(QStringLiteral("Eliminar"), content));
    for (int i = 0; i < 3; ++i) {
        lines->addWidget(new QLabel(QStringLiteral("Aula"), content));
        auto *picker = new QComboBox(content);
        picker->addItem(QStringLiteral("Aula"));
        lines->addWidget(picker);
    }
    window.setCentralWidget(content);
}

}  // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QWidget bare;
    QMainWindow full;
    QWidget &window = argc > 1 ? full : bare;
    if (argc > 1) addWidgets(full);
    window.resize(600, 224);
    window.show();
    return QApplication::exec();
}
