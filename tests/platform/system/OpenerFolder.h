#pragma once

#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <map>
#include <string>
#include <vector>

// What a started probe said of itself.
struct OpenerReport {
    std::vector<std::string> arguments;
    std::map<int, std::string> files;
    pid_t session = 0;
    pid_t process = 0;
    std::string ignoredSignals;
    std::string blockedSignals;
};

// While this lives, processes that nobody waits for become this one's children, so that a test can tell when
// the last has ended.
class AdoptedOrphans final {
public:
    AdoptedOrphans();
    ~AdoptedOrphans();
    AdoptedOrphans(const AdoptedOrphans&) = delete;
    AdoptedOrphans& operator=(const AdoptedOrphans&) = delete;
};

// A PATH of the test's own, on which there is nothing but probes under the names that the test installs.
class OpenerFolder final {
public:
    OpenerFolder();

    void install(const std::string& name) const; // makes its report's fifo too
    [[nodiscard]] std::string program(const std::string& name) const { return bin_ + "/" + name; }

    // Waits for a probe of that name to report, ten seconds at most; empty where it does not.
    [[nodiscard]] OpenerReport reportOf(const std::string& name) const;
    // Whether a probe of that name reports, once all that were started under AdoptedOrphans have ended.
    [[nodiscard]] bool hasReport(const std::string& name) const;
    // From now on probes wait; release() lets one go.
    void makeProbesWait();
    void release() const;

    const support::TemporaryFolder& folder() const { return folder_; }

private:
    [[nodiscard]] std::string fifoOf(const std::string& name) const;

    support::TemporaryFolder folder_;
    std::string bin_;
    support::EnvironmentVariable path_;
    support::EnvironmentVariable report_;
    support::EnvironmentVariable wait_;
};

// Waits for a process that need not be a child to end, ten seconds at most.
[[nodiscard]] bool waitForEnd(pid_t process);
