#include "platform/views/Accessibility.h"

#include "platform/views/View.h"

#include <QAccessibleWidget>

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

class AccessibleView final : public QAccessibleWidget {
public:
    explicit AccessibleView(View& view)
        : QAccessibleWidget(&view) {}

    [[nodiscard]] QAccessible::Role role() const override { return traits().role; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const AccessibleTraits now = traits();
        if (kind == QAccessible::Name && !now.name.isEmpty())
            return now.name;
        if (kind == QAccessible::Description && !now.description.isEmpty())
            return now.description;
        return QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const AccessibleTraits now = traits();
        if (const auto isExpanded = now.isExpanded) {
            state.expandable = true;
            state.expanded = *isExpanded;
            state.collapsed = !*isExpanded;
        }
        state.busy = now.isBusy;
        if (isFadedOut())
            state.invisible = true;
        return state;
    }

    [[nodiscard]] int childCount() const override { return static_cast<int>(shownChildren().size()); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const auto shown = shownChildren();
        if (index < 0 || index >= static_cast<int>(shown.size()))
            return nullptr;
        return QAccessible::queryAccessibleInterface(shown[static_cast<std::size_t>(index)]);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        const auto shown = shownChildren();
        const auto found = std::find(shown.begin(), shown.end(), child ? child->object() : nullptr);
        return found == shown.end() ? -1 : static_cast<int>(found - shown.begin());
    }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = traits().actions;
        names += QAccessibleWidget::actionNames();
        names.removeDuplicates();
        return names;
    }

    // An assistive program may still know a view that has been hidden or taken out since it asked.
    void doAction(const QString& name) override {
        if (!view().isEnabled() || !view().isVisible())
            return;
        if (traits().actions.contains(name))
            view().performAccessibleAction(name);
        else
            QAccessibleWidget::doAction(name);
    }

private:
    // Qt also lists hidden children, and lists rows in the order in which they came into sight.
    [[nodiscard]] std::vector<QWidget*> shownChildren() const {
        std::vector<QWidget*> shown;
        for (QObject* child : view().children())
            if (auto* widget = qobject_cast<QWidget*>(child);
                widget && !widget->isWindow() && !widget->isHidden())
                shown.push_back(widget);
        if (traits().role == QAccessible::List)
            std::ranges::stable_sort(shown, {}, &QWidget::y);
        return shown;
    }

    [[nodiscard]] bool isFadedOut() const {
        for (const View* shown = &view(); shown; shown = shown->superview())
            if (shown->alphaValue() <= 0)
                return true;
        return false;
    }

    [[nodiscard]] View& view() const { return *static_cast<View*>(object()); }
    [[nodiscard]] AccessibleTraits traits() const { return view().accessibleTraits(); }
};

std::function<void(QAccessibleEvent&)>& eventHandler() {
    static std::function<void(QAccessibleEvent&)> handler;
    return handler;
}

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* view = qobject_cast<View*>(object))
        return new AccessibleView(*view);
    // The toolkit gives a role only to windows of its own classes.
    if (auto* widget = qobject_cast<QWidget*>(object); widget && widget->isWindow())
        return new QAccessibleWidget(widget, QAccessible::Window);
    return nullptr;
}

} // namespace

void tellAssistivePrograms(QAccessibleEvent& event) {
    if (const auto& handler = eventHandler())
        handler(event);
    else
        QAccessible::updateAccessibility(&event);
}

void setAssistiveProgramsHandler(std::function<void(QAccessibleEvent&)> handler) {
    eventHandler() = std::move(handler);
}

void installViewAccessibility() {
    QAccessible::installFactory(&makeInterface);
}

} // namespace platform
