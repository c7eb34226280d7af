#include "center/FailureWindow.h"

#include "center/CompanionProgram.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/storage/GroupContainers.h"

#include <QBoxLayout>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QScreen>

namespace center {

namespace {

// As wide as the panel, and as far from the screen's edge.
constexpr int panelWidth = 344;
constexpr int screenMargin = 12;
constexpr int heightOfFindings = 260;
constexpr int margin = 20;
constexpr float outlineOpacity = 0.25F;

} // namespace

FailureWindow::FailureWindow()
    : explain_(new QPushButton(qtTrId("FailureExplain"), this))
    , findings_(new QPlainTextEdit(this)) {
    setWindowTitle(QStringLiteral("Korvel Today"));
    if (!platform::isOnWayland())
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    auto* title = new QLabel(qtTrId("FailureTitle"), this);
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    auto* text = new QLabel(qtTrId("FailureText"), this);
    for (QLabel* label : {title, text})
        label->setWordWrap(true);
    auto* again = new QPushButton(qtTrId("FailureTryAgain"), this);
    again->setDefault(true);
    again->setFocus();
    findings_->setReadOnly(true);
    findings_->setTabChangesFocus(true);
    findings_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    findings_->setAccessibleName(explain_->text());
    findings_->setFixedHeight(heightOfFindings);
    findings_->hide();

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(explain_);
    buttons->addStretch();
    buttons->addWidget(again);
    auto* lines = new QVBoxLayout(this);
    lines->setContentsMargins(margin, margin, margin, margin);
    lines->setSpacing(margin / 2);
    lines->addWidget(title);
    lines->addWidget(text);
    lines->addWidget(findings_);
    lines->addSpacing(margin / 2);
    lines->addLayout(buttons);
    setFixedWidth(panelWidth);

    connect(again, &QPushButton::clicked, this, [this] {
        forgetFindings();
        dock();
        if (tryAgain_)
            tryAgain_();
    });
    connect(explain_, &QPushButton::clicked, this, [this] { runCheck(); });
}

FailureWindow::~FailureWindow() {
    if (check_)
        check_->disconnect();
}

void FailureWindow::open(const QString& screen) {
    if (!isVisible())
        forgetFindings();
    screen_ = screen;
    dock();
    show();
    raise();
    activateWindow();
}

void FailureWindow::dock() {
    setFixedHeight(heightForWidth(panelWidth) > 0 ? heightForWidth(panelWidth) : sizeHint().height());
    if (platform::isOnWayland())
        return;
    const QScreen* asked = platform::screenNamed(screen_);
    const QRect room = (asked ? asked : QGuiApplication::primaryScreen())->availableGeometry();
    move(room.right() + 1 - panelWidth - screenMargin, room.top() + screenMargin);
}

void FailureWindow::forgetFindings() {
    if (check_)
        check_->disconnect();
    findings_->hide();
    explain_->setEnabled(true);
}

void FailureWindow::runCheck() {
    explain_->setEnabled(false);
    check_ = std::make_unique<QProcess>();
    check_->setStandardInputFile(QProcess::nullDevice());
    check_->setProcessChannelMode(QProcess::MergedChannels);
    connect(check_.get(), &QProcess::finished, this,
            [this] { showCheck(QString::fromUtf8(check_->readAll()).trimmed()); });
    connect(check_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            showCheck(check_->program() + QStringLiteral(": ") + check_->errorString());
    });
    check_->start(companionProgram("korvel-todayctl"),
                  {QStringLiteral("--containers"),
                   QFile::decodeName(platform::GroupContainers::folder().c_str()), QStringLiteral("check")});
}

void FailureWindow::showCheck(const QString& text) {
    findings_->setPlainText(text);
    findings_->show();
    dock();
}

// A window without a frame has no edge on a desktop of its colour.
void FailureWindow::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    if (!windowFlags().testFlag(Qt::FramelessWindowHint))
        return;
    QColor outline = palette().color(QPalette::WindowText);
    outline.setAlphaF(outlineOpacity);
    QPainter painter(this);
    for (const QRect& side : QRegion(rect()) - rect().adjusted(1, 1, -1, -1))
        painter.fillRect(side, outline);
}

void FailureWindow::reject() {
    QDialog::reject();
    if (dismissed_)
        dismissed_();
}

} // namespace center
