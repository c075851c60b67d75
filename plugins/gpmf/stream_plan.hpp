// How one stream of the file becomes nodes of the document: one number, text or number
// array node, or one node per field (GPS fixes, and samples of more than three values or
// of mixed numbers and texts). Names carry the units.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "stream_block.hpp"

namespace gpmf {

enum class Shape { kNumber, kText, kArray, kSplit };

struct FieldNode {
  std::size_t field = 0;
  std::string displayName;
  bool text = false;
  std::optional<std::pair<double, double>> legalRange;
};

struct StreamPlan {
  Shape shape = Shape::kNumber;
  std::string displayName;              // kNumber, kText, kArray
  std::vector<std::string> components;  // kArray: axis names, in stored order
  std::vector<FieldNode> fields;        // kSplit
  std::size_t fieldCount = 0;           // the layout the plan was made for
};

// The plan for a stream as its first laid-out block describes it.
StreamPlan PlanStream(const StreamBlock &block);

// The stream's name: STNM, else a name for the key, else the key itself.
std::string StreamName(const StreamBlock &block);

}  // namespace gpmf
