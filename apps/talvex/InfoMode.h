#ifndef TALVEX_APP_INFOMODE_H
#define TALVEX_APP_INFOMODE_H

#include <ostream>
#include <string>

#include "sorvane/tools/Mode.h"

namespace sorvane::arf {
class Arf;
}

namespace talvex_app {

// One line per data item: id, name, type, place, size, and for tensor
// payloads the element type and shape (with values, the first values).
void printDataItems(std::ostream& out, const sorvane::arf::Arf& arf, bool values);

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
