// 40 rows that show a glyph of 5000 by 5000 pixels against 40 that show one of 40 by 40: a process each, its
// peak memory, and the time to configure its rows. Rows for bench/table.py.
#include "model/GroupIdentifiers.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/Clock.h"
#include "platform/views/InterfaceFile.h"
#include "views/rows/RowInterfaceFiles.h"
#include "views/rows/TodayTableCellView.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

#include <sys/resource.h>

namespace {

constexpr int rowCount = 40;
constexpr double memoryBar = 1.3;

// A ring in one bit a pixel, as such a file is smallest.
QImage ring(int side) {
    QImage image(side, side, QImage::Format_Mono);
    image.setColorTable({qRgba(0, 0, 0, 0), qRgba(0, 0, 0, 255)});
    const double middle = (side - 1) / 2.0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double distance = std::hypot(x - middle, y - middle) / side;
            image.setPixel(x, y, distance > 0.3 && distance < 0.45 ? 1 : 0);
        }
    }
    return image;
}

// Configures the rows and prints the milliseconds of one and the process's peak memory in MiB.
int measure(const QString& glyph) {
    rows::registerRowInterfaceFiles();
    const auto file = platform::InterfaceFile::named(QStringLiteral("TodayTableCellView"));
    TodayTransaction::Values values;
    values.name = QStringLiteral("Payee");
    values.date = platform::Clock::current().now();
    values.imageName = glyph;
    values.amount = QStringLiteral("$1.00");
    const auto transaction = std::make_shared<TodayTransaction>(values);
    std::vector<std::shared_ptr<platform::View>> made;
    for (int i = 0; i < rowCount; ++i)
        made.push_back(file->instantiate().front());
    const auto start = std::chrono::steady_clock::now();
    for (const auto& row : made)
        static_cast<TodayTableCellView&>(*row).configureForItem(transaction, 90);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%.3f %.1f\n", time.count() / rowCount, static_cast<double>(usage.ru_maxrss) / 1024);
    return 0;
}

struct Figures {
    double milliseconds = 0;
    double mebibytes = 0;
};

Figures figuresOf(const QString& glyph, const QString& folder) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {glyph, folder});
    process.waitForFinished(-1);
    Figures figures;
    const QByteArray text = process.readAllStandardOutput();
    if (process.exitCode() != 0 ||
        std::sscanf(text.constData(), "%lf %lf", &figures.milliseconds, &figures.mebibytes) != 2)
        qFatal("a glyph cannot be shown");
    return figures;
}

void writeIcon(const QString& folder, const QString& name, int side) {
    const std::string_view group = fullEditionGroupIdentifier;
    const QString icons = folder + QLatin1Char('/') +
                          QString::fromUtf8(group.data(), static_cast<qsizetype>(group.size())) +
                          QStringLiteral("/-/icons");
    QDir().mkpath(icons);
    const QString path = icons + QLatin1Char('/') + name + QStringLiteral(".png");
    if (!ring(side).save(path, "PNG"))
        qFatal("a glyph cannot be written");
    std::printf("# a glyph of %d pixels a side is a file of %.1f KB\n", side,
                static_cast<double>(QFileInfo(path).size()) / 1000);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc == 3) {
        platform::GroupContainers::setFolder(argv[2]);
        return measure(QString::fromUtf8(argv[1]));
    }
    const QTemporaryDir folder;
    writeIcon(folder.path(), QStringLiteral("large"), 5000);
    writeIcon(folder.path(), QStringLiteral("small"), 40);
    const Figures large = figuresOf(QStringLiteral("large"), folder.path());
    const Figures small = figuresOf(QStringLiteral("small"), folder.path());
    std::printf("peak memory, %d rows with a glyph of 5000 px\t%.1f MiB\t%.1f MiB of 40 px\t%.3f\t%.1f\n",
                rowCount, large.mebibytes, small.mebibytes, large.mebibytes / small.mebibytes, memoryBar);
    std::printf("configuring one of them\t%.2f ms\t%.2f ms of 40 px\t%.3f\t-\n", large.milliseconds,
                small.milliseconds, large.milliseconds / small.milliseconds);
    return 0;
}
