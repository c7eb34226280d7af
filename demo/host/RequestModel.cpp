#include "host/RequestModel.h"

#include "host/RecordText.h"
#include "platform/system/DateText.h"

#include <array>

namespace host {

void RequestModel::add(Request request) {
    beginInsertRows({}, 0, 0);
    requests_.push_back(std::move(request));
    endInsertRows();
}

int RequestModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(requests_.size());
}

int RequestModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

QString RequestModel::text(const Request& request, int column) const {
    switch (column) {
    case Time:
        return request.time.toString(QStringLiteral("HH:mm:ss"));
    case Meaning:
        return request.meaning;
    case Transaction:
        return request.transactionName;
    case Due:
        return request.transaction ? platform::mediumDateText(request.transaction->date) : QString();
    default:
        return request.url;
    }
}

QVariant RequestModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const Request& request = requests_[requests_.size() - 1 - static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole)
        return text(request, index.column());
    if (role != Qt::ToolTipRole)
        return {};
    if (request.transaction && (index.column() == Transaction || index.column() == Due))
        return QStringLiteral("%1, %2").arg(request.transaction->plan, numberText(request.transaction->date));
    return text(request, index.column());
}

QVariant RequestModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array headings{QStringLiteral("Time"), QStringLiteral("The panel asks to"),
                                     QStringLiteral("Transaction"), QStringLiteral("Due"),
                                     QStringLiteral("URL")};
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return headings[static_cast<std::size_t>(section)];
}

} // namespace host
