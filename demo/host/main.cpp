#include "host/Options.h"
#include "host/Session.h"
#include "host/Window.h"

#include <cstdio>

int main(int argc, char** argv) {
    const auto options = host::parseOptions({argv + 1, argv + argc});
    switch (options.task) {
    case host::Task::Help:
        std::fputs(host::helpText(), stdout);
        return 0;
    case host::Task::Session:
        return host::runSession(options.words);
    case host::Task::Deliver:
        return host::runDelivery(options.words);
    case host::Task::Window:
        return host::runWindow(options.words, argv[0]);
    case host::Task::Misused:
        break;
    }
    std::fputs(host::usageText(), stderr);
    return 2;
}
