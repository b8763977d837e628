#pragma once

#include "tools/veldrak-db/Arguments.h"
#include "tools/veldrak-db/Output.h"

/// What the program can do. Each returns the exit code; what it cannot do is thrown: StorageError, RunTimeError.
enum ExitCode { Done = 0, FaultsFound = 1, NotPossible = 2 };

ExitCode info(const Arguments &arguments, Output &output);
ExitCode tables(const Arguments &arguments, Output &output);
ExitCode schema(const Arguments &arguments, Output &output);
ExitCode dump(const Arguments &arguments, Output &output);
ExitCode sql(const Arguments &arguments, Output &output);
ExitCode check(const Arguments &arguments, Output &output);
ExitCode create(const Arguments &arguments, Output &output);
