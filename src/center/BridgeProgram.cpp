#include "center/BridgeProgram.h"

#include "center/CompanionProgram.h"

#include <chrono>
#include <cstdio>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr const char* name = "korvel-today-bridge";
constexpr auto longestCall = 2min; // a journal of many years takes seconds

// The last line, without the program's name.
QString lastSentence(const QString& errors) {
    QString line = errors.trimmed().section(u'\n', -1);
    const QString prefix = QLatin1String(name) + QStringLiteral(": ");
    if (line.startsWith(prefix))
        line.remove(0, prefix.size());
    return line;
}

} // namespace

BridgeProgram::BridgeProgram(QString program)
    : program_(std::move(program)) {
    limit_.setSingleShot(true);
    QObject::connect(&limit_, &QTimer::timeout, &limit_, [this] {
        if (process_)
            process_->kill();
    });
}

// A call that is ended at any moment is made good by the next.
BridgeProgram::~BridgeProgram() {
    if (!process_)
        return;
    process_->disconnect();
    process_->kill();
    process_->waitForFinished();
}

QString BridgeProgram::pathOfProgram() {
    return companionProgram(name);
}

void BridgeProgram::call(const QStringList& arguments, std::function<void(const BridgeResult&)> done) {
    waiting_.push_back({arguments, std::move(done)});
    if (!process_)
        startNext();
}

void BridgeProgram::startNext() {
    if (waiting_.empty())
        return;
    process_ = std::make_unique<QProcess>();
    process_->setStandardInputFile(QProcess::nullDevice());
    QObject::connect(process_.get(), &QProcess::finished, &limit_,
                     [this](int status, QProcess::ExitStatus exit) {
                         ended(exit == QProcess::NormalExit && status == 0
                                   ? QString()
                                   : QStringLiteral("%1 has failed").arg(program_));
                     });
    QObject::connect(
        process_.get(), &QProcess::errorOccurred, &limit_,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                ended(program_ + QStringLiteral(": ") + process_->errorString());
        },
        Qt::QueuedConnection);
    limit_.start(longestCall);
    process_->start(program_, waiting_.front().arguments);
}

// The failure is empty where the call is done; else it is what is told if the program says nothing itself.
void BridgeProgram::ended(const QString& failure) {
    limit_.stop();
    const QByteArray errors = process_->readAllStandardError();
    std::fwrite(errors.constData(), 1, static_cast<std::size_t>(errors.size()), stderr);
    BridgeResult result{failure.isEmpty(), process_->readAllStandardOutput(), {}};
    if (!result.isDone) {
        result.fault = lastSentence(QString::fromUtf8(errors));
        if (result.fault.isEmpty())
            result.fault = failure;
    }
    process_.release()->deleteLater(); // it is this that calls
    const auto done = std::move(waiting_.front().done);
    waiting_.pop_front();
    startNext();
    if (done)
        done(result);
}

} // namespace center
