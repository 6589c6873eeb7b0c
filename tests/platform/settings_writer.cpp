// Sets one key of a settings file, for the test that lets system calls fail meanwhile. Exits with 3
// when the store told of a problem.

#include "platform/json_key_value_store.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  bool troubled = false;
  tarnwick::JsonKeyValueStore store(argv[1], [&troubled](const std::string&) { troubled = true; });
  store.setString("value", argv[2]);
  return troubled ? 3 : 0;
}
