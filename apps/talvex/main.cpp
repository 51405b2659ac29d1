// talvex: command-line tool over libtalvex. Each mode is registered in
// registerModes(); see `talvex` with no arguments for the list.
#include "apps/talvex/AppModes.h"

int main(int argc, char** argv) {
    talvex_app::AppModes modes;
    return modes.run(argc, argv);
}
