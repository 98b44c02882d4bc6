#include "ui/content_widget.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaObject>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "ptz/camera_motion.h"
#include "scenes/scene_tree.h"
#include "ui/content_view.h"
#include "ui/logo_label.h"
#include "ui/picker.h"
#include "ui/scene_actions.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = 8;
constexpr int kSpacing = 2;
constexpr int kBottomSpacer = 5;
constexpr int kColumnGap = 6;
constexpr int kButtonPadding = 26;

QHBoxLayout *makeCentredRow(std::initializer_list<QWidget *> items) {
    auto *row = new QHBoxLayout;
    row->setSpacing(kMargin);
    row->addStretch();
    for (QWidget *item : items) row->addWidget(item);
    row->addStretch();
    return row;
}

/// A button as narrow as its title allows, so that the pickers beside it have room for names.
QPushButton *makeNarrowButton(const QString &title) {
    auto *button = new QPushButton(title);
    button->setFixedWidth(button->fontMetrics().horizontalAdvance(title) + kButtonPadding);
    return button;
}

/// The words that tell the three rows apart where only the eye could: object names and accessible names.
struct RowWords {
    QString label;
    QString objectName;
    QString thing;  ///< with its article
};

}  // namespace

ContentWidget::ContentWidget(ContentView &view, QWidget *parent) : QWidget(parent), view_(view) {
    setObjectName(u"content"_s);
    setMinimumSize(kMinimumWidth, kHeight);
    setMaximumSize(kMaximumWidth, kHeight);

    auto *mainRow = new QHBoxLayout;
    mainRow->setSpacing(kColumnGap);
    mainRow->addWidget(makeLeftColumn());
    mainRow->addWidget(makeRightColumn(), 1);

    auto *stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(0);
    stack->addLayout(mainRow, 1);
    stack->addSpacing(kBottomSpacer);

    connectRows();
    setTabOrderLikeTheEye();
    view_.observeAllFields([this] { scheduleRedraw(); });
    redraw();
    centre_.picker->setFocus();
}

QWidget *ContentWidget::makeLeftColumn() {
    const auto nudge = [this](const QString &title, const char *objectName, const QString &accessibleName,
                              auto act) {
        auto *button = new QPushButton(title);
        button->setObjectName(QLatin1String(objectName));
        button->setAccessibleName(accessibleName);
        connect(button, &QPushButton::clicked, this, act);
        nudges_.push_back(button);
        return button;
    };
    auto *up = nudge(u"Arriba"_s, "buttonArriba", u"Mover la cámara hacia arriba"_s,
                     [] { moveCameraBy(0, AvanceRapidoTilt); });
    auto *left = nudge(u"Izquierda"_s, "buttonIzquierda", u"Mover la cámara a la izquierda"_s,
                       [] { moveCameraBy(-AvanceRapidoPan, 0); });
    auto *right = nudge(u"Derecha"_s, "buttonDerecha", u"Mover la cámara a la derecha"_s,
                        [] { moveCameraBy(AvanceRapidoPan, 0); });
    auto *down = nudge(u"Abajo"_s, "buttonAbajo", u"Mover la cámara hacia abajo"_s,
                       [] { moveCameraBy(0, -AvanceRapidoTilt); });
    auto *zoomIn = nudge(u"Acercar"_s, "buttonAcercar", u"Acercar la imagen"_s,
                         [this] { view_.ZoomMove(AvanceRapidoZoom); });
    auto *zoomOut = nudge(u"Alejar"_s, "buttonAlejar", u"Alejar la imagen"_s,
                          [this] { view_.ZoomMove(-AvanceRapidoZoom); });

    auto *column = new QWidget;
    auto *stack = new QVBoxLayout(column);
    stack->setContentsMargins(kMargin, kMargin, kMargin, kMargin - kBottomSpacer);
    stack->setSpacing(kSpacing);
    stack->addLayout(makeCentredRow({new LogoLabel(u":/LogoZEL"_s, {80, 60}, u"Logotipo de Zelvoria"_s),
                                     new LogoLabel(u":/LogoKAV"_s, {100, 40}, u"Logotipo de KAV"_s)}));
    stack->addStretch();
    stack->addLayout(makeCentredRow({up}));
    stack->addLayout(makeCentredRow({left, right}));
    stack->addLayout(makeCentredRow({down}));
    stack->addLayout(makeCentredRow({zoomIn, zoomOut}));
    return column;
}

QWidget *ContentWidget::makeRightColumn() {
    auto *column = new QWidget;
    auto *grid = new QGridLayout(column);
    grid->setContentsMargins(0, kMargin, kMargin, kMargin - kBottomSpacer);
    grid->setHorizontalSpacing(kColumnGap);
    grid->setColumnStretch(1, 1);

    const std::array<RowWords, 3> words{{{u"Centro"_s, u"Centro"_s, u"el centro"_s},
                                         {u"Aula/Espacio"_s, u"Aula"_s, u"el aula o espacio"_s},
                                         {u"Escena"_s, u"Escena"_s, u"la escena"_s}}};
    const std::array<QString, 3> addNames{u"Añadir un centro"_s, u"Añadir un aula o espacio"_s,
                                          u"Guardar la posición actual como escena"_s};
    const std::array<Row *, 3> rows{&centre_, &room_, &scene_};

    grid->setRowStretch(0, 1);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int line = static_cast<int>(i) + 1;
        Row &row = *rows[i];
        row.picker = new Picker;
        row.add = makeNarrowButton(u"Añadir"_s);
        row.remove = makeNarrowButton(u"Eliminar"_s);
        auto *label = new QLabel(words[i].label);
        label->setBuddy(row.picker);

        row.picker->setObjectName(u"picker"_s + words[i].objectName);
        row.add->setObjectName(u"buttonAdd"_s + words[i].objectName);
        row.remove->setObjectName(u"buttonRemove"_s + words[i].objectName);
        row.picker->setAccessibleName(words[i].label);
        row.add->setAccessibleName(addNames[i]);
        row.remove->setAccessibleName(u"Eliminar %1"_s.arg(words[i].thing));

        grid->addWidget(label, line, 0);
        grid->addWidget(row.picker, line, 1);
        grid->addWidget(row.add, line, 2);
        grid->addWidget(row.remove, line, 3);
    }
    grid->setRowStretch(static_cast<int>(rows.size()) + 1, 1);
    return column;
}

void ContentWidget::connectRows() {
    centre_.picker->onChosen([this](int index) {
        view_.selectedGrupo = index;
        view_.actualizarSubgrupos();
    });
    room_.picker->onChosen([this](int index) {
        view_.selectedSubgrupo = index;
        view_.actualizarEscenas();
    });
    scene_.picker->onChosen([this](int index) {
        view_.selectedEscena = index;
        view_.PickerEscenaChanged();
    });

    const auto onClick = [this](QPushButton *button, void (*action)(ContentView &)) {
        connect(button, &QPushButton::clicked, this, [this, action] { action(view_); });
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
        this, [this] { redraw(); }, Qt::QueuedConnection);
}

void ContentWidget::redraw() {
    redrawPending_ = false;
    centre_.picker->show(ListaGrupos, static_cast<int>(view_.selectedGrupo.get()));
    room_.picker->show(ListaSubgrupos, static_cast<int>(view_.selectedSubgrupo.get()));
    scene_.picker->show(ListaEscenas, static_cast<int>(view_.selectedEscena.get()));

    room_.picker->setDisabled(view_.ListaSubgrupoDisabled);
    scene_.picker->setDisabled(view_.ListaEscenasDisabled);
    room_.remove->setDisabled(view_.buttonRemoveSubgrupoDisabled);
    scene_.add->setDisabled(view_.buttonAddEscenaDisabled);
    scene_.remove->setDisabled(view_.buttonRemoveEscenaDisabled);
}
