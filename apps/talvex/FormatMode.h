#ifndef TALVEX_APP_FORMATMODE_H
#define TALVEX_APP_FORMATMODE_H

#include <string>

#include "sorvane/tools/Mode.h"

namespace talvex_app {

// `talvex format FILE`: reads an ARF document's JSON into the document tree
// and writes it back in the library's output form.
class FormatMode : public sorvane::Mode {
public:
    explicit FormatMode(args::ArgumentParser& parser);
    void execute() override;

private:
    args::Positional<std::string> input;
    args::ValueFlag<std::string> output;
    args::Flag compact;
};

} // namespace talvex_app

#endif
