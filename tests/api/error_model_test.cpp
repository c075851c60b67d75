#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <thread>

#include "api/client_table.hpp"
#include "api/guard.hpp"
#include "api/px_exception.hpp"
#include "localisation/dictionary.hpp"
#include "palvex/host.hpp"
#include "support/test_host.hpp"

namespace ns_sensor {
namespace {

TEST(ErrorModel, SubstitutesParametersByTheirRules) {
  struct Case {
    const char *literal;
    PX_MessageParam p1, p2, p3, p4;
    const char *expected;
  };
  const Case cases[] = {
      {"$$$/T/A=a ^1 b", {}, {}, {}, {}, "a ^1 b"},                    // kind None keeps the mark
      {"$$$/T/A=no marks", PX_MessageParam("x"), {}, {}, {}, "no marks"},
      {"$$$/T/A=^1 and ^1", PX_MessageParam("x"), {}, {}, {}, "x and ^1"},  // first only
      {"$$$/T/A=^1", PX_MessageParam(-42), {}, {}, {}, "-42"},
      {"$$$/T/A=^1", PX_MessageParam(std::uint64_t{18446744073709551615ull}), {}, {}, {}, "18446744073709551615"},
      {"$$$/T/A=^1", PX_MessageParam(2.5), {}, {}, {}, "2.500000"},
      {"$$$/T/A=[^1]", PX_MessageParam(""), {}, {}, {}, "[]"},
      {"$$$/T/A=^2^1", PX_MessageParam("^2"), PX_MessageParam("y"), {}, {}, "y^2"},  // each step sees the last
      {"$$$/T/A=^4^3^2^1", 1, 2u, PX_MessageParam("c"), PX_MessageParam("\xC3\xA9"), "\xC3\xA9" "c21"},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(BuildErrorMessage(c.literal, c.p1, c.p2, c.p3, c.p4), c.expected) << c.literal;
  }
  EXPECT_EQ(BuildErrorMessage("$$$/PXError/InvalidPointer=Invalid pointer to ^1.", Quoted("IPalvex")),
            "Invalid pointer to \"IPalvex\".");
}

TEST(ErrorModel, RaiseRecordsTheLastExceptionOfTheThread) {
  ResetLastException();
  try {
    Raise(Msg::FileNotExist, "/nowhere");
  } catch (const PX_Exception &e) {
    EXPECT_EQ(e.code(), 4u);
    EXPECT_STREQ(e.what(), "File not exist at input path:/nowhere.");
    EXPECT_EQ(e.detail1(), -1);
    EXPECT_EQ(e.detail2(), -1);
  }
  EXPECT_EQ(LastException().code(), 4u);

  // Another thread has its own slot.
  std::uint32_t seenThere = 99;
  std::thread([&] { seenThere = LastException().code(); }).join();
  EXPECT_EQ(seenThere, 0u);

  // Failures that do not pass through the raising routine leave the slot alone.
  try {
    throw std::bad_alloc();
  } catch (...) {
  }
  EXPECT_EQ(LastException().code(), 4u);
  ResetLastException();
  EXPECT_EQ(LastException().code(), 0u);
  EXPECT_STREQ(LastException().what(), "");
}

// The guard's three catch paths, as the host sees them through entry 11.
TEST(Guard, ReportsEachKindOfFailureWithItsCode) {
  SetClientTableOnce(palvex::testing::TestCallbacks());
  ASSERT_EQ(ClientTable(), palvex::testing::TestCallbacks()) << "another table was stored first";
  LoadDictionary("en_US");
  struct Case {
    const char *name;
    void (*body)();
    std::uint32_t code;
    const char *message;
    std::int64_t detail1;
    std::int64_t detail2;
  };
  const Case cases[] = {
      {"raised", [] { Raise(Msg::NoFileOpened); }, 26, "No file is opened by Palvex.", -1, -1},
      {"raised with details", [] { RaiseError(PX_ErrorInfo{1234, "$$$/T/X=x", 5, 6}); }, 1234, "x", 5, 6},
      {"no text", [] { throw PX_Exception(77, ""); }, 77, "Unknown exception", -1, -1},
      {"memory", [] { throw std::bad_alloc(); }, 34, "Unable to allocate memory.", -1, -1},
      {"anything else", [] { throw std::out_of_range("stoi"); }, 23, "Unknown exception occurred.", -1, -1},
      {"not even an exception", [] { throw 42; }, 23, "Unknown exception occurred.", -1, -1},
  };
  for (const auto &c : cases) {
    palvex::host::ErrorLog log;
    RunGuarded(&log, c.body);
    ASSERT_EQ(log.errors.size(), 1u) << c.name;
    EXPECT_EQ(log.errors[0].code, c.code) << c.name;
    EXPECT_EQ(log.errors[0].message, c.message) << c.name;
    EXPECT_EQ(log.errors[0].detail1, c.detail1) << c.name;
    EXPECT_EQ(log.errors[0].detail2, c.detail2) << c.name;
  }
  palvex::host::ErrorLog quiet;
  RunGuarded(&quiet, [] {});
  EXPECT_TRUE(quiet.empty());
  EXPECT_EQ(RunGuardedReturning<int>(&quiet, -1, []() -> int { throw std::bad_alloc(); }), -1);
  EXPECT_EQ(quiet.errors.at(0).code, 34u);
}

TEST(Guard, LocalisesTheBoundaryTexts) {
  SetClientTableOnce(palvex::testing::TestCallbacks());
  ASSERT_TRUE(LoadDictionary("es_ES"));
  palvex::host::ErrorLog log;
  RunGuarded(&log, [] { throw std::bad_alloc(); });
  LoadDictionary("en_US");
  ASSERT_EQ(log.errors.size(), 1u);
  EXPECT_EQ(log.errors[0].code, 34u);
  EXPECT_NE(log.errors[0].message, "Unable to allocate memory.");
}

}  // namespace
}  // namespace ns_sensor
