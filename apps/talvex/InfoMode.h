#ifndef TALVEX_APP_INFOMODE_H
#define TALVEX_APP_INFOMODE_H

#include <string>

#include "sorvane/tools/Mode.h"

namespace talvex_app {

// `talvex info DOCUMENT`: storage, sections, identity and structure at a glance.
class InfoMode : public sorvane::Mode {
public:
    explicit InfoMode(args::ArgumentParser& parser);
    void execute() override;

private:
    args::Positional<std::string> path;
    args::Flag values;
};

} // namespace talvex_app

#endif
