#include "Capture.h"

#include <vector>

void SettleWindow(HWND window) {
  RedrawWindow(window, nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
  MSG msg;
  for (int round = 0; round < 20; ++round) {
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    GdiFlush();
    Sleep(10);  // a picture, not a test: give the X server time to draw
  }
}

bool CaptureWindowToBmp(HWND window, const std::wstring& path) {
  RECT rect;
  if (!GetWindowRect(window, &rect)) return false;
  return CaptureScreenToBmp(rect, path);
}

bool CaptureScreenToBmp(const RECT& rect, const std::wstring& path) {
  const int width = rect.right - rect.left;
  const int height = rect.bottom - rect.top;
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
  HGDIOBJ old = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY);
  SelectObject(memory, old);

  BITMAPINFOHEADER info{};
  info.biSize = sizeof(info);
  info.biWidth = width;
  info.biHeight = height;
  info.biPlanes = 1;
  info.biBitCount = 24;
  info.biCompression = BI_RGB;
  const int stride = ((width * 3 + 3) / 4) * 4;
  std::vector<BYTE> pixels(static_cast<size_t>(stride) * height);
  GetDIBits(memory, bitmap, 0, height, pixels.data(), reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);

  BITMAPFILEHEADER file{};
  file.bfType = 0x4D42;
  file.bfOffBits = sizeof(file) + sizeof(info);
  file.bfSize = file.bfOffBits + static_cast<DWORD>(pixels.size());
  HANDLE out = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (out == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  bool ok = WriteFile(out, &file, sizeof(file), &written, nullptr) &&
            WriteFile(out, &info, sizeof(info), &written, nullptr) &&
            WriteFile(out, pixels.data(), static_cast<DWORD>(pixels.size()), &written, nullptr);
  CloseHandle(out);
  return ok;
}

bool ShootDialog(CDialog& dialog, const std::wstring& path) {
  if (!dialog.Create(nullptr)) return false;
  ShowWindow(dialog.Handle(), SW_SHOW);
  SetForegroundWindow(dialog.Handle());
  SettleWindow(dialog.Handle());
  const bool saved = CaptureWindowToBmp(dialog.Handle(), path);
  dialog.EndDialog(IDCANCEL);
  return saved;
}
