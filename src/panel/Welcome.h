#pragma once

#include "platform/extension/ViewController.h"
#include "platform/views/Outlet.h"

namespace panel {

class Stack;
class WelcomeView;

// What the panel shows before any finance program has connected: what it is, where it looks for a list, and
// where that is described. Its preferred size follows the width that the view is given.
class Welcome final : public platform::ViewController {
public:
    Welcome();

    // Whether there is no container, so that no list can be read.
    [[nodiscard]] static bool isDue();

    [[nodiscard]] QString nibName() const override { return QStringLiteral("Welcome"); }

protected:
    void connectOutlets(platform::View& view) override;
    void viewDidLoad() override;

private:
    platform::Outlet<Stack> stack_;
    platform::Outlet<WelcomeView> texts_;
};

} // namespace panel
