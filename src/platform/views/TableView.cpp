#include "platform/views/TableView.h"

#include "platform/system/Fatal.h"
#include "platform/system/MainQueue.h"

#include <QEasingCurve>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace platform {

using namespace std::chrono_literals;

namespace {

constexpr auto rowAnimationDuration = 200ms;

void takeOut(const std::shared_ptr<View>& view) {
    if (!view)
        return;
    view->setAlphaValue(1);
    view->setClip(std::nullopt);
    view->setEnabled(true);
    view->removeFromSuperview();
}

} // namespace

// The change of rows that is being shown: where each moved row came from.
struct TableView::Animation {
    std::vector<double> startY;
    bool hasMoved = false;
    std::unique_ptr<MainQueue::Ticking> ticking;
};

TableView::TableView(QWidget* parent)
    : View(parent) {}

TableView::~TableView() {
    for (const Row& row : rows_)
        takeOut(row.view);
    for (const Row& row : leaving_)
        takeOut(row.view);
}

void TableView::setBackgroundColor(const QColor& color) {
    backgroundColor_ = color;
    update();
}

void TableView::setSeparator(const QColor& color, double indent) {
    separatorColor_ = color;
    separatorIndent_ = indent;
    update();
}

void TableView::registerNib(Nib nib, const QString& identifier) {
    nibs_.insert(identifier, std::move(nib));
}

std::shared_ptr<View> TableView::makeViewWithIdentifier(const QString& identifier) const {
    const auto nib = nibs_.find(identifier);
    if (nib == nibs_.end())
        return nullptr;
    const auto objects = (*nib)();
    return objects.empty() ? nullptr : objects.front();
}

void TableView::reloadData() {
    endAnimation();
    std::vector<Row> old = std::exchange(rows_, {});
    const std::int64_t count = dataSource_ ? dataSource_->numberOfRowsInTableView(*this) : 0;
    require(count >= 0);
    rows_.resize(static_cast<std::size_t>(count));
    for (std::size_t i = 0; delegate_ && i < rows_.size(); ++i)
        rows_[i].height = delegate_->tableViewHeightOfRow(*this, static_cast<std::int64_t>(i));
    calculateRestingPlaces();
    for (Row& row : rows_)
        row.y = row.restY;
    tile(Appearing::Now);
    // A view that the delegate has given again stays a subview.
    for (const Row& row : old) {
        const auto isBack = [&](const Row& now) { return now.view == row.view; };
        if (row.view && std::none_of(rows_.begin(), rows_.end(), isBack))
            takeOut(row.view);
    }
    update();
}

void TableView::beginUpdates() {
    if (updateDepth_++ == 0)
        endAnimation();
}

void TableView::endUpdates() {
    require(updateDepth_ > 0);
    if (--updateDepth_ == 0)
        startAnimation();
}

void TableView::removeRow(std::int64_t row, RowAnimation animation) {
    require(row >= 0 && row < numberOfRows());
    beginUpdates();
    Row leaving = std::move(rows_[static_cast<std::size_t>(row)]);
    rows_.erase(rows_.begin() + row);
    if (animation == RowAnimation::None) {
        takeOut(leaving.view);
    } else if (leaving.view) {
        leaving.view->setEnabled(false); // no key and no assistive program reaches it any more either
        leaving_.push_back(std::move(leaving));
    }
    endUpdates();
}

void TableView::insertRow(std::int64_t row, RowAnimation animation) {
    require(row >= 0 && row <= numberOfRows());
    beginUpdates();
    Row arriving;
    arriving.arrival = animation;
    arriving.isNew = true;
    if (delegate_)
        arriving.height = delegate_->tableViewHeightOfRow(*this, row);
    rows_.insert(rows_.begin() + row, std::move(arriving));
    endUpdates();
}

std::shared_ptr<View> TableView::viewAtRow(std::int64_t row) const {
    require(row >= 0 && row < numberOfRows());
    return rows_[static_cast<std::size_t>(row)].view;
}

void TableView::calculateRestingPlaces() {
    double y = 0;
    for (Row& row : rows_) {
        row.restY = y;
        y += row.height;
    }
}

// A row is in sight where any part of its way from here to its resting place is. Asking for a row's view may
// change what is in sight, so the work is not entered twice.
void TableView::tile(Appearing appearing) {
    if (tiling_ || !delegate_)
        return;
    tiling_ = true;
    const QRect exposed = exposedRect();
    const auto isExposed = [&](double top, double bottom) {
        return top < exposed.bottom() + 1 && bottom > exposed.top();
    };
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        Row& row = rows_[i];
        // A row that does not move appears at once, without waiting for the first frame.
        const bool isThere = row.arrival == RowAnimation::None && isExposed(row.y, row.y + row.height);
        if (isExposed(std::min(row.y, row.restY), std::max(row.y, row.restY) + row.height))
            showRow(static_cast<std::int64_t>(i), isThere ? Appearing::Now : appearing);
        else if (row.view)
            takeOut(std::exchange(row.view, nullptr));
    }
    tiling_ = false;
}

void TableView::showRow(std::int64_t number, Appearing appearing) {
    const auto index = static_cast<std::size_t>(number);
    if (!rows_[index].view) {
        auto view = delegate_->tableViewViewForTableColumnRow(*this, 0, number);
        if (!view || index >= rows_.size())
            return;
        rows_[index].view = std::move(view);
    }
    Row& row = rows_[index];
    place(row);
    if (appearing == Appearing::Now && row.view->superview() != this)
        addSubview(*row.view);
}

void TableView::place(const Row& row) const {
    if (row.view)
        row.view->setFrame(QRectF(0, row.y, width(), row.height));
}

void TableView::startAnimation() {
    calculateRestingPlaces();
    for (Row& row : rows_)
        if (std::exchange(row.isNew, false))
            row.y = row.arrival == RowAnimation::SlideDown ? row.restY - row.height : row.restY;
    tile(Appearing::WithTheFirstFrame);
    animation_ = std::make_unique<Animation>();
    for (const Row& row : rows_) {
        animation_->startY.push_back(row.y);
        if (row.view && row.arrival != RowAnimation::None)
            row.view->setAlphaValue(0);
    }
    animation_->ticking = MainQueue::current().animate(rowAnimationDuration,
                                                       [this](double progress) { applyProgress(progress); });
}

// Moving rows are added with the first frame, so that a click performs its action first.
void TableView::showMovingRows() {
    if (std::exchange(animation_->hasMoved, true))
        return;
    tile(Appearing::Now);
    for (const Row& row : rows_)
        if (row.view && row.arrival != RowAnimation::None)
            row.view->lower();
}

void TableView::applyProgress(double progress) {
    if (!animation_)
        return;
    showMovingRows();
    if (!animation_) // a row that was asked for its view may have had the table loaded again
        return;
    const QEasingCurve curve(QEasingCurve::InOutSine);
    const double eased = curve.valueForProgress(progress);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        Row& row = rows_[i];
        const double start = animation_->startY[i];
        row.y = start + (row.restY - start) * eased;
        place(row);
        if (row.view && row.arrival != RowAnimation::None)
            row.view->setAlphaValue(eased);
    }
    for (const Row& row : leaving_)
        row.view->setAlphaValue(1 - curve.valueForProgress(std::min(1.0, 2 * progress)));
    clipToGaps();
    update();
    if (progress >= 1)
        endAnimation();
}

// Rows are translucent: what comes and what goes shows only in the gap that the others leave.
void TableView::clipToGaps() {
    const auto clip = [this](const Row& row, auto covers) {
        double top = row.y;
        double bottom = row.y + row.height;
        for (const Row& other : rows_) {
            if (&other == &row || !covers(other))
                continue;
            if (other.y <= row.y)
                top = std::max(top, other.y + other.height);
            else
                bottom = std::min(bottom, other.y);
        }
        row.view->setClip(QRectF(0, top - row.y, width(), std::max(0.0, bottom - top)));
    };
    for (const Row& row : rows_)
        if (row.view && row.arrival == RowAnimation::SlideDown)
            clip(row, [](const Row& other) { return other.arrival == RowAnimation::None; });
    for (const Row& row : leaving_)
        clip(row, [](const Row&) { return true; });
}

void TableView::endAnimation() {
    if (!animation_)
        return;
    animation_.reset();
    for (const Row& row : std::exchange(leaving_, {}))
        takeOut(row.view);
    for (Row& row : rows_) {
        row.y = row.restY;
        if (row.view && row.arrival != RowAnimation::None) {
            row.view->setAlphaValue(1);
            row.view->setClip(std::nullopt);
        }
        row.arrival = RowAnimation::None;
        place(row);
    }
    tile(Appearing::Now);
}

// A row is asked only about points that lie in it: a row may take every point for its own.
View* TableView::hitTest(QPointF point) {
    if (!takesPoint(point))
        return nullptr;
    const QPointF inside = point - origin();
    for (const Row& row : rows_)
        if (row.view && row.view->superview() == this && inside.y() >= row.y &&
            inside.y() < row.y + row.height)
            if (View* hit = row.view->hitTest(inside))
                return hit;
    return this;
}

void TableView::exposedRectChanged() {
    tile(Appearing::Now);
}

AccessibleTraits TableView::accessibleTraits() const {
    AccessibleTraits traits;
    traits.role = QAccessible::List;
    traits.name = accessibleName();
    return traits;
}

void TableView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    if (backgroundColor_.alpha() > 0)
        painter.fillRect(rect(), backgroundColor_);
    if (separatorColor_.alpha() == 0)
        return;
    // One device pixel, whatever the scale.
    const double hairline = 1.0 / devicePixelRatioF();
    const auto drawAbove = [&](double y) {
        const double width = this->width() - separatorIndent_;
        const double x = layoutDirection() == Qt::RightToLeft ? 0 : separatorIndent_;
        const QRectF line(x, y - hairline, width, hairline);
        if (line.intersects(event->rect()))
            painter.fillRect(line, separatorColor_);
    };
    // A row that slides in from behind the one above it has its line below that one.
    for (std::size_t i = 1; i < rows_.size(); ++i)
        drawAbove(std::max(rows_[i].y, rows_[i - 1].y + rows_[i - 1].height));
    // The line above a row that leaves stays: it is that of the row which takes its place.
    for (const Row& left : leaving_)
        if (left.y > 0 && std::ranges::any_of(rows_, [&](const Row& row) { return row.restY == left.y; }))
            drawAbove(left.y);
}

void TableView::layoutViews() {
    View::layoutViews();
    for (const Row& row : rows_)
        place(row);
    tile(Appearing::Now);
}

} // namespace platform
