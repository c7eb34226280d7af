#pragma once

namespace platform {

// The place in which the panel shows an extension's controller. It has no operation that the widget uses.
class ExtensionContext final {};

} // namespace platform
