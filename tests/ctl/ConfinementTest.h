#pragma once

#include "ctl/ShellTest.h"
#include "model/GroupIdentifiers.h"
#include "platform/confinement/FileConfinement.h"
#include "platform/storage/Files.h"

#include <cstdio>
#include <filesystem>
#include <string>

namespace ctl {

// The built program on a container, with files outside that it must not reach.
class CtlConfinementTest : public ShellTest {
protected:
    CtlConfinementTest() {
        if (platform::landlockVersion() == 0)
            std::puts("this kernel has no Landlock"); // CTest lists the test as skipped
        writeFeed({exchange::plist::Value(exchange::recordOf("plan", 20)),
                   exchange::plist::Value(exchange::recordOf("plan", 30))});
        writeOutside("secret", "secret");
    }

    // Paths outside are relative to the folder of all containers.
    [[nodiscard]] std::string outside(const std::string& relative) const { return scratch + "/" + relative; }
    void writeOutside(const std::string& relative, const std::string& bytes) const {
        write("../" + relative, bytes);
    }
    void linkOut(const std::string& relative, const std::string& target) const {
        std::filesystem::create_directories(std::filesystem::path(path(relative)).parent_path());
        std::filesystem::create_symlink(outside(target), path(relative));
    }
    // Moves a file of the container out of it and leaves a link.
    void moveOut(const std::string& relative, const std::string& target) const {
        std::filesystem::rename(path(relative), outside(target));
        linkOut(relative, target);
    }
    void setAccount(const std::string& key) const {
        setSettings({{"account_pk", exchange::plist::Value(key)}});
    }

    [[nodiscard]] std::string errorOf(const std::string& file, const std::string& sentence) const {
        return "korvel-todayctl: " + path(file) + ": " + sentence + "\n";
    }
    [[nodiscard]] static std::string textOf(const std::string& file) {
        return platform::readFile(file).value_or("none");
    }
};

} // namespace ctl
