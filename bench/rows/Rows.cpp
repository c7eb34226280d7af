// Making rows, and making and configuring them, against as many bare widgets made and polished; rounds in
// turn, the least of each side. Rows for bench/table.py.
#include "exchange/TodayWidgetLogic.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/Clock.h"
#include "platform/views/InterfaceFile.h"
#include "views/rows/RowInterfaceFiles.h"
#include "views/rows/TodayTableCellView.h"

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Rows = std::vector<std::shared_ptr<platform::View>>;

constexpr int rounds = 7;

std::size_t widgetsOfOneRow = 0;

double seconds(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

double makeBareWidgets(std::size_t count) {
    std::vector<std::unique_ptr<QWidget>> made;
    made.reserve(count);
    const auto start = Clock::now();
    for (std::size_t row = 0; row < count; ++row) {
        made.push_back(std::make_unique<QWidget>());
        made.back()->ensurePolished();
        for (std::size_t i = 1; i < widgetsOfOneRow; ++i)
            (new QWidget(made.back().get()))->ensurePolished();
    }
    const double time = seconds(start);
    settle();
    return time;
}

Rows makeRows(std::size_t count) {
    const auto file = platform::InterfaceFile::named(QStringLiteral("TodayTableCellView"));
    Rows made;
    made.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        made.push_back(file->instantiate().front());
    return made;
}

TodayTransactionPtr transaction(std::size_t number) {
    TodayTransaction::Values values;
    values.name = QStringLiteral("Payee number %1").arg(number);
    values.date = platform::Clock::current().now() + static_cast<double>(number % 40) * 86400 - 864000;
    values.imageName = QStringLiteral("a-picture-that-is-not-there"); // the cheapest icon: none
    values.amount = QStringLiteral("$%1.00").arg(number);
    values.isExpense = true;
    return std::make_shared<TodayTransaction>(values);
}

struct Times {
    double bare = 1e9;
    double made = 1e9;
    double configured = 1e9; // made and configured, the icon apart
};

Times measure(std::size_t count) {
    std::vector<TodayTransactionPtr> transactions;
    for (std::size_t i = 0; i < count; ++i)
        transactions.push_back(transaction(i));
    Times least;
    for (int round = 0; round < rounds; ++round) {
        least.bare = std::min(least.bare, makeBareWidgets(count));
        auto start = Clock::now();
        Rows rows = makeRows(count);
        const double made = seconds(start);
        start = Clock::now();
        for (std::size_t i = 0; i < count; ++i)
            static_cast<TodayTableCellView&>(*rows[i]).configureForItem(transactions[i], 90);
        const double configured = seconds(start);
        start = Clock::now();
        for (std::size_t i = 0; i < count; ++i)
            (void)TodayWidgetLogic::imageByName(transactions[i]->imageName, QRectF(0, 6, 38, 38));
        const double icons = seconds(start);
        least.made = std::min(least.made, made);
        least.configured = std::min(least.configured, made + configured - icons);
        settle();
        rows.clear();
        settle();
    }
    return least;
}

void print(const char* what, std::size_t count, double ours, double bare, double bar) {
    const double scale = 1e6 / static_cast<double>(count);
    std::printf("%s, %zu rows\t%.1f us a row\t%.1f us bare widgets\t%.3f\t%.1f\n", what, count, ours * scale,
                bare * scale, ours / bare, bar);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const std::string folder = (std::filesystem::temp_directory_path() / "korvel-bench-rows").string();
    platform::GroupContainers::setFolder(folder);
    std::filesystem::create_directories(folder + "/K7RV2LTD9A.group.com.korvel.finance");
    rows::registerRowInterfaceFiles();
    const Rows one = makeRows(1);
    widgetsOfOneRow = 1 + static_cast<std::size_t>(one.front()->findChildren<QWidget*>().size());
    std::printf("# a row holds %zu widgets\n", widgetsOfOneRow);
    (void)measure(10);
    for (const std::size_t count : {std::size_t(10), std::size_t(1000), std::size_t(10000)}) {
        const Times times = measure(count);
        print("making a row", count, times.made, times.bare, 1.5);
        print("making and configuring a row", count, times.configured, times.bare, 2.5);
    }
    std::filesystem::remove_all(folder);
}
