#include "platform/qt/spanish_file_model.h"

#include <QDateTime>
#include <QFileSystemModel>
#include <QLocale>

namespace platform {
namespace {

// The columns of QFileSystemModel.
constexpr int kSizeColumn = 1;
constexpr int kDateColumn = 3;

}  // namespace

QVariant SpanishFileModel::data(const QModelIndex &index, int role) const {
    const auto *files = qobject_cast<const QFileSystemModel *>(sourceModel());
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
    if (!files || !isText || (index.column() != kSizeColumn && index.column() != kDateColumn))
        return QIdentityProxyModel::data(index, role);

    const QModelIndex file = mapToSource(index);
    const QLocale spanish;
    if (index.column() == kDateColumn)
        return spanish.toString(files->lastModified(file), QLocale::ShortFormat);
    return files->isDir(file) ? QString() : spanish.formattedDataSize(files->size(file));
}

}  // namespace platform
