#include "support/Application.h"

#include <QApplication>

#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

QStringList warnings;

void handleMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    // The offscreen platform prints the first warning for each window, the second one for each tooltip and
    // the third one without a desktop.
    if (type == QtDebugMsg || text.contains(QLatin1String("propagateSizeHints")) ||
        text.contains(QLatin1String("does not support raise()")) ||
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

// The offscreen platform lets test programs and death tests run in parallel.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    qInstallMessageHandler(handleMessage);
    const QApplication application(argc, argv);
    // The last listener is the first to be told of a test's end, so that the printer counts its failures.
    testing::UnitTest::GetInstance()->listeners().Append(new Housekeeping);
    return RUN_ALL_TESTS();
}
