#include "platform/views/InterfaceFile.h"

#include "platform/extension/ViewController.h"
#include "support/InterfaceFileOverride.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using platform::InterfaceFile;
using platform::View;
using platform::ViewController;
using support::InterfaceFileOverride;
using testing::ElementsAre;

namespace {

const QString fileName = QStringLiteral("SomeView");

InterfaceFile::TopLevelObjects oneView() {
    return {platform::makeView<View>()};
}

TEST(InterfaceFile, isFoundByItsExactName) {
    const InterfaceFileOverride file(fileName, oneView);
    EXPECT_TRUE(InterfaceFile::named(fileName).has_value());
    EXPECT_FALSE(InterfaceFile::named(QStringLiteral("someview")).has_value());
    EXPECT_FALSE(InterfaceFile::named(QString()).has_value());
}

TEST(InterfaceFile, makesFreshViewsEachTime) {
    const InterfaceFileOverride override(fileName, oneView);
    const auto file = InterfaceFile::named(fileName);
    const auto first = file->instantiate();
    const auto second = file->instantiate();
    ASSERT_EQ(first.size(), 1U);
    ASSERT_EQ(second.size(), 1U);
    EXPECT_NE(first.front(), second.front());
}

TEST(InterfaceFile, addedAgainReplacesTheFirst) {
    const QString name = QStringLiteral("AddedTwice");
    InterfaceFile::add(name, oneView);
    InterfaceFile::add(name, [] { return InterfaceFile::TopLevelObjects(); });
    EXPECT_TRUE(InterfaceFile::named(name)->instantiate().empty());
}

TEST(InterfaceFileOverride, stepsInForAsLongAsItLives) {
    const QString name = QStringLiteral("Overridden");
    InterfaceFile::add(name, oneView);
    {
        const InterfaceFileOverride none(name, nullptr);
        EXPECT_FALSE(InterfaceFile::named(name).has_value());
        {
            const InterfaceFileOverride empty(name, [] { return InterfaceFile::TopLevelObjects(); });
            EXPECT_TRUE(InterfaceFile::named(name)->instantiate().empty());
        }
        EXPECT_FALSE(InterfaceFile::named(name).has_value());
    }
    EXPECT_EQ(InterfaceFile::named(name)->instantiate().size(), 1U);
}

TEST(InterfaceFileOverride, leavesNoFileWhereThereWasNone) {
    { const InterfaceFileOverride file(fileName, oneView); }
    EXPECT_FALSE(InterfaceFile::named(fileName).has_value());
}

// --- the controller that loads one

class Controller final : public ViewController {
public:
    QString nibName() const override { return fileName; }

    std::vector<std::string> calls;
    View* connected = nullptr;
    View* askedInside = nullptr;

private:
    void connectOutlets(View& view) override {
        calls.emplace_back("connect");
        connected = &view;
    }
    void viewDidLoad() override {
        calls.emplace_back("load");
        askedInside = &view();
    }
};

TEST(ViewController, loadsItsViewWhenItIsFirstAskedForIt) {
    const InterfaceFileOverride file(fileName, oneView);
    const auto controller = std::make_shared<Controller>();
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_THAT(controller->calls, ElementsAre());
    View& view = controller->view();
    EXPECT_TRUE(controller->isViewLoaded());
    EXPECT_THAT(controller->calls, ElementsAre("connect", "load")) << "outlets come first";
    EXPECT_EQ(controller->connected, &view);
    EXPECT_EQ(controller->askedInside, &view) << "asking from viewDidLoad loads nothing again";
}

TEST(ViewController, loadsItsViewOnce) {
    const InterfaceFileOverride file(fileName, oneView);
    const auto controller = std::make_shared<Controller>();
    View& view = controller->view();
    EXPECT_EQ(&controller->view(), &view);
    EXPECT_EQ(controller->calls.size(), 2U);
}

TEST(ViewController, takesTheFirstOfTheFilesViews) {
    std::shared_ptr<View> first;
    const InterfaceFileOverride file(fileName, [&] {
        first = platform::makeView<View>();
        return InterfaceFile::TopLevelObjects{first, platform::makeView<View>()};
    });
    const auto controller = std::make_shared<Controller>();
    const View& loaded = controller->view();
    EXPECT_EQ(&loaded, first.get());
}

TEST(ViewController, asksForNoSizeAtFirst) {
    EXPECT_EQ(std::make_shared<Controller>()->preferredContentSize(), QSizeF(0, 0));
}

TEST(ViewController, tellsOfEverySizeThatIsSet) {
    const auto controller = std::make_shared<Controller>();
    std::vector<QSizeF> told;
    controller->setPreferredContentSize({0, 50}); // nobody listens
    controller->setPreferredContentSizeChanged([&] { told.push_back(controller->preferredContentSize()); });
    controller->setPreferredContentSize({0, 150});
    controller->setPreferredContentSize({0, 150});
    EXPECT_THAT(told, ElementsAre(QSizeF(0, 150), QSizeF(0, 150)));
}

TEST(ViewController, hasNoContextUntilAPanelGivesOne) {
    const auto controller = std::make_shared<Controller>();
    EXPECT_EQ(controller->extensionContext(), nullptr);
    const auto context = std::make_shared<platform::ExtensionContext>();
    controller->setExtensionContext(context);
    EXPECT_EQ(controller->extensionContext(), context);
}

TEST(ViewControllerDeathTest, withoutItsInterfaceFileIsFatal) {
    const auto controller = std::make_shared<Controller>();
    EXPECT_EXIT((void)controller->view(), testing::KilledBySignal(SIGABRT), "^$");
}

TEST(ViewControllerDeathTest, withAnEmptyInterfaceFileIsFatal) {
    const InterfaceFileOverride file(fileName, [] { return InterfaceFile::TopLevelObjects(); });
    const auto controller = std::make_shared<Controller>();
    EXPECT_EXIT((void)controller->view(), testing::KilledBySignal(SIGABRT), "^$");
}

} // namespace
