#include "ui/element_list.h"

#include <QUuid>

namespace ui {

ElementList::ElementList() : id(QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString()) {}

}  // namespace ui
