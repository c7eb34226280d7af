#pragma once

#include "platform/views/View.h"

#include "support/Application.h"
#include "support/Events.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// What the tests of the mouse share.
namespace mouse_test {

using platform::MouseEvent;
using platform::View;
using testing::ElementsAre;

using Log = std::vector<std::string>;

// Writes down the mouse events that reach it, and handles them unless told to pass them on.
class Spy final : public View {
public:
    Spy(Log& log, std::string name, QRectF frame, View* superview = nullptr)
        : log_(log)
        , name_(std::move(name)) {
        if (superview)
            superview->addSubview(*this);
        setFrame(frame);
    }

    void mouseDown(const MouseEvent& event) override {
        log_.push_back(name_ + " down");
        if (passesOn)
            View::mouseDown(event);
        if (whenPressed)
            whenPressed();
    }
    void mouseDragged(const MouseEvent& event) override {
        log_.push_back(name_ + " dragged");
        lastPosition = event.globalPosition;
        if (passesOn)
            View::mouseDragged(event);
    }
    void mouseUp(const MouseEvent& event) override {
        log_.push_back(name_ + " up");
        if (passesOn)
            View::mouseUp(event);
        if (whenReleased)
            whenReleased();
    }
    void mouseCancelled() override {
        if (tellsOfCancelling)
            log_.push_back(name_ + " cancelled");
        if (passesOn)
            View::mouseCancelled();
    }
    View* hitTest(QPointF point) override { return hit ? hit(point) : View::hitTest(point); }

    bool passesOn = false;
    bool tellsOfCancelling = false;
    std::function<void()> whenPressed;
    std::function<void()> whenReleased;
    std::function<View*(QPointF)> hit;
    QPointF lastPosition;

private:
    Log& log_;
    std::string name_;
};

class Mouse : public testing::Test {
protected:
    void SetUp() override { support::showWindow(root, 200, 100); }

    Log log;
    Spy root{log, "root", QRectF()};
};

} // namespace mouse_test
