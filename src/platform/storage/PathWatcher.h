#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace platform {

// Tells when what some paths lead to may have changed. It says too much rather than too little: whoever is
// told looks for himself. Main thread only.
class PathWatcher {
public:
    enum class Change {
        Path, // one of the paths may lead to another file or folder, or its file was written
        Entry // an entry of one of the folders may have changed, or nobody knows what has
    };
    struct Paths {
        std::vector<std::string> files;
        std::vector<std::string> folders; // watched with their entries, but not with those of folders in them

        bool operator==(const Paths&) const = default;
    };

    virtual ~PathWatcher() = default;

    // Watches these paths, none of which need lead anywhere, instead of those of before. Called again after a
    // change, it follows the paths anew. A change that is made from then on is told.
    virtual void watch(const Paths& paths) = 0;

    void setChanged(std::function<void(Change)> handler) { changed_ = std::move(handler); }

protected:
    void tell(Change change) const {
        if (changed_)
            changed_(change);
    }

private:
    std::function<void(Change)> changed_;
};

} // namespace platform
