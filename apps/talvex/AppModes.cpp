#include "apps/talvex/AppModes.h"

namespace talvex_app {

AppModes::AppModes() {
    addCategory("Documents");
}

} // namespace talvex_app
