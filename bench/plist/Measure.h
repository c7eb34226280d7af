#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct Candidate {
    std::string name;
    std::function<void()> prepare; // not measured
    std::function<void()> run;
    double nanoseconds = 0; // the least of all rounds
};

// Runs the candidates in turn, round after round, so that a busy machine is busy for all of them; each in a
// process of its own, so that none finds the heap as another has left it.
void measure(std::vector<Candidate>& candidates, int rounds, double secondsEach);

// The result of work that is done in a process of its own.
double inOwnProcess(const std::function<double()>& work);

// The heap as operator new sees it from here on: bytes in use, and the most of them. Nothing is counted
// before, where times are measured.
void countHeap();
std::size_t heapInUse();
std::size_t heapPeak();
