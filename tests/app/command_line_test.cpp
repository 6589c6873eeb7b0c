#include "app/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Arguments = std::vector<std::string>;
using testing::HasSubstr;

TEST(CommandLineOptions, EachAsksForOneThing) {
  const std::vector<std::pair<Arguments, CommandLine>> cases = {
      {{}, Wish::open},
      {{"--launch"}, Wish::launch},
      {{"--background"}, Wish::background},
      {{"--settings"}, Wish::settings},
      {{"--logs"}, Wish::logs},
      {{"--stop"}, Wish::stop},
      {{"--status"}, Wish::status},
      {{"--status", "--json"}, Wish::statusJson},
      {{"--json", "--status", "--status"}, Wish::statusJson},
      {{"--help"}, Information::help},
      {{"-h"}, Information::help},
      {{"--version"}, Information::version},
      {{"--stop", "--version", "--nonsense"}, Information::version},
  };
  for (const auto& [arguments, wanted] : cases) {
    EXPECT_EQ(parseCommandLine(arguments), wanted) << testing::PrintToString(arguments);
  }
}

TEST(CommandLineOptions, OfTheToolkitAndTheSessionAreLetThrough) {
  for (const Arguments& arguments : std::vector<Arguments>{
           {"-platform", "offscreen"},
           {"--platform", "offscreen", "-style", "fusion"},
           {"-style=fusion", "-reverse"},
           {"-session", "10b0_1600000000_42"},
           // A value is one, whatever it looks like.
           {"-name", "--stop"},
           {"-title", "--help"},
       }) {
    EXPECT_EQ(parseCommandLine(arguments), CommandLine(Wish::open))
        << testing::PrintToString(arguments);
  }
  EXPECT_EQ(parseCommandLine({"-session", "id", "--background"}), CommandLine(Wish::background));
}

TEST(CommandLineOptions, WrongUseIsNamed) {
  const std::vector<std::pair<Arguments, const char*>> cases = {
      {{"--lauch"}, "\"--lauch\""},
      {{"-s"}, "\"-s\""},
      {{""}, "\"\""},
      {{"--"}, "\"--\""},
      {{"--launch=now"}, "\"--launch=now\""},
      {{"--status", "desktop"}, "\"desktop\""},
      {{"--launch", "--stop"}, "--launch and --stop"},
      {{"--background", "--settings"}, "--background and --settings"},
      {{"--json"}, "--json goes with --status"},
      {{"--stop", "--json"}, "--json goes with --status"},
      {{"--stop", "-platform"}, "-platform needs a value"},
  };
  for (const auto& [arguments, part] : cases) {
    const CommandLine result = parseCommandLine(arguments);
    const auto* wrong = std::get_if<WrongUse>(&result);
    ASSERT_TRUE(wrong) << testing::PrintToString(arguments);
    EXPECT_THAT(wrong->sentence, HasSubstr(part));
    EXPECT_EQ(wrong->sentence.back(), '.');
  }
}

TEST(CommandLineOptions, AreAllInTheHelp) {
  for (const char* option : {"--launch", "--background", "--settings", "--logs", "--stop",
                             "--status", "--json", "--version", "--help"}) {
    EXPECT_THAT(helpText(), HasSubstr(option));
  }
}

}  // namespace
}  // namespace tarnwick
