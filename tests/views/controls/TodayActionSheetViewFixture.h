#pragma once

#include "views/controls/TodayActionSheetView.h"

#include "platform/views/InterfaceFile.h"
#include "support/Application.h"
#include "support/BundleImageHidden.h"
#include "support/Events.h"
#include "support/InterfaceFileOverride.h"
#include "support/ManualMainQueue.h"
#include "views/controls/ActionSheetInterfaceFile.h"

#include <QFontMetricsF>

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

// The fixture of all tests of the action sheet.
namespace sheet_test {

using namespace std::chrono_literals;
using platform::Button;
using platform::InterfaceFile;
using platform::View;
using support::InterfaceFileOverride;
using testing::ElementsAre;

const QString sheetFile = QStringLiteral("TodayActionSheetView");

class Receiver final : public TodayActionSheetViewDelegate {
public:
    void actionSheetClickedButtonAtIndex(std::int64_t index) override { indices.push_back(index); }

    std::vector<std::int64_t> indices;
};

class ActionSheet : public testing::Test {
protected:
    static void SetUpTestSuite() { controls::registerActionSheetInterfaceFile(); }

    void SetUp() override {
        sheet = TodayActionSheetView::createNewActionSheet();
        ASSERT_NE(sheet, nullptr);
        root.setFrame(QRectF(0, 0, 320, 245));
        root.addSubview(*sheet);
        sheet->setFrame(QRectF(0, 0, 320, 245));
    }

    void showTwo() { sheet->showWithTitle(QStringLiteral("Rent: 9"), receiver, one, two, std::nullopt); }
    void showThree() { sheet->showWithTitle(QStringLiteral("Rent: 9"), receiver, one, two, three); }
    std::vector<Button*> buttons() const {
        return {sheet->checkButton1.get(), sheet->checkButton2.get(), sheet->checkButton3.get(),
                sheet->theCancelButton.get()};
    }
    std::vector<double> alphas() const {
        std::vector<double> all;
        for (const Button* button : buttons())
            all.push_back(button->alphaValue());
        return all;
    }
    std::vector<bool> checks() const {
        std::vector<bool> all;
        for (const Button* button : buttons())
            all.push_back(!button->image().isNull());
        return all;
    }
    void click(std::size_t place) { support::click(*buttons()[place]); }
    void showWindow() { support::showWindow(root, 320, 245); }

    support::ManualMainQueue queue;
    View root;
    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
    std::shared_ptr<TodayActionSheetView> sheet;
    const QString one = QStringLiteral("Tomorrow");
    const QString two = QStringLiteral("In 3 days");
    const QString three = QStringLiteral("Next week");
};

} // namespace sheet_test
