// Writes the settings n, n + 1, … one after the other and says of each when it is in the file.
//   settings_writer FILE N
#include <unistd.h>

#include <cstdlib>
#include <future>
#include <iostream>

#include "host/store/SettingsStore.h"
#include "platform/foundation/GlobalQueue.h"
#include "platform/foundation/SerialQueue.h"

/// A disk that always takes as long: a process that is killed loses nothing that it has written, so
/// that all a sync is good for here is to be killed in it.
extern "C" int fsync(int) {
  constexpr useconds_t kDuration = 200;
  return usleep(kDuration);
}

int main(int, char** arguments) {
  vel::GlobalQueue threads;
  vel::SerialQueue queue(threads);
  vel::SettingsStore store(arguments[1], queue, [](const std::string& message) {
    std::cerr << message << "\n";
    _exit(1);
  });
  for (std::int64_t value = std::atoll(arguments[2]);; ++value) {
    store.setObject(value, "value", "test");
    std::promise<void> written;
    queue.async([&] { written.set_value(); });
    written.get_future().wait();
    if (write(STDOUT_FILENO, &value, sizeof value) != sizeof value) {
      return 1;
    }
  }
}
