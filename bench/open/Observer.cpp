// Asks services on the bus in turn to show a window, and looks at the screen until it is painted there. Prints the
// milliseconds of each round, one service a column: observer ROUNDS NAME PATH [NAME PATH].
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

// A place that both windows fill with their background, and nothing else does.
constexpr int16_t x = 1280 - 12 - 4;
constexpr int16_t y = 12 + 4;
constexpr uint32_t background = 0x1d2126;
constexpr auto longest = std::chrono::seconds(10);

struct Service {
    QString name;
    QString path;
};

class Screen {
public:
    Screen() : connection_(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(connection_) != 0) {
            std::fputs("no screen\n", stderr);
            std::exit(1);
        }
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
    ~Screen() { xcb_disconnect(connection_); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    [[nodiscard]] bool showsWindow() const {
        const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, x, y, 1, 1, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(connection_, cookie, nullptr), &std::free);
        return reply && (*reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply.get())) & 0xffffff) == background;
    }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
};

void ask(const Service& service, const char* action) {
    auto call = QDBusMessage::createMethodCall(service.name, service.path,
                                               QStringLiteral("org.freedesktop.Application"),
                                               QStringLiteral("ActivateAction"));
    call << QString::fromLatin1(action) << QVariantList() << QVariantMap();
    QDBusConnection::sessionBus().send(call);
}

double millisecondsUntil(const Screen& screen, bool isShown) {
    const auto start = Clock::now();
    while (screen.showsWindow() != isShown)
        if (Clock::now() - start > longest) {
            std::fputs("the window does not come or go\n", stderr);
            std::exit(1);
        }
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const int rounds = argc > 3 ? std::atoi(argv[1]) : 0;
    std::vector<Service> services;
    for (int i = 2; i + 1 < argc; i += 2)
        services.push_back({QString::fromLocal8Bit(argv[i]), QString::fromLocal8Bit(argv[i + 1])});
    const Screen screen;
    for (int round = 0; round < rounds; ++round) {
        for (const Service& service : services) {
            ask(service, "show");
            std::printf("%.3f\t", millisecondsUntil(screen, true));
            ask(service, "hide");
            millisecondsUntil(screen, false);
            std::this_thread::yield();
        }
        std::puts("");
    }
}
