#include "host/HostWindow.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QSocketNotifier>
#include <QVBoxLayout>

#include <initializer_list>
#include <utility>

namespace host {

namespace {

constexpr QSize usualSize(860, 560);
constexpr int panelWidth = 344; // at the screen's right edge
constexpr double headingSize = 1.25;

QLabel* label(const QString& text) {
    auto* made = new QLabel(text);
    made->setWordWrap(true);
    made->setTextFormat(Qt::PlainText);
    // A label goes by its text's direction; these texts are English, and stand where reading begins.
    if (QGuiApplication::isRightToLeft())
        made->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return made;
}

QLabel* heading(const QString& text) {
    auto* made = label(text);
    QFont font = made->font();
    font.setPointSizeF(font.pointSizeF() * headingSize);
    font.setWeight(QFont::DemiBold);
    made->setFont(font);
    return made;
}

QLabel* quietLabel() {
    auto* made = label(QString());
    made->setForegroundRole(QPalette::PlaceholderText);
    made->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return made;
}

void setColumnWidths(QTableView& table, std::initializer_list<const char*> widestTexts) {
    constexpr int padding = 24;
    int column = 0;
    for (const char* text : widestTexts)
        table.setColumnWidth(column++, table.fontMetrics().horizontalAdvance(QLatin1String(text)) + padding);
}

} // namespace

HostWindow::HostWindow(const std::string& mailbox, std::function<void(const QString&)> say)
    : say_(std::move(say))
    , mailbox_(mailbox)
    , log_(names_)
    , requestTable_(new QuietTable(
          QStringLiteral("Nothing so far. In the panel, click a row and then Info, or click the last row.")))
    , logTable_(new QuietTable(
          QStringLiteral("Nothing so far. In the panel, click a row and then Paid, Later or Delete.")))
    , logPath_(quietLabel()) {
    setWindowTitle(QStringLiteral("Demo host application"));
    layOut();
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &HostWindow::readFiles);
    if (mailbox_.isOpen()) {
        auto* notifier = new QSocketNotifier(mailbox_.descriptor(), QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &HostWindow::takeRequests);
    }
    readFiles();
    place();
}

void HostWindow::layOut() {
    requestTable_->setModel(&requests_);
    requestTable_->setAccessibleName(QStringLiteral("Requests"));
    setColumnWidths(*requestTable_,
                    {"00:00:00", "Show all transactions", "Northwind electricity", "00 Mmm 0000"});
    logTable_->setModel(&log_);
    logTable_->setAccessibleName(QStringLiteral("Action log"));
    setColumnWidths(*logTable_, {"Delete, with all later ones", "Northwind electricity", "00 Mmm 0000"});

    auto* column = new QVBoxLayout(this);
    constexpr int margin = 16;
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin / 2);
    column->addWidget(heading(QStringLiteral("Requests")));
    column->addWidget(label(QStringLiteral("What the panel has asked the finance application to open.")));
    column->addWidget(requestTable_, 1);
    column->addSpacing(margin / 2);
    column->addWidget(heading(QStringLiteral("Action log")));
    column->addWidget(label(QStringLiteral(
        "What was chosen in the panel, left for the finance application to carry out in its own data.")));
    column->addWidget(logTable_, 1);
    column->addWidget(logPath_);
}

// In the middle of what the panel leaves free; a desktop that places windows itself pays no heed.
void HostWindow::place() {
    const QRect available = screen()->availableGeometry();
    const QRect free = available.adjusted(0, 0, -panelWidth, 0);
    resize(usualSize.boundedTo(free.size()));
    move(free.center() - rect().center());
}

// A closed window comes back, as the real application would be started by its URL.
void HostWindow::takeRequests() {
    for (const std::string& url : mailbox_.take()) {
        Request request = readRequest(QString::fromStdString(url), QTime::currentTime(), names_);
        say_(outputLine(request));
        requests_.add(std::move(request));
        requestTable_->scrollToTop();
        showNormal();
        activateWindow();
    }
}

void HostWindow::readFiles() {
    names_.learnFromFeed();
    const QStringList lines = log_.setRecords(actionLog());
    for (const QString& line : lines)
        say_(line);
    if (!lines.isEmpty())
        logTable_->scrollToBottom();
    logPath_->setText(actionLogPath());
    // A folder that was made anew is no longer watched, and paths that are watched already are passed over.
    if (const QStringList folders = foldersToWatch(); !folders.isEmpty())
        watcher_.addPaths(folders);
}

} // namespace host
