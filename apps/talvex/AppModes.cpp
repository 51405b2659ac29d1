#include "apps/talvex/AppModes.h"

namespace talvex_app {

sorvane::Mode* createDataTreeInfoMode(args::ArgumentParser& parser);

AppModes::AppModes() {
    addCategory("Documents");
    addCategory("DataTree");
    addMode("datatree-info", [](args::ArgumentParser& p) { return createDataTreeInfoMode(p); });
}

} // namespace talvex_app
