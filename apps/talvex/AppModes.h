#ifndef TALVEX_APP_APPMODES_H
#define TALVEX_APP_APPMODES_H

#include "sorvane/tools/Modes.h"

namespace talvex_app {

// The modes of the talvex program. Each mode lives in its own file beside
// this one and registers itself in AppModes.cpp.
class AppModes : public sorvane::Modes {
public:
    AppModes();
};

} // namespace talvex_app

#endif
