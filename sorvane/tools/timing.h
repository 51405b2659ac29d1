#ifndef SORVANE_TOOLS_TIMING_H
#define SORVANE_TOOLS_TIMING_H

#include <cstdint>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane {

// Clocks in microseconds: monotonic wall time, CPU time of the process and of
// the calling thread.
SORVANE_API int64_t get_walltime();
SORVANE_API int64_t get_process_cputime();
SORVANE_API int64_t get_thread_cputime();

// Wall times of the last tic() and of the last toc(); one thread only.
SORVANE_API extern int64_t ticTime;
SORVANE_API extern int64_t tocTime;

// Starts a measurement: both times become now, which is returned.
SORVANE_API int64_t tic();
// Prints the seconds since tic() and since the previous toc() with the label
// on standard output, and restarts the toc() time.
SORVANE_API void toc(const char* label);

// A value between a and b from rand().
SORVANE_API float randomFloat(float a, float b);

// The data folder and the run folder of a tool; empty until set.
SORVANE_API std::string getMainTestDataDir();
SORVANE_API void setMainTestDataDir(const std::string& dir);
SORVANE_API std::string getRunDir();
SORVANE_API void setRunDir(const std::string& dir);

} // namespace sorvane

#endif
