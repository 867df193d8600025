#include "ui/DialogTemplate.h"

#include <cstring>

#include "app/Strings.h"

namespace {

class TemplateWriter {
 public:
  void Word(uint16_t value) { words.push_back(value); }
  void Dword(uint32_t value) {
    Word(static_cast<uint16_t>(value & 0xFFFF));
    Word(static_cast<uint16_t>(value >> 16));
  }
  void Short(int16_t value) { Word(static_cast<uint16_t>(value)); }
  void String(const wchar_t* text) {
    for (; text && *text; ++text) Word(static_cast<uint16_t>(*text));
    Word(0);
  }
  void AlignDword() {
    if (words.size() % 2) Word(0);
  }
  // A class or resource reference: 0xFFFF and a number, or a string.
  void NumberOrString(uint16_t number, const wchar_t* name) {
    if (name) {
      String(name);
    } else {
      Word(0xFFFF);
      Word(number);
    }
  }

  std::vector<WORD> words;
};

}  // namespace

std::vector<WORD> BuildDialogTemplate(const DialogDef& dialog, std::span<const ControlDef> controls) {
  TemplateWriter out;
  out.Word(1);       // dlgVer
  out.Word(0xFFFF);  // signature of the extended template
  out.Dword(0);      // helpID
  out.Dword(dialog.exStyle);
  out.Dword(dialog.style | DS_SETFONT);
  out.Word(static_cast<uint16_t>(controls.size()));
  out.Short(dialog.x);
  out.Short(dialog.y);
  out.Short(dialog.cx);
  out.Short(dialog.cy);
  out.Word(0);  // no menu
  out.Word(0);  // the ordinary dialog class
  out.String(dialog.caption ? Text(*dialog.caption) : L"");
  out.Word(kFontPoints);
  out.Word(kFontWeight);
  out.Word(static_cast<uint16_t>(DEFAULT_CHARSET << 8));  // italic 0, then the charset byte
  out.String(Text(strFontFace));

  for (const ControlDef& control : controls) {
    out.AlignDword();
    out.Dword(0);  // helpID
    out.Dword(control.exStyle);
    out.Dword(control.style | WS_CHILD | WS_VISIBLE);
    out.Short(control.x);
    out.Short(control.y);
    out.Short(control.cx);
    out.Short(control.cy);
    out.Dword(control.id);
    out.NumberOrString(control.cls.atom, control.cls.name);
    out.String(control.text ? Text(*control.text) : L"");
    out.Word(0);  // no creation data
  }
  return out.words;
}
