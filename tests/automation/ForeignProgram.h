#pragma once

/// The other program of the automation tests: run by the test program as a second process. Returns the exit code.
int runForeignProgram();
