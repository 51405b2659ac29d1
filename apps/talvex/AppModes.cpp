#include "apps/talvex/AppModes.h"

namespace talvex_app {

sorvane::Mode* createStreamDumpMode(args::ArgumentParser& parser);
sorvane::Mode* createStreamMakeMode(args::ArgumentParser& parser);

AppModes::AppModes() {
    addCategory("Documents");
    addCategory("Animation");
    addMode("stream-dump", [](args::ArgumentParser& p) { return createStreamDumpMode(p); });
    addMode("stream-make", [](args::ArgumentParser& p) { return createStreamMakeMode(p); });
}

} // namespace talvex_app
