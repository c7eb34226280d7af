#pragma once

#include "ctl/CtlTest.h"
#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace ctl {

// A sound container, on a desktop that has an opener and a host application: its feed has two records of plan
// "p" with the glyph "house", at the start of 10 March 2026, today, and of 20 March. Each test breaks one
// thing.
class CheckTest : public CtlTest {
public:
    [[nodiscard]] static std::string pngBytes(int width, int height);

protected:
    CheckTest();
    void TearDown() override;

    // What `check --json` finds, each as "SEVERITY FINDING FILE RECORD KEY": the file's path in the
    // container, or after the folder of the desktop, "." for the container itself; "-" for what is null.
    std::vector<std::string> findings();
    // The same, with the exit status in front: "0", or "1 ends keyMissing notifications.xml 2 amount".
    std::vector<std::string> checked();
    // The same, found by a user who is refused what the modes of the files forbid, as root is not.
    std::vector<std::string> checkedByAUser();

    [[nodiscard]] static std::string settingsFile();
    void writeIcon(const std::string& name, const std::string& bytes) const;
    void link(const std::string& relative, const std::string& target) const;
    // Until the test ends.
    void setMode(const std::string& relative, mode_t mode);
    void setAccountKey(const std::string& key) const;

    support::TemporaryFolder desktop;

private:
    std::vector<std::string> linesOf(const std::string& json) const;

    support::EnvironmentVariable path_;
    support::EnvironmentVariable home_;
    support::EnvironmentVariable dataHome_;
    support::EnvironmentVariable dataFolders_;
    support::EnvironmentVariable configHome_;
    support::EnvironmentVariable configFolders_;
    support::EnvironmentVariable currentDesktop_;
    std::vector<std::string> closed_;
};

} // namespace ctl
