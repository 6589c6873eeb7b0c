#include "core/controller/friendly.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(Friendly, NamesTheFirstKnownCause) {
  const char* fallback = "Colima could not start.";
  EXPECT_EQ(friendly("write: No Space Left On Device", fallback),
            "The disk is full. Free some space, or give Colima a bigger disk, and try again.");
  EXPECT_EQ(friendly("dial tcp 127.0.0.1:3000: bind: address already in use", fallback),
            "A network port is already in use by another program. Choose other ports in Settings.");
  EXPECT_EQ(friendly("Cannot connect to the Docker daemon at unix:///x.sock.", fallback),
            "Docker can't reach Colima. Colima may not be running yet.");
  EXPECT_EQ(friendly("Get \"https://r/v2/\": dial tcp: lookup r: no such host", fallback),
            "No internet connection to download from. Check your network and try again.");
  EXPECT_EQ(friendly("manifest unknown: manifest unknown", fallback),
            "The image or tag was not found. It may have been renamed. Try another flavor.");
}

TEST(Friendly, AnythingElseIsTheFallbackWithAHint) {
  EXPECT_EQ(friendly("", "Colima could not start."),
            "Colima could not start. Open Show details for the full output.");
  EXPECT_EQ(friendly("disk quot", "X."), "X. Open Show details for the full output.");
}

}  // namespace
}  // namespace tarnwick
