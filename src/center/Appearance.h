#pragma once

#include "center/BusService.h"
#include "center/ColorScheme.h"
#include "platform/storage/PathWatcher.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace center {

// What the desktop prefers: a colour scheme, and whether animations shall be left out (reduced motion). Both
// are told by the desktop portal: as a preference of its own, or as the setting of the GNOME desktop. Where
// it tells nothing of motion, the setting of the KDE desktop's file counts. All of it is followed.
//
// Gives the application's own windows a dark palette if the desktop prefers dark and the platform has not
// done so already.
class Appearance final {
public:
    Appearance(const QDBusConnection& bus, std::string kdeFile,
               std::unique_ptr<platform::PathWatcher> kdeWatcher);
    ~Appearance();
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;

    // kdeglobals in the folder of the user's settings.
    [[nodiscard]] static std::string defaultKdeFile();

    // The scheme that is preferred; that of the application's palette if the desktop prefers none.
    [[nodiscard]] ColorScheme colorScheme() const { return scheme_; }
    [[nodiscard]] bool isMotionReduced() const { return isMotionReduced_; }

    void setColorSchemeChanged(std::function<void(ColorScheme)> handler) {
        colorSchemeChanged_ = std::move(handler);
    }
    void setReducedMotionChanged(std::function<void(bool)> handler) {
        reducedMotionChanged_ = std::move(handler);
    }

private:
    // What is known of the portal's settings; absent if it does not have one.
    struct Preferences {
        std::optional<std::uint32_t> colorScheme;   // 1 dark, 2 light
        std::optional<std::uint32_t> reducedMotion; // 1 reduced
        std::optional<bool> gnomeAnimations;
    };

    void readPortal();
    void takeSettings(const QDBusMessage& reply);
    void take(const QString& group, const QString& key, const QVariant& value);
    void readKdeFile();
    void update();
    [[nodiscard]] ColorScheme preferredScheme() const;
    [[nodiscard]] bool prefersReducedMotion() const;
    void applyScheme();

    BusService portal_;
    std::string kdeFile_;
    std::unique_ptr<platform::PathWatcher> kdeWatcher_;
    Preferences preferences_;
    bool isKdeWithoutAnimations_ = false;
    bool hasDarkPalette_ = false; // of ours
    ColorScheme scheme_ = ColorScheme::Light;
    bool isMotionReduced_ = false;
    std::function<void(ColorScheme)> colorSchemeChanged_;
    std::function<void(bool)> reducedMotionChanged_;
};

} // namespace center
