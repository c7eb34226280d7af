// korvel_bench_bridge_click CONTAINERS PROGRAM [ARGUMENT...]: marks one record of the feed after the other as
// paid, as the panel does on a click: some before it starts the program, others until that ends, and some
// after it. Prints a line for each, "alone MILLISECONDS" or "beside MILLISECONDS", in their order. Ends with
// 1 when the program fails or the feed has too few records.

#include "exchange/SharedFiles.h"
#include "exchange/Text.h"
#include "exchange/TodayWidgetLogic.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <random>
#include <spawn.h>
#include <string>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace plist = platform::plist;

namespace {

constexpr int aloneAtATime = 5;
// Between two clicks, in milliseconds: a hasty user. They vary, so that the clicks meet the program in every
// state. An update that meets one in each round of publishing does not come to its end.
constexpr int shortestPause = 40;
constexpr int longestPause = 120;

[[noreturn]] void fail(const char* why) {
    std::fprintf(stderr, "korvel_bench_bridge_click: %s\n", why);
    std::exit(1);
}

std::vector<TodayTransaction> records() {
    const std::string container =
        platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier));
    const auto bytes = platform::readFile(exchange::feedFile(container));
    const auto feed = bytes ? exchange::arrayOf(*bytes) : std::nullopt;
    std::vector<TodayTransaction> result;
    for (const plist::Value& record : feed ? *feed : plist::Array()) {
        TodayTransaction& transaction = result.emplace_back(TodayTransaction::Values{});
        transaction.planPrimaryKey = exchange::textFromUtf8(*record.dictionary()->find("planpk")->string());
        transaction.date = *record.dictionary()->find("date")->real();
    }
    return result;
}

class Clicks final {
public:
    Clicks()
        : records_(records()) {}

    void click(const char* where) {
        using Milliseconds = std::chrono::duration<double, std::milli>;
        if (next_ == records_.size())
            fail("the feed has too few records");
        const auto start = std::chrono::steady_clock::now();
        TodayWidgetLogic::performTransactionAction(records_[next_++], TodayTransactionAction::Paid(),
                                                   nullptr);
        const Milliseconds taken = std::chrono::steady_clock::now() - start;
        std::printf("%s %.3f\n", where, taken.count());
    }

    void clickAlone() {
        constexpr int none = -1;
        for (int number = 0; number < aloneAtATime && !endsInAPause(none); ++number)
            click("alone");
    }

    void clickBeside(pid_t program) {
        const int handle = static_cast<int>(syscall(SYS_pidfd_open, program, 0));
        while (!endsInAPause(handle))
            click("beside");
        close(handle);
    }

private:
    // The user's pause, or what there is of it before the process of a handle ends. Whether it has ended.
    bool endsInAPause(int process) {
        pollfd request{process, POLLIN, 0};
        return poll(&request, 1, pause_(random_)) > 0;
    }

    std::vector<TodayTransaction> records_;
    std::size_t next_ = 0;
    std::mt19937 random_{std::random_device()()};
    std::uniform_int_distribution<int> pause_{shortestPause, longestPause};
};

} // namespace

int main(int count, char** arguments) {
    if (count < 3)
        fail("CONTAINERS PROGRAM [ARGUMENT...]");
    platform::GroupContainers::setFolder(arguments[1]);
    Clicks clicks;
    clicks.clickAlone();
    pid_t program = 0;
    if (posix_spawn(&program, arguments[2], nullptr, nullptr, arguments + 2, environ) != 0)
        fail("the program cannot be started");
    clicks.clickBeside(program);
    int status = 0;
    if (waitpid(program, &status, 0) != program || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        fail("the program failed");
    clicks.clickAlone();
}
