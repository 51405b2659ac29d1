#ifndef TALVEX_APP_LISTMODE_H
#define TALVEX_APP_LISTMODE_H

#include <string>

#include "sorvane/tools/Mode.h"

namespace talvex_app {

class ListMode : public sorvane::Mode {
public:
    explicit ListMode(args::ArgumentParser& parser);
    void execute() override;

private:
    args::Positional<std::string> path;
    args::ValueFlag<std::string> folder;
};

} // namespace talvex_app

#endif
