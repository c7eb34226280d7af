// Confining a process as the panel's is, each time a new one, in turn with starting an empty program; and
// system calls of such a process in turn with those of one that is not confined.

#include "panel/Confinement.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 101;
constexpr int callsARound = 200000;

Milliseconds timeOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

// What a process that is made for it measures.
Milliseconds inChild(const std::function<Milliseconds(int)>& measure) {
    int ends[2];
    if (pipe(ends) != 0)
        std::exit(1);
    const pid_t child = fork();
    if (child == 0) {
        const double measured = measure(ends[1]).count();
        _exit(write(ends[1], &measured, sizeof measured) == sizeof measured ? 0 : 1);
    }
    close(ends[1]);
    double measured = 0;
    const bool isRead = read(ends[0], &measured, sizeof measured) == sizeof measured;
    close(ends[0]);
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0 || !isRead)
        std::exit(1);
    return Milliseconds(measured);
}

void confine(int kept) {
    if (panel::Confinement().begin(kept) || panel::Confinement::forbidConnections())
        _exit(1);
}

Milliseconds callsOfThisProcess() {
    return timeOf([] {
        for (int i = 0; i < callsARound; ++i)
            (void)getppid();
    });
}

Milliseconds startOfAnEmptyProgram() {
    return timeOf([] {
        const pid_t child = fork();
        if (child == 0) {
            execl("/bin/true", "true", nullptr);
            _exit(1);
        }
        waitpid(child, nullptr, 0);
    });
}

double median(std::vector<Milliseconds> values) {
    std::ranges::nth_element(values, values.begin() + rounds / 2);
    return values[rounds / 2].count();
}

} // namespace

int main() {
    std::vector<Milliseconds> confining;
    std::vector<Milliseconds> starting;
    std::vector<Milliseconds> confinedCalls;
    std::vector<Milliseconds> calls;
    for (int i = 0; i < rounds; ++i) {
        confining.push_back(inChild([](int kept) { return timeOf([kept] { confine(kept); }); }));
        starting.push_back(startOfAnEmptyProgram());
        confinedCalls.push_back(inChild([](int kept) {
            confine(kept);
            return callsOfThisProcess();
        }));
        calls.push_back(inChild([](int) { return callsOfThisProcess(); }));
    }
    const double ours = median(confining);
    const double program = median(starting);
    std::printf("confining the panel's process\t%.2f ms\t%.2f ms starting an empty program\t%.2f\t-\n", ours,
                program, ours / program);
    constexpr double nanoseconds = 1e6 / callsARound;
    const double filtered = median(confinedCalls) * nanoseconds;
    const double free = median(calls) * nanoseconds;
    std::printf("a system call of it\t%.0f ns\t%.0f ns not filtered\t%.2f\t-\n", filtered, free,
                filtered / free);
}
