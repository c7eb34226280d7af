#pragma once

#include "host/FinanceFiles.h"
#include "host/LogModel.h"
#include "host/Mailbox.h"
#include "host/QuietTable.h"
#include "host/RequestModel.h"

#include <QFileSystemWatcher>
#include <QLabel>
#include <QWidget>

#include <functional>
#include <string>

namespace host {

// The host application's one window: the requests that a mailbox delivers, and the action log of the
// container in force, which is read again whenever something in its folders changes.
class HostWindow final : public QWidget {
    Q_OBJECT

public:
    // `say` is given each line for programs.
    HostWindow(const std::string& mailbox, std::function<void(const QString&)> say);

    [[nodiscard]] const RequestModel& requests() const { return requests_; }
    [[nodiscard]] const LogModel& log() const { return log_; }

    // What the window system and the desktop tell it of, without them: a mailbox that has something, a folder
    // that has changed.
    void takeRequests();
    void readFiles();

private:
    void layOut();
    void place();

    std::function<void(const QString&)> say_;
    Mailbox mailbox_;
    PlanNames names_;
    RequestModel requests_;
    LogModel log_;
    QFileSystemWatcher watcher_;
    QuietTable* requestTable_;
    QuietTable* logTable_;
    QLabel* logPath_;
};

} // namespace host
