#include "ui/FeatureDialogs.h"

#include <algorithm>

const FeatureDialog* FindFeatureDialog(std::span<const FeatureDialog> table, int32_t Settings::*field) {
  auto found =
      std::find_if(table.begin(), table.end(), [field](const FeatureDialog& f) { return f.field == field; });
  return found == table.end() ? nullptr : &*found;
}
