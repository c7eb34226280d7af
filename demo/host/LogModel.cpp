#include "host/LogModel.h"

#include "platform/system/DateText.h"

#include <algorithm>
#include <array>

namespace host {

namespace plist = platform::plist;

LogModel::LogModel(const PlanNames& names, QObject* parent)
    : QAbstractTableModel(parent)
    , names_(names) {}

bool LogModel::startsWithOurs(const plist::Array& records) const {
    return records.size() >= records_.size() && std::equal(records_.begin(), records_.end(), records.begin());
}

// The widget only appends; anything else is the host application's doing, or another account's log.
QStringList LogModel::setRecords(plist::Array records) {
    if (!startsWithOurs(records)) {
        beginResetModel();
        records_ = std::move(records);
        endResetModel();
        return {outputLine({QStringLiteral("log"), QString::number(records_.size())})};
    }
    QStringList lines;
    for (std::size_t i = records_.size(); i < records.size(); ++i)
        lines << outputLine({QStringLiteral("logged"), recordText(records[i])});
    if (lines.isEmpty())
        return {};
    beginInsertRows({}, static_cast<int>(records_.size()), static_cast<int>(records.size()) - 1);
    records_ = std::move(records);
    endInsertRows();
    return lines;
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(records_.size());
}

int LogModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

QString LogModel::text(const plist::Value& record, int column) const {
    const LoggedAction action = loggedAction(record);
    switch (column) {
    case Meaning:
        return action.meaning;
    case Transaction:
        return action.plan ? names_.nameOf(*action.plan) : QString();
    case Due:
        return action.date ? platform::mediumDateText(*action.date) : QString();
    default:
        return recordText(record);
    }
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    return text(records_[static_cast<std::size_t>(index.row())], index.column());
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array headings{QStringLiteral("Action"), QStringLiteral("Transaction"),
                                     QStringLiteral("Was due"), QStringLiteral("Record")};
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return headings[static_cast<std::size_t>(section)];
}

} // namespace host
