#include "host/Session.h"

#include "host/Mailbox.h"
#include "host/Process.h"
#include "host/Registration.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace host {

namespace {

// A new folder that is closed to other users, removed with all that is in it at the end; an empty path where
// none could be made.
class TemporaryFolder final {
public:
    TemporaryFolder() {
        const char* parent = std::getenv("TMPDIR");
        path = std::string(parent && parent[0] ? parent : "/tmp") + "/korvel-demo-XXXXXX";
        if (!mkdtemp(path.data()))
            path.clear();
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path;
};

int failed(const std::string& what) {
    std::fprintf(stderr, "korvel-demo-host: %s: %s\n", what.c_str(), std::strerror(errno));
    return 1;
}

sigset_t awaitedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGCHLD, SIGHUP, SIGINT, SIGQUIT, SIGTERM})
        sigaddset(&signals, signal);
    return signals;
}

// Runs until the panel ends, or a signal asks for it, whose number is then put in `ending`.
int runInFolder(const std::string& folder, const std::vector<std::string>& words, const sigset_t& before,
                int& ending) {
    std::error_code error;
    const std::string self = std::filesystem::read_symlink("/proc/self/exe", error).string();
    // A short name in this folder, which need not be quoted however odd the program's own path is.
    const std::string program = folder + "/korvel-demo-host";
    const std::string mailboxPath = folder + "/requests";
    if (symlink(self.c_str(), program.c_str()) != 0 || makeMailbox(mailboxPath) ||
        !writeRegistration(folder, {program, "--deliver", mailboxPath}))
        return failed(folder);
    const Mailbox mailbox(mailboxPath); // what is asked before the window is ready waits in it
    if (!mailbox.isOpen())
        return failed(mailboxPath);

    std::vector<std::string> panelWords{words[1], "--containers", words[0]};
    panelWords.insert(panelWords.end(), words.begin() + 2, words.end());
    Process window({program, "--window", mailboxPath, words[0]}, {}, before);
    Process panel(panelWords, environmentFor(folder), before);
    const sigset_t awaited = awaitedSignals();
    while (!panel.hasEnded()) {
        const int signal = sigwaitinfo(&awaited, nullptr);
        if (signal > 0 && signal != SIGCHLD) {
            ending = signal;
            break;
        }
    }
    return panel.exitStatus();
}

} // namespace

int runSession(const std::vector<std::string>& words) {
    // Before anything exists that would have to be cleaned up.
    sigset_t before;
    const sigset_t awaited = awaitedSignals();
    sigprocmask(SIG_BLOCK, &awaited, &before);
    std::signal(SIGCHLD, SIG_DFL); // ignored, a child's end would leave no status
    int ending = 0;
    int status = 1;
    {
        const TemporaryFolder folder;
        status = folder.path.empty() ? failed("a temporary folder")
                                     : runInFolder(folder.path, words, before, ending);
    }
    if (ending != 0) {
        std::signal(ending, SIG_DFL);
        raise(ending);
        sigprocmask(SIG_SETMASK, &before, nullptr);
        return 128 + ending;
    }
    return status;
}

int runDelivery(const std::vector<std::string>& words) {
    const std::error_code error = deliver(words[0], words[1]);
    if (!error)
        return 0;
    std::fprintf(stderr, "korvel-demo-host: %s: %s\n", words[1].c_str(), error.message().c_str());
    return 1;
}

} // namespace host
