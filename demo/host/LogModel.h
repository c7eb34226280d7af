#pragma once

#include "host/FinanceFiles.h"
#include "host/RecordText.h"
#include "platform/plist/Value.h"

#include <QAbstractTableModel>

#include <vector>

namespace host {

// The action log as the file holds it, the oldest record first.
class LogModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Meaning, Transaction, Due, Record, Columns };

    explicit LogModel(const PlanNames& names, QObject* parent = nullptr);

    // Takes over what the file holds now. Gives the lines for programs that tell the change; none where
    // nothing has changed.
    [[nodiscard]] QStringList setRecords(platform::plist::Array records);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QString text(const platform::plist::Value& record, int column) const;
    [[nodiscard]] bool startsWithOurs(const platform::plist::Array& records) const;

    const PlanNames& names_;
    platform::plist::Array records_;
};

} // namespace host
