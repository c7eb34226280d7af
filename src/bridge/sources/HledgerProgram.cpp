#include "bridge/sources/HledgerProgram.h"

#include "bridge/plans/Recurrence.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <algorithm>
#include <optional>
#include <utility>

namespace bridge {

namespace {

// A payment may be dated so many days before the first day and count for an occurrence after it.
constexpr int earlyPayment = 92;
constexpr std::size_t longestMessage = 300;

QString textOf(const std::string& bytes) {
    return QString::fromStdString(bytes);
}

// hledger's message in one line, without the excerpt of the journal ("12 | ~ monthly").
std::string messageOf(const QByteArray& bytes) {
    QStringList lines;
    for (const QString& line : QString::fromUtf8(bytes).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const qsizetype bar = line.indexOf(QLatin1Char('|'));
        const bool isExcerpt = bar > 0 && std::all_of(line.begin(), line.begin() + bar, [](QChar letter) {
                                   return letter.isDigit() || letter.isSpace();
                               });
        if (!isExcerpt)
            lines.append(line.simplified());
    }
    QString message = lines.join(QLatin1Char(' '));
    for (const QString& prefix : {QStringLiteral("hledger: "), QStringLiteral("Error: ")})
        if (message.startsWith(prefix))
            message.remove(0, prefix.size());
    if (message.isEmpty())
        message = QStringLiteral("it does not say why");
    return message.left(static_cast<qsizetype>(longestMessage)).toStdString();
}

// One run of hledger, which goes on while others are waited for.
class Run final {
public:
    Run(const std::string& program, const QStringList& arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
        process_.setProcessEnvironment(environment);
        process_.setStandardInputFile(QProcess::nullDevice());
        // It fails where the current folder is gone or may not be read, although it needs nothing there.
        process_.setWorkingDirectory(QStringLiteral("/"));
        process_.start(textOf(program), arguments);
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    ~Run() {
        process_.kill();
        process_.waitForFinished();
    }

    // Waits for the end; a sentence where that is none.
    std::string finish(const QElapsedTimer& elapsed, const HledgerLimits& limits) {
        const auto left = [&] { return std::max<qint64>(limits.time.count() - elapsed.elapsed(), 0); };
        while (process_.state() != QProcess::NotRunning) {
            const bool isReady = process_.waitForReadyRead(static_cast<int>(left()));
            output_ += process_.readAllStandardOutput();
            messages_ += process_.readAllStandardError();
            if (static_cast<std::size_t>(output_.size() + messages_.size()) > limits.output)
                return "makes hledger print too much";
            if (!isReady && left() == 0)
                return "takes hledger too long to read";
        }
        output_ += process_.readAllStandardOutput();
        messages_ += process_.readAllStandardError();
        if (process_.error() == QProcess::FailedToStart)
            return "needs the program hledger, which is not installed";
        if (process_.exitStatus() != QProcess::NormalExit)
            return "crashes hledger";
        if (process_.exitCode() != 0)
            return "is refused by hledger: " + messageOf(messages_);
        return {};
    }

    [[nodiscard]] const QByteArray& output() const { return output_; }

private:
    QProcess process_;
    QByteArray output_;
    QByteArray messages_;
};

QString optionOf(const char* name, Day from, Day to) {
    return textOf(name + textOfDay(from) + ".." + textOfDay(to));
}

// Asks for amounts with the decimals that their commodity has in the journal. Version 1.25 does so by itself
// and refuses the option, 1.32 needs it.
const char* const roundingOption = "--round=soft";

bool isRoundingUnknown(const std::string& fault) {
    return fault.find("Unknown flag: --round") != std::string::npos;
}

// The range's end is excluded.
QStringList transactionsOf(const QString& journal, const HledgerRange& range) {
    const Day after = plusDays(range.last, 1).value_or(range.last);
    const Day begin = plusDays(range.first, -earlyPayment).value_or(firstDay);
    return {QStringLiteral("-f"),
            journal,
            QStringLiteral("print"),
            QStringLiteral("tag:^(paid-of|_?generated-transaction)$"),
            optionOf("--forecast=", range.start, after),
            QStringLiteral("--begin"),
            textOf(textOfDay(begin)),
            QStringLiteral("-O"),
            QStringLiteral("json")};
}

QStringList accountsOf(const QString& journal, const HledgerRange& range) {
    return {QStringLiteral("-f"), journal, QStringLiteral("accounts"), QStringLiteral("--types"),
            optionOf("--forecast=", range.first, plusDays(range.last, 1).value_or(range.last))};
}

std::vector<std::string> linesOf(const QByteArray& output) {
    std::vector<std::string> lines;
    for (const QByteArray& line : output.split('\n'))
        if (!line.isEmpty())
            lines.push_back(line.toStdString());
    return lines;
}

} // namespace

HledgerRange rangeOf(const std::optional<Day>& chosen, const Period& period) {
    if (chosen)
        return {*chosen, *chosen, period.last};
    const Day first = plusDays(period.today, -90).value_or(firstDay);
    constexpr Day monday{std::chrono::year(2024) / 1 / 1};
    return {std::min(monday, first), first, period.last};
}

HledgerProgram::HledgerProgram(std::string program, HledgerLimits limits)
    : program_(std::move(program))
    , limits_(limits) {}

HledgerReport HledgerProgram::report(const std::string& journal, const HledgerRange& range) const {
    QElapsedTimer elapsed;
    elapsed.start();
    const QString file = textOf(journal);
    std::optional<Run> transactions;
    transactions.emplace(program_, transactionsOf(file, range) << QLatin1String(roundingOption));
    Run accounts(program_, accountsOf(file, range));
    Run files(program_, {QStringLiteral("-f"), file, QStringLiteral("files")});
    std::string fault = transactions->finish(elapsed, limits_);
    if (isRoundingUnknown(fault)) {
        transactions.emplace(program_, transactionsOf(file, range));
        fault = transactions->finish(elapsed, limits_);
    }
    for (Run* run : {&accounts, &files})
        if (fault.empty())
            fault = run->finish(elapsed, limits_);
    if (!fault.empty())
        return {{}, {}, std::move(fault)};
    return {
        {transactions->output().toStdString(), accounts.output().toStdString()}, linesOf(files.output()), {}};
}

std::vector<std::string> HledgerProgram::files(const std::string& journal) const {
    QElapsedTimer elapsed;
    elapsed.start();
    Run run(program_, {QStringLiteral("-f"), textOf(journal), QStringLiteral("files")});
    return run.finish(elapsed, limits_).empty() ? linesOf(run.output()) : std::vector<std::string>();
}

std::string HledgerProgram::check(const std::string& journal) const {
    QElapsedTimer elapsed;
    elapsed.start();
    Run run(program_, {QStringLiteral("-f"), textOf(journal), QStringLiteral("check")});
    return run.finish(elapsed, limits_);
}

} // namespace bridge
