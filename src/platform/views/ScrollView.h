#pragma once

#include "platform/views/View.h"

#include <QPointer>

namespace platform {

// Shows one view, the document, through a window of its own size. A document that is taller scrolls with the
// wheel and the arrow and page keys; a thin bar says where it stands. Nothing bounces.
class ScrollView final : public View {
    Q_OBJECT

public:
    explicit ScrollView(QWidget* parent = nullptr);

    void setDocumentView(View* document);
    [[nodiscard]] View* documentView() const { return document_; }
    // Room in points at either side of the document; the bar stands in the trailing one.
    void setHorizontalInset(double inset);
    // The height of the document in points; its width is the scroll view's less the room at its sides.
    void setDocumentHeight(double height);

    [[nodiscard]] double offset() const { return offset_; }
    void scrollTo(double offset);
    // Scrolls just as far as it takes to show a rectangle of the document; the upper part of one that is too
    // tall.
    void scrollToVisible(const QRectF& rect);

    void scrollRectToVisible(const QRectF& rect) override;
    void layoutViews() override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Bar;

    [[nodiscard]] double largestOffset() const;
    void layoutDocument();

    QPointer<View> document_;
    Bar* bar_;
    double documentHeight_ = 0;
    double horizontalInset_ = 0;
    double offset_ = 0;
};

} // namespace platform
