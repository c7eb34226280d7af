#pragma once

#include "platform/views/View.h"

#include "support/Application.h"

#include <QPainter>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

// What the tests of one class share.
namespace view_test {

using platform::View;
using testing::ElementsAre;

// Fills itself with one colour and counts how often it was asked to lay out its subviews.
class Patch final : public View {
public:
    explicit Patch(QColor color = Qt::red, QWidget* parent = nullptr)
        : View(parent)
        , color_(color) {}

    void layoutViews() override {
        ++layouts;
        View::layoutViews();
    }

    int layouts = 0;

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), color_); }

private:
    QColor color_;
};

} // namespace view_test
