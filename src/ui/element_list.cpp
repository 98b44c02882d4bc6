#include "ui/element_list.h"

#include <QUuid>

ElementList::ElementList() : id(QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString()) {}
