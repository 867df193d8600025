#pragma once
// Shared by the stand-in libraries the music tests load in place of the real audio libraries: each keeps
// a log of the calls it received, one line per call with its arguments, and answers as a test configures.
#include <windows.h>

#include <cmath>
#include <cstdint>
#include <iterator>
#include <string>

namespace standin {

inline std::wstring calls;
// The function a test told to fail, and the error it then reports.
inline std::wstring failingFunction;
inline int failingCode = 0;

template <typename... Parts>
void Record(const wchar_t* function, const Parts&... parts) {
  std::wstring line = function;
  ((line += L' ', line += parts), ...);
  calls += line + L'\n';
}

inline std::wstring Num(int64_t value) {
  return std::to_wstring(value);
}
inline std::wstring Hex(uint64_t value) {
  wchar_t text[32];
  wsprintfW(text, L"0x%lx", static_cast<unsigned long>(value));
  return text;
}
inline std::wstring Ptr(const void* value) {
  return Num(static_cast<int64_t>(reinterpret_cast<intptr_t>(value)));
}
inline std::wstring Wide(const wchar_t* text) {
  return text ? text : L"(null)";
}
inline std::wstring Real(float value) {
  return Num(std::lround(value * 1000.0f)) + L"/1000";
}

inline bool Exists(const wchar_t* path) {
  return path && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// True when the test made this function fail.
inline bool Fails(const wchar_t* function) {
  return failingFunction == function;
}

// The result code a test chose for this function, else success (0).
inline int Result(const wchar_t* function) {
  return Fails(function) ? failingCode : 0;
}

// What a BASS add-on reports about the formats it plays.
struct PluginForm {
  DWORD ctype;
  const char* name;
  const char* exts;
};
struct PluginInfo {
  DWORD version;
  DWORD formatc;
  const PluginForm* formats;
};

}  // namespace standin

// Every stand-in exports these for the tests; the arguments are statements that also run on a reset.
#define STANDIN_COMMON_EXPORTS(...)                                       \
  extern "C" const wchar_t* WINAPI StandInCalls() {                       \
    return standin::calls.c_str();                                        \
  }                                                                       \
  extern "C" void WINAPI StandInFail(const wchar_t* function, int code) { \
    standin::failingFunction = function ? function : L"";                 \
    standin::failingCode = code;                                          \
  }                                                                       \
  extern "C" void WINAPI StandInReset() {                                 \
    standin::calls.clear();                                               \
    StandInFail(nullptr, 0);                                              \
    __VA_ARGS__;                                                          \
  }

// An entry point that records its call, with its arguments formatted by the parts, and gives `answer`,
// which may use `function`, the entry point's name.
#define STANDIN_ENTRY(result, name, params, answer, ...)  \
  extern "C" result WINAPI name params {                  \
    [[maybe_unused]] const wchar_t* function = L"" #name; \
    standin::Record(function __VA_OPT__(, ) __VA_ARGS__); \
    return answer;                                        \
  }

// A BASS add-on's entry point for the stand-in BASS, offering the given formats.
#define STANDIN_PLUGIN(...)                                                                         \
  extern "C" const standin::PluginInfo* WINAPI StandInPluginInfo() {                                \
    static const standin::PluginForm forms[] = {__VA_ARGS__};                                       \
    static const standin::PluginInfo info{0x02040000, static_cast<DWORD>(std::size(forms)), forms}; \
    return &info;                                                                                   \
  }
