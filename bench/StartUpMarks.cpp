// The recorder of the start-up marks in the benchmark's copy of the tool: each mark keeps the
// performance counter, and the marks go to the file named by VRK_STARTUP_STEPS_FILE when the program
// ends, so that writing costs the start-up nothing. The counter is the system's, so the benchmark
// compares it with its own.
#include <windows.h>

#include <cstdio>
#include <iterator>

#include "app/StartUpSteps.h"

namespace {

struct Mark {
  const char* step;
  LONGLONG at;
};

class CMarks {
 public:
  void Add(const char* step) {
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    if (count < std::size(marks)) marks[count++] = {step, now.QuadPart};
  }

  ~CMarks() {
    wchar_t path[MAX_PATH]{};
    if (!GetEnvironmentVariableW(L"VRK_STARTUP_STEPS_FILE", path, MAX_PATH)) return;
    FILE* file = _wfopen(path, L"w");
    if (!file) return;
    for (size_t i = 0; i < count; ++i) std::fprintf(file, "%lld\t%s\n", marks[i].at, marks[i].step);
    std::fclose(file);
  }

 private:
  Mark marks[64]{};
  size_t count = 0;
};

CMarks& Marks() {
  static CMarks marks;
  return marks;
}

// The first code of the program that runs: the image is loaded and the C runtime is starting.
const bool kLoaded = (Marks().Add("program loaded, runtime starting"), true);

}  // namespace

void MarkStartUpStep(const char* step) {
  Marks().Add(step);
}
