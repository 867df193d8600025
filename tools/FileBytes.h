#pragma once
#include <windows.h>

#include <string>
#include <string_view>

// Whole files as bytes, for the programs that write hostile inputs and read back what was saved.

// The file's bytes, read past any sharing a reader allows; empty (and `exists` false) when it is missing.
inline std::string FileBytes(const std::wstring& path, bool* exists = nullptr) {
  std::string bytes;
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, 0, nullptr);
  if (exists) *exists = file != INVALID_HANDLE_VALUE;
  if (file == INVALID_HANDLE_VALUE) return bytes;
  char buffer[65536];
  DWORD got = 0;
  while (ReadFile(file, buffer, sizeof(buffer), &got, nullptr) && got > 0) bytes.append(buffer, got);
  CloseHandle(file);
  return bytes;
}

inline void WriteBytes(const std::wstring& path, std::string_view bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
}
