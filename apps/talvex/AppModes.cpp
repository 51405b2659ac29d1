#include "apps/talvex/AppModes.h"

#include "apps/talvex/FormatMode.h"

namespace talvex_app {

template <class M>
static sorvane::Mode* make(args::ArgumentParser& parser) {
    return new M(parser);
}

AppModes::AppModes() {
    addCategory("Documents");
    addMode("format", make<FormatMode>);
}

} // namespace talvex_app
