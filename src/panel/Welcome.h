#pragma once

#include "panel/SourceRow.h"
#include "platform/extension/ViewController.h"
#include "platform/views/Outlet.h"

#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace panel {

class Stack;
class WelcomeView;

// What the panel shows before any finance program has connected: what it is, and the files of finance
// programs that were found, one click each; where there are none, where it looks for a list and where that is
// described. Its preferred size follows the width that the view is given.
class Welcome final : public platform::ViewController {
public:
    Welcome();

    // Whether there is no container, so that no list can be read.
    [[nodiscard]] static bool isDue();

    // The panel has opened, and asks for files anew. What was offered before it was last opened, and not
    // since, is offered no longer.
    void beginOffers();
    // Offers a file, or tells of another at the same number. Beyond the most that are shown, none is added.
    void offer(const Source& source);
    // Says why the chosen file is not shown, as a sentence in English. It can be chosen again.
    void setFault(int number, const QString& reason);
    // Called with the number of a file that the user has chosen.
    void setChosen(std::function<void(int)> handler) { chosen_ = std::move(handler); }

    // Shows all anew, as the language and the folders may have changed.
    void refresh();

    [[nodiscard]] QString nibName() const override { return QStringLiteral("Welcome"); }

    static constexpr std::size_t mostSources = 5;

protected:
    void connectOutlets(platform::View& view) override;
    void viewDidLoad() override;

private:
    [[nodiscard]] SourceRow* rowOf(int number) const;
    void addRow(const Source& source);

    platform::Outlet<Stack> stack_;
    platform::Outlet<WelcomeView> texts_;
    platform::Outlet<WelcomeView> closingText_; // below the rows
    std::vector<std::shared_ptr<SourceRow>> rows_;
    std::set<int> offered_; // since the panel was opened
    std::function<void(int)> chosen_;
};

} // namespace panel
