#ifndef TALVEX_APP_CONVERTMODE_H
#define TALVEX_APP_CONVERTMODE_H

#include <string>

#include "sorvane/tools/Mode.h"

namespace talvex_app {

// `talvex convert IN OUT`: the same document in another storage mode.
class ConvertMode : public sorvane::Mode {
public:
    explicit ConvertMode(args::ArgumentParser& parser);
    void execute() override;

private:
    args::Positional<std::string> input;
    args::Positional<std::string> output;
};

} // namespace talvex_app

#endif
