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

    // Exit codes of run(). A mode sets its outcome with setStatus() in
    // execute(): done, or different/invalid for a comparison or a check.
    static constexpr int STATUS_DONE = 0;
    static constexpr int STATUS_HELP = 1;
    static constexpr int STATUS_ERROR = 2;
    static constexpr int STATUS_DIFFERENT = 3;

    // Parses the arguments and runs execute(); returns the exit code:
    // the status execute() set (0 unless set), 1 help shown, 2 parse error
    // or failure.
    int run(const std::vector<std::string>& arguments);

    int getStatus() const { return status; }
    void setStatus(int value) { status = value; }

protected:
    args::ArgumentParser* parser;

private:
    int status = STATUS_DONE;
};

} // namespace sorvane

#endif
