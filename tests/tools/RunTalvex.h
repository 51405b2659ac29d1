// Runs the talvex program of this build as a user would, for the tests of its modes.
#ifndef TALVEX_TESTS_TOOLS_RUNTALVEX_H
#define TALVEX_TESTS_TOOLS_RUNTALVEX_H

#include <cstdio>
#include <string>
#include <sys/wait.h>

// Standard output and error together; `code` is the exit code, -1 when the program did not exit.
inline std::string runTalvex(const std::string& arguments, int& code) {
    const std::string program = std::string(TALVEX_BINARY_DIR) + "/apps/talvex";
    std::string out;
    code = -1;
    FILE* pipe = popen((program + " " + arguments + " 2>&1").c_str(), "r");
    if (!pipe) return out;
    char buffer[512];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    const int status = pclose(pipe);
    code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return out;
}

#endif
