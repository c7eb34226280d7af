#pragma once

namespace platform {

// The panel as its widget sees it. The widget only checks that there is one, so it has no operations.
class ExtensionContext final {};

} // namespace platform
