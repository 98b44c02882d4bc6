// The least that a program with a window is made of: what the start of ours is compared with.
#include <QApplication>
#include <QWidget>

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.resize(600, 224);
    window.show();
    return QApplication::exec();
}
