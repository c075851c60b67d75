// Converting through the manager in tests: a manager over the test callbacks, the system's
// temporary directory moved into a scratch folder (so leftovers can be counted), and the
// outline of an opened file as text.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "palvex/host.hpp"
#include "platform/file_test_support.hpp"
#include "support/test_host.hpp"

namespace palvex::testing {

class ConversionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char *previous = std::getenv(kTempFolderVariable);
    previousTemp_ = previous != nullptr ? previous : "";
    hadTemp_ = previous != nullptr;
    detail::SetVariable(kTempFolderVariable, temp_.root().string().c_str());
    CreatePalvex_1(&manager_, nullptr, nullptr, nullptr, &log_, TestCallbacks(), nullptr);
    ASSERT_NE(manager_, nullptr);
  }
  void TearDown() override {
    DestroyPalvex_1(&manager_, &log_);
    if (hadTemp_) {
      detail::SetVariable(kTempFolderVariable, previousTemp_.c_str());
    } else {
      detail::UnsetVariable(kTempFolderVariable);
    }
  }

  // Files the library left in the system's temporary directory.
  std::set<std::string> TempFiles() const { return temp_.Entries(); }

  // The outline as "display (match)" for groups and "  display (match): value" for nodes.
  std::vector<std::string> Outline(ISensorFileHandler *handler) {
    std::vector<std::string> lines;
    PX_GroupChildren root;
    handler->GetRootChildren(&root, &log_);
    for (std::size_t group = 0; group < root.paths.size(); ++group) {
      const std::string groupPath = "[" + std::to_string(group) + "]";
      PX_GroupChildInfo info;
      handler->GetGroupChildInfo(groupPath.c_str(), &info, &log_);
      lines.push_back(info.displayName + " (" + info.matchName + ")");
      PX_GroupChildren children;
      handler->GetGroupChildren(groupPath.c_str(), &children, &log_);
      for (std::size_t child = 0; child < children.paths.size(); ++child) {
        const std::string path = groupPath + "[" + std::to_string(child) + "]";
        PX_StaticDataInfo node;
        handler->GetStaticDataInfo(path.c_str(), &node, &log_);
        char number[32];
        std::snprintf(number, sizeof number, "%g", node.number);
        const std::string value = node.valueKind == PX_TYPE_NUMBER ? number : "'" + node.text + "'";
        lines.push_back("  " + node.displayName + " (" + node.matchName + "): " + value);
      }
    }
    return lines;
  }

  // Opens path, reads its outline and closes it again; empty after a failure.
  std::vector<std::string> ConvertedOutline(const std::string &path) {
    ISensorFileHandler *handler = nullptr;
    manager_->OpenFile(&handler, path.c_str(), nullptr, &log_);
    if (handler == nullptr) return {};
    std::vector<std::string> lines = Outline(handler);
    manager_->CloseFile(&handler, &log_);
    return lines;
  }

  // The one error reported since the last call, as "code message"; "ok" without one.
  std::string TakeError() {
    std::string taken = log_.empty() ? "ok" : std::to_string(log_.errors[0].code) + " " + log_.errors[0].message;
    if (log_.errors.size() > 1) taken += " (and more)";
    log_.clear();
    return taken;
  }

  IPalvex *manager_ = nullptr;
  palvex::host::ErrorLog log_;
  ScratchFolder folder_;

 private:
  ScratchFolder temp_;
  std::string previousTemp_;
  bool hadTemp_ = false;
};

}  // namespace palvex::testing
