#ifndef SORVANE_TOOLS_MODE_H
#define SORVANE_TOOLS_MODE_H

#include <string>
#include <vector>

#include <args.hxx>

#include "sorvane/core/Export.h"

namespace sorvane {

// One subcommand of a command-line program. A subclass adds its options to
// the parser in its constructor and does its work in execute().
class SORVANE_API Mode {
public:
    explicit Mode(args::ArgumentParser& parser);
    virtual ~Mode();

    virtual void execute() = 0;

    // Parses the arguments and runs execute(); returns the exit code:
    // 0 done, 1 help shown, 2 parse error or failure.
    int run(const std::vector<std::string>& arguments);

protected:
    args::ArgumentParser* parser;
};

} // namespace sorvane

#endif
