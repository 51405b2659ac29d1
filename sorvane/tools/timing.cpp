#include "sorvane/tools/timing.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace sorvane {

namespace {

int64_t microseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<int64_t>(now.tv_sec) * 1000000 + static_cast<int64_t>(now.tv_nsec) / 1000;
}

std::string& mainTestDataDir() {
    static std::string dir;
    return dir;
}

std::string& runDir() {
    static std::string dir;
    return dir;
}

} // namespace

int64_t ticTime = 0;
int64_t tocTime = 0;

int64_t get_walltime() { return microseconds(CLOCK_MONOTONIC); }

int64_t get_process_cputime() { return microseconds(CLOCK_PROCESS_CPUTIME_ID); }

int64_t get_thread_cputime() { return microseconds(CLOCK_THREAD_CPUTIME_ID); }

int64_t tic() {
    ticTime = get_walltime();
    tocTime = ticTime;
    return ticTime;
}

void toc(const char* label) {
    const int64_t now = get_walltime();
    std::printf("Elapsed time is % 8.4f (tic) % 8.4f (toc) %s\n", static_cast<double>(now - ticTime) * 1e-6,
                static_cast<double>(now - tocTime) * 1e-6, label ? label : "");
    tocTime = now;
}

float randomFloat(float a, float b) { return a + (b - a) * (static_cast<float>(rand()) * 4.656613e-10f); }

std::string getMainTestDataDir() { return mainTestDataDir(); }

void setMainTestDataDir(const std::string& dir) { mainTestDataDir() = dir; }

std::string getRunDir() { return runDir(); }

void setRunDir(const std::string& dir) { runDir() = dir; }

} // namespace sorvane
