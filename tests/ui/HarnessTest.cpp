// The harness's own promises: a modal run whose dialog never opened, an answer for a dialog or a prompt
// that never came, fail the test that relied on them.
#include <windows.h>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "common/Harness.h"
#include "common/PromptRecorder.h"
#include "ui/EditStringDlg.h"

namespace {

constexpr TextPair kTitle{L"Never shown", L"表示されない"};
constexpr DialogDef kDialog{&kTitle, 0, 0, 100, 40, WS_POPUP | WS_CAPTION};
// No window class has this name: the control cannot be made, and so neither can the dialog.
constexpr ControlDef kControls[] = {{ControlClass{0, L"VrkNoSuchClass"}, 1000, 4, 4, 40, 12, 0, 0, kNoText}};

class CUnopenableDlg : public CDialog {
 public:
  CUnopenableDlg() : CDialog(kDialog, kControls) {}
};

}  // namespace

// The one test that passes when no dialog can open: its dialog is built never to open, and the run
// must say so.
TEST(Harness, ADialogThatNeverOpensFailsItsRun) {
  ScopedLanguage english(kEnglish);
  CUnopenableDlg dialog;
  bool driven = false;
  INT_PTR result = 0;
  EXPECT_NONFATAL_FAILURE(result = RunModal(dialog, [&](CDialog&) { driven = true; }),
                          "the dialog \"Never shown\" never opened");
  EXPECT_EQ(result, -1);
  EXPECT_FALSE(driven);
}

// A dialog the test answers that the drive never opened fails, and so does one it opens unanswered; an
// action that opens nothing fails its run too.
TEST(Harness, DialogsExpectedButNotOpenedOrOpenedButNotExpectedFail) {
  CEditStringDlg editor(L"text", false);
  EXPECT_NONFATAL_FAILURE(
      RunModal(
          editor, [](CDialog& d) { Click(d, IDOK); },
          std::vector<std::function<void(CDialog&)>>{[](CDialog& d) { Click(d, IDCANCEL); }}),
      "1 of the 1 dialogs the test answers never opened");
  auto openInner = [](CDialog& d) {
    CEditStringDlg inner(L"inner", false);
    inner.DoModal(d.Handle());
    Click(d, IDOK);
  };
  EXPECT_NONFATAL_FAILURE(RunModal(editor, openInner), "a dialog opened that the test does not drive");
  EXPECT_NONFATAL_FAILURE(RunOpened([] {}, [](CDialog& d) { Click(d, IDCANCEL); }), "no dialog opened");
}

TEST(Harness, AHookGuardPutsTheHookBeforeItBack) {
  std::vector<std::wstring> seen;
  auto record = [&](const wchar_t* hook) {
    return [&seen, hook](CDialog& d) {
      seen.push_back(hook + d.GetItemText(CEditStringDlg::kEdit));
      d.EndDialog(IDCANCEL);
    };
  };
  ScopedAfterInitHook outer(record(L"outer "));
  {
    ScopedAfterInitHook inner(record(L"inner "));
    CEditStringDlg first(L"first", false);
    first.DoModal(nullptr);
  }
  CEditStringDlg second(L"second", false);
  second.DoModal(nullptr);
  EXPECT_EQ(seen, (std::vector<std::wstring>{L"inner first", L"outer second"}));
}

// Each kind of queued answer left untaken fails when the recorder goes; one that was taken does not.
TEST(PromptRecorderTest, AnAnswerForAPromptThatNeverCameFails) {
  EXPECT_NONFATAL_FAILURE(
      {
        PromptRecorder recorder;
        recorder.messageAnswers.push_back(IDYES);
      },
      "1 answer(s) for a message box that was never asked");
  EXPECT_NONFATAL_FAILURE(
      {
        PromptRecorder recorder;
        recorder.AnswerMenu(4);
      },
      "for a menu that was never asked");
  EXPECT_NONFATAL_FAILURE(
      {
        PromptRecorder recorder;
        recorder.colorAnswers.push_back(0x123456);
      },
      "for a colour chooser that was never asked");
  EXPECT_NONFATAL_FAILURE(
      {
        PromptRecorder recorder;
        recorder.fileAnswers.push_back(L"C:\\a.sf2");
      },
      "for a file chooser that was never asked");
  EXPECT_NONFATAL_FAILURE(
      {
        PromptRecorder recorder;
        recorder.fontAnswers.push_back({});
      },
      "for a font chooser that was never asked");
  PromptRecorder recorder;
  recorder.messageAnswers.push_back(IDNO);
  EXPECT_EQ(ShowMessage(nullptr, L"Sure?", L"", MB_YESNO), IDNO);
}
