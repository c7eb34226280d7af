#pragma once

#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <map>
#include <string>
#include <vector>

// The report of a started probe.
struct OpenerReport {
    std::vector<std::string> arguments;
    std::map<int, std::string> files;
    pid_t session = 0;
    pid_t process = 0;
    std::string ignoredSignals;
    std::string blockedSignals;
};

// Makes processes whose parents have ended children of this process for as long as it lives, so that a test
// can tell when the last one has ended.
class AdoptedOrphans final {
public:
    AdoptedOrphans();
    ~AdoptedOrphans();
    AdoptedOrphans(const AdoptedOrphans&) = delete;
    AdoptedOrphans& operator=(const AdoptedOrphans&) = delete;
};

// A folder that is the only one on PATH and has only the probes that the test installs.
class OpenerFolder final {
public:
    OpenerFolder();

    void install(const std::string& name) const; // makes the FIFO of its report too
    [[nodiscard]] std::string program(const std::string& name) const { return bin_ + "/" + name; }

    // Waits at most ten seconds for the report of a probe of that name. Absent if there is none.
    [[nodiscard]] OpenerReport reportOf(const std::string& name) const;
    // Whether there is a report of a probe of that name after all processes of AdoptedOrphans have ended.
    [[nodiscard]] bool hasReport(const std::string& name) const;
    // Makes probes wait until release() is called for each of them.
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

// Waits at most ten seconds for the end of a process, which need not be a child.
[[nodiscard]] bool waitForEnd(pid_t process);
