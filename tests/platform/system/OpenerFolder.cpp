#include "OpenerFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int patience = 10'000; // milliseconds

std::string bytesOf(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

OpenerReport parse(const std::string& text) {
    OpenerReport report;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string kind;
        std::string word;
        words >> kind >> word;
        if (kind == "argument")
            report.arguments.push_back(bytesOf(word));
        else if (kind == "file")
            words >> report.files[std::stoi(word)];
        else if (kind == "session")
            report.session = std::stoi(word);
        else if (kind == "process")
            report.process = std::stoi(word);
        else if (kind == "SigIgn")
            report.ignoredSignals = word;
        else if (kind == "SigBlk")
            report.blockedSignals = word;
    }
    return report;
}

bool isReadable(int file, int milliseconds) {
    pollfd request{file, POLLIN, 0};
    return poll(&request, 1, milliseconds) > 0;
}

// Reads a FIFO until its last writer has closed it.
std::string readFifo(const std::string& path) {
    const int fifo = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::string text;
    char bytes[4096];
    while (isReadable(fifo, patience)) {
        const ssize_t count = read(fifo, bytes, sizeof bytes);
        if (count == 0 || (count < 0 && errno != EAGAIN))
            break;
        text.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    close(fifo);
    return text;
}

} // namespace

AdoptedOrphans::AdoptedOrphans() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

AdoptedOrphans::~AdoptedOrphans() {
    while (waitpid(-1, nullptr, 0) > 0)
        ;
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

OpenerFolder::OpenerFolder()
    : bin_(folder_.path("bin"))
    , path_("PATH", bin_)
    , report_("PROBE_REPORT", folder_.path("report"))
    , wait_("PROBE_WAIT", nullptr) {
    std::filesystem::create_directory(bin_);
}

void OpenerFolder::install(const std::string& name) const {
    std::filesystem::create_symlink(KORVEL_OPENER_PROBE, program(name));
    EXPECT_EQ(mkfifo(fifoOf(name).c_str(), 0600), 0);
}

std::string OpenerFolder::fifoOf(const std::string& name) const {
    return folder_.path("report." + name);
}

OpenerReport OpenerFolder::reportOf(const std::string& name) const {
    return parse(readFifo(fifoOf(name)));
}

bool OpenerFolder::hasReport(const std::string& name) const {
    const int fifo = open(fifoOf(name).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    while (waitpid(-1, nullptr, 0) > 0)
        ;
    const bool has = isReadable(fifo, 0);
    close(fifo);
    return has;
}

void OpenerFolder::makeProbesWait() {
    EXPECT_EQ(mkfifo(folder_.path("wait").c_str(), 0600), 0);
    wait_.set(folder_.path("wait").c_str());
}

void OpenerFolder::release() const {
    close(open(folder_.path("wait").c_str(), O_WRONLY | O_CLOEXEC));
}

bool waitForEnd(pid_t process) {
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (handle < 0)
        return errno == ESRCH;
    const bool ended = isReadable(handle, patience);
    close(handle);
    return ended;
}
