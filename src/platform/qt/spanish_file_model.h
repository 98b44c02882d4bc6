#pragma once

#include <QIdentityProxyModel>

namespace platform {

/// Stands between a file panel and its model and writes sizes and dates in Spanish: the model itself writes
/// them in the language of the user's locale, whatever translation is installed.
class SpanishFileModel final : public QIdentityProxyModel {
    Q_OBJECT

 public:
    using QIdentityProxyModel::QIdentityProxyModel;

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
};

}  // namespace platform
