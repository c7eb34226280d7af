#include "platform/views/Outlet.h"

#include "platform/views/View.h"

#include <csignal>
#include <gtest/gtest.h>
#include <memory>

using platform::Outlet;
using platform::View;

namespace {

TEST(Outlet, leadsToItsObject) {
    View view;
    const Outlet<View> outlet = &view;
    EXPECT_EQ(outlet.get(), &view);
    EXPECT_EQ(&*outlet, &view);
    EXPECT_FALSE(outlet->isHidden());
}

TEST(Outlet, holdsNothing) {
    auto view = std::make_unique<View>();
    const Outlet<View> outlet = view.get();
    view.reset();
    EXPECT_EQ(outlet.get(), nullptr);
}

TEST(Outlet, mayBeAskedForWhileUnconnected) {
    const Outlet<View> outlet;
    EXPECT_EQ(outlet.get(), nullptr);
}

TEST(OutletDeathTest, unconnectedIsFatalToUse) {
    const Outlet<View> outlet;
    EXPECT_EXIT(outlet->setHidden(true), testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)*outlet, testing::KilledBySignal(SIGABRT), "^$");
}

TEST(OutletDeathTest, whoseObjectHasGoneIsFatalToUse) {
    auto view = std::make_unique<View>();
    const Outlet<View> outlet = view.get();
    view.reset();
    EXPECT_EXIT(outlet->setHidden(true), testing::KilledBySignal(SIGABRT), "^$");
}

} // namespace
