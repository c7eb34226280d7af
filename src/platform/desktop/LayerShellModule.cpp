#include "platform/desktop/LayerShellModule.h"

#include <QGuiApplication>
#include <QMargins>
#include <QWindow>

#include <cstdint>
#include <cstring>
#include <memory>

#include <LayerShellQt/Window>
#include <wayland-client.h>

namespace {

template <auto destroy>
struct Destroyer {
    template <typename Object>
    void operator()(Object* object) const {
        destroy(object);
    }
};

constexpr const char* protocol = "zwlr_layer_shell_v1";

// Asks on a queue of its own, so that no event of the toolkit is handled meanwhile.
bool isAnnounced(wl_display* display) {
    const std::unique_ptr<wl_event_queue, Destroyer<wl_event_queue_destroy>> queue(
        wl_display_create_queue(display));
    const std::unique_ptr<wl_display, Destroyer<wl_proxy_wrapper_destroy>> wrapper(
        static_cast<wl_display*>(wl_proxy_create_wrapper(display)));
    wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper.get()), queue.get());
    const std::unique_ptr<wl_registry, Destroyer<wl_registry_destroy>> registry(
        wl_display_get_registry(wrapper.get()));
    bool isFound = false;
    const wl_registry_listener listener{
        .global =
            [](void* found, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
                if (std::strcmp(interface, protocol) == 0)
                    *static_cast<bool*>(found) = true;
            },
        .global_remove = [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(registry.get(), &listener, &isFound);
    return wl_display_roundtrip_queue(display, queue.get()) >= 0 && isFound;
}

} // namespace

bool korvelIsLayerShellAnnounced() {
    const auto* wayland = qGuiApp->nativeInterface<QNativeInterface::QWaylandApplication>();
    return wayland && isAnnounced(wayland->display());
}

void korvelDockInLayerShell(QWindow* window, int margin) {
    using Layer = LayerShellQt::Window;
    Layer* layer = Layer::get(window);
    layer->setScope(QStringLiteral("korvel-today"));
    layer->setLayer(Layer::LayerTop);
    layer->setAnchors(Layer::Anchors(Layer::AnchorTop) | Layer::AnchorRight);
    layer->setMargins({margin, margin, margin, margin});
    layer->setKeyboardInteractivity(Layer::KeyboardInteractivityOnDemand);
    layer->setScreenConfiguration(Layer::ScreenFromCompositor);
}
