// Replaces a desktop's opener: reports how it was started, then waits or ends as it is told.
//
// It writes its report to the FIFO or file that PROBE_REPORT names, with "." and its own name appended, in
// lines: "argument HEX" for each argument, "file NUMBER PATH" for each open file, "session ID", "process ID",
// and the ignored and blocked signals in the kernel's form. If PROBE_WAIT is set, it opens that FIFO and so
// waits for a writer. Its exit status is PROBE_STATUS.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

std::string hex(const std::string& bytes) {
    std::string text;
    for (const unsigned char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

void reportFiles(std::ostream& report) {
    std::vector<int> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        files.push_back(std::stoi(entry.path().filename().string()));
    for (const int file : files) {
        std::error_code error; // the folder that was read is closed by now
        const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), error);
        if (!error)
            report << "file " << file << " " << path.string() << "\n";
    }
}

void reportSignals(std::ostream& report) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("SigBlk:") || line.starts_with("SigIgn:"))
            report << line.substr(0, 6) << " " << line.substr(8) << "\n";
}

} // namespace

int main(int argc, char** argv) {
    std::ostringstream report;
    for (int i = 0; i < argc; ++i)
        report << "argument " << hex(argv[i]) << "\n";
    reportFiles(report);
    report << "session " << getsid(0) << "\nprocess " << getpid() << "\n";
    reportSignals(report);
    if (const char* name = std::getenv("PROBE_REPORT"))
        std::ofstream(std::string(name) + "." + argv[0]) << report.str();
    if (const char* fifo = std::getenv("PROBE_WAIT"))
        std::ifstream(fifo).get();
    const char* status = std::getenv("PROBE_STATUS");
    return status ? std::atoi(status) : 0;
}
