#pragma once

#include "platform/system/Fatal.h"

#include <QPointer>

namespace platform {

// A weak reference to a view or constraint of an interface file that is relied upon: using it while it is not
// connected is fatal, asking for it with get() is not.
template <class T>
class Outlet final {
public:
    Outlet() = default;
    Outlet(T* object) // NOLINT(google-explicit-constructor): connecting an outlet is an assignment
        : object_(object) {}

    [[nodiscard]] T* get() const { return object_.data(); }

    T* operator->() const {
        require(!object_.isNull());
        return object_.data();
    }
    T& operator*() const { return *operator->(); }

private:
    QPointer<T> object_;
};

} // namespace platform
