#include "platform/views/Accessibility.h"

#include "platform/views/View.h"

#include <QAccessibleWidget>

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
        if (const auto isExpanded = traits().isExpanded) {
            state.expandable = true;
            state.expanded = *isExpanded;
            state.collapsed = !*isExpanded;
        }
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override {
        QStringList names = traits().actions;
        names += QAccessibleWidget::actionNames();
        names.removeDuplicates();
        return names;
    }

    void doAction(const QString& name) override {
        if (traits().actions.contains(name))
            view().performAccessibleAction(name);
        else
            QAccessibleWidget::doAction(name);
    }

private:
    [[nodiscard]] View& view() const { return *static_cast<View*>(object()); }
    [[nodiscard]] AccessibleTraits traits() const { return view().accessibleTraits(); }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<View*>(object);
    return view ? new AccessibleView(*view) : nullptr;
}

} // namespace

void installViewAccessibility() {
    QAccessible::installFactory(&makeInterface);
}

} // namespace platform
