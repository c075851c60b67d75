#!/usr/bin/env bash
# Sets up, builds, and shows the tool at work on the bundled samples.
set -euo pipefail
cd "$(dirname "$0")/.."
PALVEX_WINDOWS=0 bash scripts/setup.sh
bash scripts/build.sh build
set -x
./build/palvex formats
./build/palvex info examples/flight_v1_timecode.mgjson
./build/palvex info examples/run_v2_utc.mgjson
./build/palvex samples examples/flight_v1_timecode.mgjson '[1][1][0]'
./build/palvex samples --from 1 --to 2 examples/run_v2_utc.mgjson '["sensors"][0]'
./build/palvex validate examples/run_v2_utc.mgjson
./build/palvex info examples/bike_ride.csv
./build/palvex convert -o /tmp/bike_ride.mgjson examples/bike_ride.csv
./build/palvex validate /tmp/bike_ride.mgjson
./build/palvex info examples/walk.bvh
./build/palvex samples --to 0.1 examples/walk.bvh '[0][2]'
./build/palvex plot -o /tmp/walk_hips.svg examples/walk.bvh '[0][1]' '[0][2]'
./build/palvex --plugins build/plugins convert -o /tmp/pier_wind.mgjson examples/pier_wind.gust
./build/palvex info /tmp/pier_wind.mgjson
./build/palvex convert -o /tmp/ride.mgjson examples/ride.gpx
./build/palvex info /tmp/ride.mgjson
./build/palvex samples --to 30 /tmp/ride.mgjson '[0][7]'
./build/palvex --locale fr_FR message '$$$/PXError/FileNotExist=File not exist at input path:^1.' examples/missing.csv
