#include "app/ListSchemas.h"

std::vector<std::wstring> FileColumnNames(std::span<const TextPair> schema) {
  std::vector<std::wstring> names;
  names.reserve(schema.size());
  for (const TextPair& column : schema) names.emplace_back(column.English());
  return names;
}
