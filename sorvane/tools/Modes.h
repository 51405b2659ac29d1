#ifndef SORVANE_TOOLS_MODES_H
#define SORVANE_TOOLS_MODES_H

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <args.hxx>

#include "sorvane/core/Export.h"
#include "sorvane/tools/Mode.h"

namespace sorvane {

// The runner of a command-line program: named modes under categories, one of
// which is picked by the first argument.
class SORVANE_API Modes {
public:
    using Creator = std::function<Mode*(args::ArgumentParser&)>;

    Modes();
    virtual ~Modes();

    void addCategory(const std::string& name);
    void addMode(const std::string& name, Creator creator);

    // A hook for programs that build modes themselves; null by default.
    virtual Mode* createMode(const std::string& name, args::ArgumentParser& parser);

    void showModes(const std::string& program) const;
    void showModes(const std::string& program, std::ostream& out) const;

    int run(int argc, char** argv);
    int run(const std::vector<std::string>& arguments);

protected:
    std::map<std::string, Creator> creators;
    std::vector<std::pair<std::string, std::vector<std::string>>> categories;
};

} // namespace sorvane

#endif
