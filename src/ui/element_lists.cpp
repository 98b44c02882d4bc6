#include "ui/element_lists.h"

#include <QUuid>

ElementList::ElementList() : id(QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString()) {}
