#include "ui/content_widget.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaObject>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "ptz/camera_motion.h"
#include "scenes/scene_tree.h"
#include "ui/content_view.h"
#include "ui/logo_label.h"
#include "ui/picker.h"
#include "ui/scene_actions.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

constexpr int kMargin = 6;
constexpr int kLineSpacing = 2;
constexpr int kItemSpacing = 6;
constexpr int kBottomSpacer = 5;
constexpr int kButtonPadding = 18;
constexpr double kSmallestFont = 6;

QHBoxLayout *makeCentredRow(std::initializer_list<QWidget *> items) {
    auto *row = new QHBoxLayout;
    row->setSpacing(kItemSpacing);
    row->addStretch();
    for (QWidget *item : items) row->addWidget(item);
    row->addStretch();
    return row;
}

/// The words of one row. Its buttons read like those of the other rows; their accessible names go on with
/// what is added or removed.
struct RowWords {
    QString label;
    QString objectName;
    QString pickerDescription;
    QString added;
    QString addDescription;
    QString removed;
    QString removeDescription;
};

const std::array<RowWords, 3> &rowWords() {
    static const std::array<RowWords, 3> words{
        {{u"Centro"_s, u"Centro"_s, u"Elige el centro cuyas aulas se muestran"_s, u"un centro"_s,
          u"Pregunta el nombre y crea un centro vacío"_s, u"el centro"_s,
          u"Elimina el centro elegido con todas sus aulas, tras preguntar"_s},
         {u"Aula/Espacio"_s, u"Aula"_s, u"Elige el aula o espacio cuyas escenas se muestran"_s,
          u"un aula o espacio"_s, u"Pregunta el nombre y crea un aula sin escenas en el centro elegido"_s,
          u"el aula o espacio"_s, u"Elimina el aula elegida con todas sus escenas, tras preguntar"_s},
         {u"Escena"_s, u"Escena"_s, u"Elige una escena y lleva la cámara a su posición"_s, u"una escena"_s,
          u"Pregunta el nombre y guarda la posición actual de la cámara como escena"_s, u"la escena"_s,
          u"Elimina la escena elegida, tras preguntar"_s}}};
    return words;
}

void describe(QWidget &widget, const QString &objectName, const QString &name, const QString &description) {
    widget.setObjectName(objectName);
    widget.setAccessibleName(name);
    widget.setAccessibleDescription(description);
}

QWidget *makeLogo(QWidget *parent, const QString &asset, QSize size, const QString &name) {
    auto *logo = new LogoLabel(u":/"_s + asset, size, parent);
    describe(*logo, asset, name, {});
    return logo;
}

}  // namespace

ContentWidget::ContentWidget(ContentView &view, QWidget *parent) : QWidget(parent), view_(view) {
    setObjectName(u"content"_s);
    setMinimumSize(kMinimumWidth, kHeight);
    setMaximumSize(kMaximumWidth, kHeight);

    auto *mainRow = new QHBoxLayout;
    mainRow->setSpacing(0);
    leftColumn_ = makeLeftColumn();
    rightColumn_ = makeRightColumn();
    mainRow->addWidget(leftColumn_);
    mainRow->addWidget(rightColumn_, 1);

    auto *stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addLayout(mainRow, 1);
    stack->addSpacing(kBottomSpacer);

    connectRows();
    setTabOrderLikeTheEye();
    view_.observeAllFields([this] { scheduleRedraw(); });
    fitFont();
    redraw();
    centre_.picker->setFocus();
}

bool ContentWidget::event(QEvent *event) {
    const bool isHandled = QWidget::event(event);
    // The desktop's new font is no change of this widget's own, and does not come by changeEvent().
    if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::StyleChange) fitFont();
    return isHandled;
}

void ContentWidget::fitFont() {
    if (!rightColumn_) return;
    double size = QFontInfo(QApplication::font()).pointSizeF();  // also where it is set in pixels
    setFontSize(size);
    while (!contentsFit() && size > kSmallestFont) setFontSize(size -= 0.5);
}

void ContentWidget::setFontSize(double pointSize) {
    QFont sized = font();
    sized.setPointSizeF(pointSize);
    setFont(sized);
    // As narrow as the titles allow, so that the pickers have room for names.
    for (const Row &row : {centre_, room_, scene_})
        for (QPushButton *button : {row.add, row.remove})
            button->setFixedWidth(button->fontMetrics().horizontalAdvance(button->text()) + kButtonPadding);
}

bool ContentWidget::contentsFit() const {
    for (QWidget *column : {leftColumn_, rightColumn_}) {
        column->layout()->invalidate();
        column->layout()->activate();  // the rows within it forget their sizes as well
    }
    const QSize left = leftColumn_->layout()->totalMinimumSize();
    const QSize right = rightColumn_->layout()->totalMinimumSize();
    return left.width() + right.width() <= kMinimumWidth &&
           std::max(left.height(), right.height()) + kBottomSpacer <= kHeight;
}

QWidget *ContentWidget::makeLeftColumn() {
    auto *column = new QWidget(this);
    const auto nudge = [this, column](const QString &title, const char *objectName,
                                      const QString &description, auto act) {
        auto *button = new QPushButton(title, column);
        describe(*button, QLatin1String(objectName), title, description);
        connect(button, &QPushButton::clicked, this, act);
        nudges_.push_back(button);
        return button;
    };
    auto *up = nudge(u"Arriba"_s, "buttonArriba", u"Mueve la cámara un paso hacia arriba"_s,
                     [] { ptz::moveCameraBy(0, AvanceRapidoTilt); });
    auto *left = nudge(u"Izquierda"_s, "buttonIzquierda", u"Mueve la cámara un paso a la izquierda"_s,
                       [] { ptz::moveCameraBy(-AvanceRapidoPan, 0); });
    auto *right = nudge(u"Derecha"_s, "buttonDerecha", u"Mueve la cámara un paso a la derecha"_s,
                        [] { ptz::moveCameraBy(AvanceRapidoPan, 0); });
    auto *down = nudge(u"Abajo"_s, "buttonAbajo", u"Mueve la cámara un paso hacia abajo"_s,
                       [] { ptz::moveCameraBy(0, -AvanceRapidoTilt); });
    auto *zoomIn = nudge(u"Acercar"_s, "buttonAcercar", u"Acerca la imagen un paso"_s,
                         [this] { view_.ZoomMove(AvanceRapidoZoom); });
    auto *zoomOut = nudge(u"Alejar"_s, "buttonAlejar", u"Aleja la imagen un paso"_s,
                          [this] { view_.ZoomMove(-AvanceRapidoZoom); });

    auto *stack = new QVBoxLayout(column);
    stack->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    stack->setSpacing(kLineSpacing);
    stack->addLayout(makeCentredRow({makeLogo(column, u"LogoZEL"_s, {80, 60}, u"Logotipo de Zelvoria"_s),
                                     makeLogo(column, u"LogoKAV"_s, {100, 40}, u"Logotipo de KAV"_s)}));
    stack->addStretch();
    stack->addLayout(makeCentredRow({up}));
    stack->addLayout(makeCentredRow({left, right}));
    stack->addLayout(makeCentredRow({down}));
    stack->addLayout(makeCentredRow({zoomIn, zoomOut}));
    return column;
}

QWidget *ContentWidget::makeRightColumn() {
    auto *column = new QWidget(this);
    auto *grid = new QGridLayout(column);
    grid->setContentsMargins(0, 0, kMargin, 0);
    grid->setHorizontalSpacing(kItemSpacing);
    grid->setColumnStretch(1, 1);

    const std::array<Row *, 3> rows{&centre_, &room_, &scene_};
    grid->setRowStretch(0, 1);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int line = static_cast<int>(i) + 1;
        const RowWords &words = rowWords()[i];
        Row &row = *rows[i];
        row.picker = new Picker(column);
        row.add = new QPushButton(u"Añadir"_s, column);
        row.remove = new QPushButton(u"Eliminar"_s, column);
        auto *label = new QLabel(words.label, column);
        label->setBuddy(row.picker);
        describe(*row.picker, u"picker"_s + words.objectName, words.label, words.pickerDescription);
        describe(*row.add, u"buttonAdd"_s + words.objectName, row.add->text() + u' ' + words.added,
                 words.addDescription);
        describe(*row.remove, u"buttonRemove"_s + words.objectName, row.remove->text() + u' ' + words.removed,
                 words.removeDescription);

        grid->addWidget(label, line, 0);
        grid->addWidget(row.picker, line, 1);
        grid->addWidget(row.add, line, 2);
        grid->addWidget(row.remove, line, 3);
    }
    grid->setRowStretch(static_cast<int>(rows.size()) + 1, 1);
    return column;
}

void ContentWidget::connectRows() {
    // Each hook redraws before it returns. A key or click that came while the camera kept us busy is waiting
    // by now, and must not meet the lists and buttons of the old selection.
    centre_.picker->onChosen([this](int index) {
        view_.selectedGrupo = index;
        view_.actualizarSubgrupos();
        redraw();
    });
    room_.picker->onChosen([this](int index) {
        view_.selectedSubgrupo = index;
        view_.actualizarEscenas();
        redraw();
    });
    scene_.picker->onChosen([this](int index) {
        view_.selectedEscena = index;
        view_.PickerEscenaChanged();
        redraw();
    });

    const auto onClick = [this](QPushButton *button, void (*action)(ContentView &)) {
        connect(button, &QPushButton::clicked, this, [this, action] {
            action(view_);
            redraw();
        });
    };
    onClick(centre_.add, addCentre);
    onClick(centre_.remove, deleteCentre);
    onClick(room_.add, addRoom);
    onClick(room_.remove, deleteRoom);
    onClick(scene_.add, saveScene);
    onClick(scene_.remove, deleteScene);
}

void ContentWidget::setTabOrderLikeTheEye() {
    std::vector<QWidget *> order;
    for (const Row &row : {centre_, room_, scene_})
        order.insert(order.end(), {row.picker, row.add, row.remove});
    order.insert(order.begin(), nudges_.begin(), nudges_.end());
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void ContentWidget::scheduleRedraw() {
    if (redrawPending_) return;
    redrawPending_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (redrawPending_) redraw();
        },
        Qt::QueuedConnection);
}

void ContentWidget::redraw() {
    redrawPending_ = false;
    centre_.picker->show(ListaGrupos, static_cast<int>(view_.selectedGrupo.get()));
    room_.picker->show(ListaSubgrupos, static_cast<int>(view_.selectedSubgrupo.get()));
    scene_.picker->show(ListaEscenas, static_cast<int>(view_.selectedEscena.get()));

    room_.picker->setEnabled(!view_.ListaSubgrupoDisabled);
    scene_.picker->setEnabled(!view_.ListaEscenasDisabled);
    scene_.add->setEnabled(!view_.buttonAddEscenaDisabled);
    keepFocusInReach();
    room_.remove->setEnabled(!view_.buttonRemoveSubgrupoDisabled);
    scene_.remove->setEnabled(!view_.buttonRemoveEscenaDisabled);
}

/// A delete button that is about to be disabled would hand its focus to the first button of the window, and
/// the next press of a key would nudge the camera. The window need not be active yet: an alert has just been
/// closed.
void ContentWidget::keepFocusInReach() {
    const QWidget *focused = window()->focusWidget();
    if (focused == scene_.remove && view_.buttonRemoveEscenaDisabled)
        (scene_.add->isEnabled() ? scene_.add : room_.add)->setFocus();
    if (focused == room_.remove && view_.buttonRemoveSubgrupoDisabled) room_.add->setFocus();
}

}  // namespace ui
