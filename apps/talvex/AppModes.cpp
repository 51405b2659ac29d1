#include "apps/talvex/AppModes.h"

#include "apps/talvex/ConvertMode.h"
#include "apps/talvex/FormatMode.h"
#include "apps/talvex/InfoMode.h"
#include "apps/talvex/ListMode.h"

namespace talvex_app {

template <class M>
static sorvane::Mode* make(args::ArgumentParser& parser) {
    return new M(parser);
}

AppModes::AppModes() {
    addCategory("Documents");
    addMode("info", make<InfoMode>);
    addMode("convert", make<ConvertMode>);
    addMode("format", make<FormatMode>);
    addCategory("Files");
    addMode("list", make<ListMode>);
}

} // namespace talvex_app
