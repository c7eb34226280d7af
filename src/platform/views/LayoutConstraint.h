#pragma once

#include <QObject>

#include <functional>

namespace platform {

// One number of a layout, in points. Whoever owns the layout hears of every change and lays its views out
// anew.
class LayoutConstraint final : public QObject {
    Q_OBJECT

public:
    LayoutConstraint(double constant, QObject* owner);

    [[nodiscard]] double constant() const { return constant_; }

    // Sets the constant at once; an animation that runs on it stops.
    void setConstant(double constant);

    void setChanged(std::function<void()> changed) { changed_ = std::move(changed); }

private:
    friend class AnimationGroup;

    void moveTo(double constant);

    double constant_;
    std::function<void()> changed_;
    std::uint64_t animation_ = 0; // the animation that moves it, by number; the latest wins
};

} // namespace platform
