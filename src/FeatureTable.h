#pragma once
#include <span>

#include "ui/FeatureDialogs.h"

// Every feature dialog of the tool by the settings key of its main-dialog row.
std::span<const FeatureDialog> FeatureTable();
