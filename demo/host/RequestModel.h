#pragma once

#include "host/Request.h"

#include <QAbstractTableModel>

#include <vector>

namespace host {

// The requests that have arrived, the newest first.
class RequestModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Time, Meaning, Transaction, Due, Url, Columns };

    using QAbstractTableModel::QAbstractTableModel;

    void add(Request request);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QString text(const Request& request, int column) const;

    std::vector<Request> requests_; // the oldest first
};

} // namespace host
