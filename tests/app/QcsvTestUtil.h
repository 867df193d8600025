#pragma once
#include <windows.h>

#include <string>
#include <vector>

#include "app/QcsvDocument.h"
#include "common/TestUtil.h"

// The document in one line: options, columns and rows, every field in brackets.
inline std::wstring Dump(const QcsvDocument& doc) {
  std::wstring out;
  for (const auto& [name, value] : doc.Options()) out += L"O[" + name + L"][" + value + L"] ";
  out += L"C";
  for (const auto& name : doc.Columns()) out += L"[" + name + L"]";
  for (const auto& row : doc.Rows()) {
    out += L" R";
    for (const auto& field : row) out += L"[" + field + L"]";
  }
  return out;
}

// Names of the files in a folder, to check that no temporary file is left behind.
inline std::vector<std::wstring> FilesIn(const std::wstring& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    std::wstring name = found.cFileName;
    if (name != L"." && name != L"..") names.push_back(name);
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return names;
}
