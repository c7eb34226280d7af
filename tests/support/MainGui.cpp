#include "support/Application.h"

#include <QApplication>

#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

QStringList warnings;

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    // The offscreen platform says the one of every window; the other is about the desktop that is not there.
    if (type == QtDebugMsg || text.contains(QLatin1String("propagateSizeHints")) ||
        text.contains(QLatin1String("XDG_RUNTIME_DIR")))
        return;
    warnings.append(text);
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

class Housekeeping final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { warnings.clear(); }

    void OnTestEnd(const testing::TestInfo&) override {
        support::flushDeferredDeletes();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        if (!warnings.isEmpty())
            ADD_FAILURE() << "Qt warned: " << qPrintable(warnings.join(QLatin1Char('\n')));
    }
};

} // namespace

// Parallel test programs and their death tests have no screen to fight for.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    qInstallMessageHandler(handleMessage);
    const QApplication application(argc, argv);
    // Of two listeners the later one hears of a test's end first, so the printer counts its failures.
    testing::UnitTest::GetInstance()->listeners().Append(new Housekeeping);
    return RUN_ALL_TESTS();
}
