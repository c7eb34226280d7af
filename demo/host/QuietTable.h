#pragma once

#include <QTableView>

namespace host {

// A table for reading: rows without grid or numbers, the last column takes the room that is left, and a
// sentence stands in its place while it is empty.
class QuietTable final : public QTableView {
    Q_OBJECT

public:
    explicit QuietTable(const QString& whileEmpty, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString whileEmpty_;
};

} // namespace host
