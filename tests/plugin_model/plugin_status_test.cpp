// Statuses at the `_v1` boundary: exceptions become statuses, statuses become exceptions,
// and the codes of the public header are those of the message table.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <tuple>

#include "api/px_exception.hpp"
#include "plugin_model/plugin_status.hpp"

namespace PX_PLUGIN {
namespace {

struct Conversion {
  const char *name;
  std::function<void()> raise;
  std::uint32_t code;
  std::int64_t detail1;
  std::int64_t detail2;
};

TEST(PluginStatus, EveryKindOfFailureBecomesItsStatus) {
  const Conversion conversions[] = {
      {"plug-in exception", [] { throw PX_PluginException(2016, 7, 8); }, 2016, 7, 8},
      {"library error", [] { throw ns_sensor::PX_Exception(55, "write failed", 3, 4); }, 1055, 3, 4},
      {"disk full", [] { throw ns_sensor::PX_Exception(34, "disk full"); }, 1034, -1, -1},
      {"memory", [] { throw std::bad_alloc(); }, 1034, -1, -1},
      {"standard exception", [] { throw std::out_of_range("x"); }, 1023, -1, -1},
      {"anything else", [] { throw 42; }, 1023, -1, -1},
      {"plug-in exception claiming success", [] { throw PX_PluginException(0, 1, 2); }, 1023, 1, 2},
  };
  for (const Conversion &c : conversions) {
    PX_PluginError error = NoPluginError();
    EXPECT_EQ(RunWithStatus(&error, c.raise), c.code) << c.name;
    EXPECT_EQ(error.code, c.code) << c.name;
    EXPECT_EQ(error.detail1, c.detail1) << c.name;
    EXPECT_EQ(error.detail2, c.detail2) << c.name;
    EXPECT_EQ(RunWithStatus(nullptr, c.raise), c.code) << c.name << " without a record";
  }
}

TEST(PluginStatus, SuccessClearsTheRecordAndStatusesTurnBackIntoExceptions) {
  PX_PluginError error{99, 5, 6};
  EXPECT_EQ(RunWithStatus(&error, [] {}), 0u);
  EXPECT_EQ(std::tuple(error.code, error.detail1, error.detail2), std::tuple(0u, -1, -1));
  EXPECT_NO_THROW(ThrowOnFailure(0, error));
  // Both a failed status and a library error beneath the writer reach callers as one form.
  const std::function<void()> raisers[] = {
      [] { ThrowOnFailure(1034, PX_PluginError{1034, 11, 12}); },
      [] {
        try {
          throw ns_sensor::PX_Exception(34, "disk full", 11, 12);
        } catch (...) {
          RethrowAsPluginException();
        }
      },
  };
  for (const auto &raise : raisers) {
    try {
      raise();
      ADD_FAILURE() << "no exception";
    } catch (const PX_PluginException &e) {
      EXPECT_EQ(std::tuple(e.code(), e.detail1(), e.detail2()), std::tuple(1034u, 11, 12));
    }
  }
}

TEST(PluginStatus, HeaderCodesAreTheMessageTableCodes) {
  using ns_sensor::Msg;
  const std::pair<PX_PluginStatus, Msg> rows[] = {
      {PX_PLUGIN_NO_OUTPUT_PATH, Msg::RootWithoutOutputPath},
      {PX_PLUGIN_CHILD_MISSING, Msg::RequiredChildMissing},
      {PX_PLUGIN_NODE_MISSING, Msg::RequiredNodeMissing},
      {PX_PLUGIN_GROUP_MISSING, Msg::RequiredGroupMissing},
      {PX_PLUGIN_TRUNCATE_FAILED, Msg::TruncateAfterFailure},
      {PX_PLUGIN_SAMPLES_UNREADABLE, Msg::SampleSetUnreadable},
      {PX_PLUGIN_KIND_MISMATCH, Msg::NodeKindMismatch},
      {PX_PLUGIN_NO_CHILDREN, Msg::RootWithoutChildren},
      {PX_PLUGIN_TIME_INFO_MISSING, Msg::TimeInfoMissing},
      {PX_PLUGIN_UNKNOWN_KIND, Msg::UnknownKind},
      {PX_PLUGIN_INVALID_MATCH_NAME, Msg::InvalidMatchNameSet},
      {PX_PLUGIN_DUPLICATE_MATCH_NAME, Msg::DuplicateMatchNameAtCommit},
      {PX_PLUGIN_INVALID_ARGUMENT, Msg::InvalidObjectModelArgument},
      {PX_PLUGIN_TIME_MISMATCH, Msg::SampleTimeMismatch},
      {PX_PLUGIN_WRONG_STATE, Msg::ObjectModelWrongState},
  };
  for (const auto &[status, id] : rows) EXPECT_EQ(ns_sensor::Message(id).code, status) << status;
  EXPECT_EQ(ns_sensor::Message(Msg::MemoryNotAvailable).code + 1000, PX_PLUGIN_OUT_OF_MEMORY);
  EXPECT_EQ(ns_sensor::Message(Msg::UnknownExceptionCaught).code + 1000, PX_PLUGIN_UNKNOWN_FAILURE);
}

}  // namespace
}  // namespace PX_PLUGIN
