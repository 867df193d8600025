#include "ui/FeatureDialogs.h"

#include <algorithm>

const FeatureDialog* FindFeatureDialog(std::span<const FeatureDialog> table, std::wstring_view key) {
  auto found =
      std::find_if(table.begin(), table.end(), [key](const FeatureDialog& f) { return f.key == key; });
  return found == table.end() ? nullptr : &*found;
}
