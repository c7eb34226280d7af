#pragma once

#include "platform/views/View.h"

#include <QColor>
#include <QHash>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace platform {

class TableView;

class TableViewDataSource {
public:
    virtual ~TableViewDataSource() = default;
    virtual std::int64_t numberOfRowsInTableView(TableView& table) = 0;
};

class TableViewDelegate {
public:
    virtual ~TableViewDelegate() = default;
    virtual std::shared_ptr<View> tableViewViewForTableColumnRow(TableView& table, std::int64_t column,
                                                                 std::int64_t row) = 0;
    virtual double tableViewHeightOfRow(TableView& table, std::int64_t row) = 0; // points
};

enum class RowAnimation { None, Fade, SlideDown };

// One column of rows from top to bottom. It asks its delegate for a row's view when the row comes into sight
// and holds only the views in sight as subviews: thousands of siblings would stall the first paint. A row
// that leaves with an animation fades in the first half of its time and takes no press any more. Row numbers
// outside the table are fatal.
class TableView final : public View {
    Q_OBJECT

public:
    explicit TableView(QWidget* parent = nullptr);
    ~TableView() override;

    // Neither is owned: the caller must reset both before they are destroyed.
    void setDataSource(TableViewDataSource* dataSource) { dataSource_ = dataSource; }
    void setDelegate(TableViewDelegate* delegate) { delegate_ = delegate; }

    [[nodiscard]] const QColor& backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(const QColor& color);
    // The hairline between two rows, which starts at an indent from the leading edge (points).
    void setSeparator(const QColor& color, double indent);

    // Makes a fresh view at each call from the interface file that is registered under an identifier: the
    // first of its top-level views. None for an unknown identifier or an empty file.
    using Nib = std::function<std::vector<std::shared_ptr<View>>()>;
    void registerNib(Nib nib, const QString& identifier);
    [[nodiscard]] std::shared_ptr<View> makeViewWithIdentifier(const QString& identifier) const;

    // Forgets all rows and asks for them anew. Running row animations end at once.
    void reloadData();

    // Changes between the two calls are animated together. Each change numbers the rows as the previous
    // changes have left them.
    void beginUpdates();
    void endUpdates();
    void removeRow(std::int64_t row, RowAnimation animation);
    void insertRow(std::int64_t row, RowAnimation animation);

    [[nodiscard]] std::int64_t numberOfRows() const { return static_cast<std::int64_t>(rows_.size()); }
    // The current view of a row; null while the row is out of sight.
    [[nodiscard]] std::shared_ptr<View> viewAtRow(std::int64_t row) const;

    [[nodiscard]] View* hitTest(QPointF point) override;
    void exposedRectChanged() override;
    void layoutViews() override;
    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Row {
        std::shared_ptr<View> view; // none while out of sight
        double height = 0;
        double y = 0;     // where it stands now
        double restY = 0; // where it stands when no animation runs
        RowAnimation arrival = RowAnimation::None;
        bool isNew = false; // stands nowhere yet
    };
    struct Animation;

    void calculateRestingPlaces();
    // When rows that come into sight are added as subviews.
    enum class Appearing { Now, WithTheFirstFrame };
    void tile(Appearing appearing);
    void place(const Row& row) const;
    void showRow(std::int64_t number, Appearing appearing);
    void startAnimation();
    void showMovingRows();
    void applyProgress(double progress);
    void clipToGaps();
    void endAnimation();

    TableViewDataSource* dataSource_ = nullptr;
    TableViewDelegate* delegate_ = nullptr;
    QHash<QString, Nib> nibs_;
    std::vector<Row> rows_;
    std::vector<Row> leaving_;
    std::unique_ptr<Animation> animation_;
    QColor backgroundColor_ = Qt::transparent;
    QColor separatorColor_ = Qt::transparent;
    double separatorIndent_ = 0;
    int updateDepth_ = 0;
    bool tiling_ = false;
};

} // namespace platform
