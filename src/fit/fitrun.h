#ifndef FITRUN_H
#define FITRUN_H

#include "tools/program.h"

struct FitOptions;

/// Makes or checks a gauge and reports on standard error.
[[nodiscard]] ExitStatus runFit(const FitOptions &options);

#endif
