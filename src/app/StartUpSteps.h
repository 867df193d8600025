#pragma once
// Marks the end of a start-up step, for the start-up benchmark. Only its copy of the tool is built
// with VRK_STARTUP_STEPS (bench/StartUpMarks.cpp records the marks); VrkConfig.exe compiles every
// mark to nothing.
#ifdef VRK_STARTUP_STEPS
void MarkStartUpStep(const char* step);
#define STARTUP_STEP(step) MarkStartUpStep(step)
#else
#define STARTUP_STEP(step) static_cast<void>(0)
#endif
