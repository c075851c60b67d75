// The document of a GPX file: motion computed between points, the groups of tracks,
// routes and waypoints, extensions by local name, and times that go backwards.
#include <gtest/gtest.h>

#include "great_circle.hpp"
#include "gpx_test_support.hpp"

namespace gpx {
namespace {

using testing::Convert;
using testing::Converted;
using testing::Gpx;
using testing::Point;
using testing::Values;
using Texts = std::vector<std::string>;

// 0.001 degree of a great circle: 6,371,008.8 m * 0.001 * pi / 180.
constexpr double kMilliDegree = 111.19508;

TEST(GpxGreatCircle, DistancesAndHeadingsOfKnownSteps) {
  const struct {
    GeoPosition from, to;
    double metres, heading;
  } cases[] = {
      {{0, 0}, {0, 0.001}, kMilliDegree, 90},
      {{0, 0}, {0.001, 0}, kMilliDegree, 0},
      {{0, 0}, {0, -0.001}, kMilliDegree, 270},
      {{0, 0}, {-0.001, 0}, kMilliDegree, 180},
      {{60, 10}, {60, 10.002}, kMilliDegree, 89.999},  // a degree of longitude is half as long at 60°
      {{0, 179.9995}, {0, -179.9995}, kMilliDegree, 90},  // across the date line
      {{0, 0}, {0, 180}, kEarthMeanRadius * 3.14159265358979, 90},
  };
  for (const auto &c : cases) {
    EXPECT_NEAR(DistanceMetres(c.from, c.to), c.metres, 1e-3) << c.to.latitude << " " << c.to.longitude;
    EXPECT_NEAR(HeadingDegrees(c.from, c.to), c.heading, 1e-3) << c.to.latitude << " " << c.to.longitude;
  }
}

TEST(GpxDocument, MotionComputedWhereTheFileHasNone) {
  const Converted converted = Convert(Gpx("<trk><name>Square</name><trkseg>" +
                                          Point(0, 0, "2024-05-04T06:30:00Z") +      // start
                                          Point(0, 0.001, "2024-05-04T06:30:10Z") +  // east
                                          Point(0.001, 0.001, "2024-05-04T06:30:20Z") +  // north
                                          Point(0.001, 0.001, "2024-05-04T06:30:30Z") +  // standing
                                          Point(0.001, 0.001, "2024-05-04T06:30:40Z",   // the file's own
                                                "<speed>3.5</speed><course>-10</course>") +
                                          "</trkseg></trk>"));
  EXPECT_EQ(Values(converted, "speed"), (Texts{"11.12", "11.12", "0", "3.5"}));
  // Standing still gives no heading: the previous one holds.
  EXPECT_EQ(Values(converted, "heading"), (Texts{"90", "0", "350"}));
  EXPECT_EQ(Values(converted, "distance"), (Texts{"0", "111.2", "222.39", "222.39", "222.39"}));
  ASSERT_EQ(converted.groups.size(), 1u);
  EXPECT_EQ(converted.groups[0].displayName, "Square");
  EXPECT_NEAR(converted.groups[0].distance, 2 * kMilliDegree, 1e-3);
}

TEST(GpxDocument, TracksRoutesAndWaypointsBecomeGroups) {
  const std::string second = "2024-05-04T06:31:00Z";
  const Converted converted = Convert(Gpx(
      "<wpt lat=\"5\" lon=\"5\"><time>2024-05-04T06:29:00Z</time><name>Gate</name></wpt>"
      "<wpt lat=\"5\" lon=\"5\"><name>Untimed</name></wpt>"
      "<trk><name>Two parts</name><trkseg>" +
      Point(0, 0, "2024-05-04T06:30:00Z") + Point(0, 0.001, "2024-05-04T06:30:10Z") +
      Point(0, 0.5, "") +  // skipped, counted
      "</trkseg><trkseg>" + Point(1, 1, second) + Point(1.001, 1, "2024-05-04T06:31:10Z") +
      "</trkseg></trk>"
      "<trk><trkseg>" + Point(3, 3, "") + "</trkseg></trk>"  // nothing timed: left out
      "<trk><trkseg>" + Point(2, 2, second) + "</trkseg></trk>"
      "<rte><rtept lat=\"4\" lon=\"4\"><time>2024-05-04T06:32:00Z</time></rtept>"
      "<rtept lat=\"4\" lon=\"4.001\"><time>2024-05-04T06:32:30Z</time></rtept></rte>"));
  ASSERT_EQ(converted.groups.size(), 4u);
  const struct {
    std::string name;
    std::uint64_t timed, untimed;
    double distance;
  } expected[] = {
      {"Two parts", 4, 1, 2 * kMilliDegree},  // the gap between the segments is not travelled
      {"Track 3", 1, 0, 0},
      {"Route 1", 2, 0, kMilliDegree * 0.997564},  // cos 4°
      {"Waypoints", 1, 1, 0},
  };
  for (std::size_t i = 0; i < converted.groups.size(); ++i) {
    EXPECT_EQ(converted.groups[i].displayName, expected[i].name);
    EXPECT_EQ(converted.groups[i].timedPoints, expected[i].timed) << expected[i].name;
    EXPECT_EQ(converted.groups[i].untimedPoints, expected[i].untimed) << expected[i].name;
    EXPECT_NEAR(converted.groups[i].distance, expected[i].distance, 1e-3) << expected[i].name;
  }
  // The distance carries on across the gap, and the second segment's first point has no speed.
  EXPECT_EQ(Values(converted, "distance"), (Texts{"0", "111.2", "111.2", "222.39"}));
  EXPECT_EQ(Values(converted, "speed").size(), 2u);
  EXPECT_EQ(Values(converted, "waypointName"), Texts{"Gate"});
  EXPECT_EQ(Values(converted, "waypointLatitude"), Texts{"5"});
  EXPECT_EQ(Values(converted, "latitude2"), Texts{"2"});
  EXPECT_EQ(converted.commitStatus, 0u);
}

TEST(GpxDocument, ExtensionsAreMatchedByLocalName) {
  const Converted converted = Convert(Gpx(
      "<trk><trkseg>" +
      Point(0, 0, "2024-05-04T06:30:00Z",
            "<extensions><x:TrackPointExtension><x:hr>120</x:hr><x:cad>80</x:cad><x:atemp>21.5</x:atemp>"
            "<x:hr>99</x:hr></x:TrackPointExtension><power>250</power><x:Glide>1.5</x:Glide>"
            "<x:label>climb</x:label><x:speed>4</x:speed><x:bearing>45</x:bearing></extensions>") +
      Point(0, 0.001, "2024-05-04T06:30:10Z", "<extensions><HeartRate>121</HeartRate><watts>260</watts></extensions>") +
      "</trkseg></trk>"));
  EXPECT_EQ(Values(converted, "heartRate"), (Texts{"120", "121"}));  // the first of a repeated value counts
  EXPECT_EQ(Values(converted, "cadence"), Texts{"80"});
  EXPECT_EQ(Values(converted, "temperature"), Texts{"21.5"});
  EXPECT_EQ(Values(converted, "power"), (Texts{"250", "260"}));
  EXPECT_EQ(Values(converted, "glide"), Texts{"1.5"});  // unknown, but a number
  EXPECT_EQ(converted.sets.count("label"), 0u);
  EXPECT_EQ(Values(converted, "speed"), (Texts{"4", "11.12"}));
  EXPECT_EQ(Values(converted, "heading"), (Texts{"45", "90"}));
}

TEST(GpxDocument, TimesGoingBackwardsAreKeptAndCounted) {
  const Converted converted = Convert(Gpx("<trk><trkseg>" + Point(0, 0, "2024-05-04T06:30:10Z") +
                                          Point(0, 0.001, "2024-05-04T06:30:00Z") +
                                          Point(0, 0.002, "2024-05-04T06:30:00Z") +
                                          Point(0, 0.003, "2024-05-04T06:30:20Z") + "</trkseg></trk>"));
  ASSERT_EQ(converted.groups.size(), 1u);
  EXPECT_EQ(converted.groups[0].outOfOrder, 1u);
  const testing::SampleTexts &latitude = converted.sets.at("longitude");
  ASSERT_EQ(latitude.size(), 4u);
  EXPECT_EQ(latitude[1].first, "2024-05-04T06:30:00Z");
  // Backwards and repeated times leave no interval to compute a speed over.
  EXPECT_EQ(Values(converted, "speed"), Texts{"5.56"});
}

}  // namespace
}  // namespace gpx
