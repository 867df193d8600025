#include "ui/FeatureDialogs.h"

#include <map>
#include <string>

namespace {

std::map<std::wstring, FeatureDialogOpener, std::less<>>& Openers() {
  static std::map<std::wstring, FeatureDialogOpener, std::less<>> openers;
  return openers;
}

}  // namespace

void SetFeatureDialog(std::wstring_view settingsKey, FeatureDialogOpener open) {
  Openers()[std::wstring(settingsKey)] = std::move(open);
}

const FeatureDialogOpener* FindFeatureDialog(std::wstring_view settingsKey) {
  auto found = Openers().find(settingsKey);
  return found == Openers().end() || !found->second ? nullptr : &found->second;
}

void ClearFeatureDialogs() {
  Openers().clear();
}
