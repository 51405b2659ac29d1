#include "apps/talvex/AppModes.h"

#include "apps/talvex/ListMode.h"

namespace talvex_app {

AppModes::AppModes() {
    addCategory("Documents");
    addCategory("Files");
    addMode("list", [](args::ArgumentParser& p) { return new ListMode(p); });
}

} // namespace talvex_app
