#include "Launch.h"

#include "Container.h"
#include "Figures.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/system/Workspace.h"

#include <cstdlib>
#include <filesystem>

namespace {

constexpr int rounds = 100;

} // namespace

void measureLaunch(const std::string& feeds, const std::string& folder) {
    const std::string programs = folder + "/programs";
    std::filesystem::create_directory(programs);
    std::filesystem::create_symlink("/bin/true", programs + "/gio"); // takes the URL and ends
    setenv("PATH", programs.c_str(), 1);
    const Container container(folder, feeds + "/sorted-1000.plist");
    std::vector<double> launching, writing;
    const auto info = [&] {
        return seconds([&] {
            TodayWidgetLogic::performTransactionAction(container.middle(), TodayTransactionAction::Info(),
                                                       nullptr);
        });
    };
    for (int round = 0; round < rounds; ++round) {
        launching.push_back(info());
        platform::Workspace::setOpener([](const QString&) { return true; });
        writing.push_back(info());
        platform::Workspace::setOpener({});
    }
    print({"Info, until the host is being opened", median(launching), median(writing), "writing the request",
           "-"});
    std::filesystem::remove_all(programs);
}
