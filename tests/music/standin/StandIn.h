#pragma once
// Shared by the stand-in libraries the music tests load in place of the real audio libraries: each keeps
// a log of the calls it received, one line per call with its arguments, and answers as a test configures.
#include <windows.h>

#include <cstdint>
#include <string>

namespace standin {

inline std::wstring& Calls() {
  static std::wstring calls;
  return calls;
}

// The function a test told to fail, and the error it then reports.
inline std::wstring& FailingFunction() {
  static std::wstring name;
  return name;
}
inline int& FailingCode() {
  static int code = 0;
  return code;
}

template <typename... Parts>
void Record(const wchar_t* function, const Parts&... parts) {
  std::wstring line = function;
  ((line += L' ', line += parts), ...);
  Calls() += line;
  Calls() += L'\n';
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
  wchar_t text[32];
  wsprintfW(text, L"%d/1000", static_cast<int>(value * 1000.0f + (value < 0 ? -0.5f : 0.5f)));
  return text;
}

inline bool Exists(const wchar_t* path) {
  return path && GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// True when the test made this function fail.
inline bool Fails(const wchar_t* function) {
  return FailingFunction() == function;
}

inline void ResetCommon() {
  Calls().clear();
  FailingFunction().clear();
  FailingCode() = 0;
}

}  // namespace standin

// Every stand-in exports these for the tests.
#define STANDIN_COMMON_EXPORTS                                            \
  extern "C" const wchar_t* WINAPI StandInCalls() {                       \
    return standin::Calls().c_str();                                      \
  }                                                                       \
  extern "C" void WINAPI StandInFail(const wchar_t* function, int code) { \
    standin::FailingFunction() = function ? function : L"";               \
    standin::FailingCode() = code;                                        \
  }
