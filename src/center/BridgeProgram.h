#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace center {

// What a call of korvel-today-bridge came to.
struct BridgeResult {
    bool isDone = false; // its exit status is 0
    QByteArray output;
    QString fault; // where it is not done, the last sentence of its standard error; never empty then
};

// Calls korvel-today-bridge with these arguments and tells what came of it; never within this call.
using BridgeCall =
    std::function<void(const QStringList& arguments, std::function<void(const BridgeResult&)> done)>;

// The program that stands beside this one, or that PATH leads to. Its calls are carried out one after the
// other, and nothing waits for them. One that takes longer than two minutes is ended. What it writes to
// standard error is written to this process's. Main thread only.
class BridgeProgram final {
public:
    // The path of the program, or its name.
    explicit BridgeProgram(QString program = pathOfProgram());
    ~BridgeProgram();
    BridgeProgram(const BridgeProgram&) = delete;
    BridgeProgram& operator=(const BridgeProgram&) = delete;

    void call(const QStringList& arguments, std::function<void(const BridgeResult&)> done);

private:
    [[nodiscard]] static QString pathOfProgram();
    void startNext();
    void ended(const QString& failure);

    struct Waiting {
        QStringList arguments;
        std::function<void(const BridgeResult&)> done;
    };

    QString program_;
    std::deque<Waiting> waiting_; // the first of which runs, if there is a process
    std::unique_ptr<QProcess> process_;
    QTimer limit_;
};

} // namespace center
