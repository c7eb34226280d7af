#include "Files.h"

#include "Container.h"
#include "Figures.h"
#include "exchange/TodayWidgetLogic.h"

#include <functional>
#include <string>
#include <vector>

namespace {

struct Times {
    double action = 0;
    double writing = 0;
};

using Typical = std::function<double(const std::vector<double>&)>;

// The two in turn, each on files as they were.
Times measure(const Container& container, const TodayTransactionAction& action, int rounds,
              const Typical& typical) {
    const auto act = [&] { TodayWidgetLogic::performTransactionAction(container.middle(), action, nullptr); };
    container.putBack();
    const std::string before = contentOf(container.feedPath());
    act();
    const std::string feed = contentOf(container.feedPath());
    const std::string log = contentOf(container.logPath());
    if (feed == before)
        fail("the action has changed nothing");
    std::vector<double> acting;
    std::vector<double> writing;
    for (int round = 0; round < rounds; ++round) {
        container.putBack();
        acting.push_back(seconds(act));
        if (contentOf(container.feedPath()) != feed || contentOf(container.logPath()) != log)
            fail("the action did something else");
        container.putBack();
        writing.push_back(seconds([&] {
            replaceBarely(container.logPath(), log);
            replaceBarely(container.feedPath(), feed);
        }));
    }
    return {typical(acting), typical(writing)};
}

std::string feedOf(const std::string& feeds, int count) {
    return feeds + "/sorted-" + std::to_string(count) + ".plist";
}

void measureOnDisk(const std::string& feeds, const std::string& folder) {
    const struct {
        const char* name;
        TodayTransactionAction action;
    } actions[] = {{"Paid", TodayTransactionAction::Paid()}, {"Later", TodayTransactionAction::Later(3)}};
    const Container container(folder, feedOf(feeds, 1000));
    for (const auto& [name, action] : actions) {
        const Times times = measure(container, action, 61, median);
        print({std::string(name) + ", feed and log of 1000, synced to disk", times.action, times.writing,
               "writing the same bytes", "2.0"});
    }
    const Container large(folder, feedOf(feeds, 100000));
    const Times times = measure(large, TodayTransactionAction::Paid(), 5, median);
    print({"Paid, feed and log of 100000, synced to disk", times.action, times.writing,
           "writing the same bytes", "-"});
}

// In memory, where no disk hides the growth. From 10000 records on, no cache holds them: writing the same
// bytes grows beyond their number too.
void measureGrowth(const std::string& feeds, const std::string& folder) {
    const struct {
        int count;
        int rounds;
    } sizes[] = {{1000, 101}, {10000, 21}, {100000, 7}};
    std::vector<double> ofARecord;
    std::vector<double> writingOne;
    for (const auto& [count, rounds] : sizes) {
        Container container(folder, feedOf(feeds, 100000));
        container.keepRecords(static_cast<std::size_t>(count));
        const Times times = measure(container, TodayTransactionAction::Paid(), rounds, least);
        print({"Paid, feed and log of " + std::to_string(count) + ", in memory", times.action, times.writing,
               "writing the same bytes", "-"});
        ofARecord.push_back(times.action / count);
        writingOne.push_back(times.writing / count);
    }
    print({"growth of that, for a record of 10000", ofARecord[1], ofARecord[0], "for one of 1000", "-"});
    print({"growth of writing alone, for a record of 100000", writingOne[2], writingOne[1],
           "for one of 10000", "-"});
    print({"growth of that, for a record of 100000", ofARecord[2], ofARecord[1], "for one of 10000", "2"});
}

} // namespace

void measureFiles(const std::string& feeds, const std::string& disk, const std::string& memory) {
    measureOnDisk(feeds, disk);
    measureGrowth(feeds, memory);
}
