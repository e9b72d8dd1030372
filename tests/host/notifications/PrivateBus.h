// A session bus of a test's own, and a notification service on it that does what the test says.
#pragma once

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace vel::test {

class PrivateBus {
 public:
  /// In a directory that another may have been in before.
  explicit PrivateBus(const std::string& directory) {
    const std::string address = "unix:path=" + directory + "/bus";
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    // Without the machine's services, which the bus would start.
    std::ofstream(directory + "/conf")
        << "<busconfig><type>session</type><listen>" << address << "</listen>"
        << "<policy context='default'><allow send_destination='*' eavesdrop='true'/><allow "
           "eavesdrop='true'/><allow own='*'/></policy>"
        << "</busconfig>";
    std::array<int, 2> ready{};
    EXPECT_EQ(pipe(ready.data()), 0);
    const std::string print = "--print-address=" + std::to_string(ready[1]);
    const std::string configuration = "--config-file=" + directory + "/conf";
    daemon_ = fork();
    if (daemon_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      execlp("dbus-daemon", "dbus-daemon", "--nofork", print.c_str(), configuration.c_str(),
             nullptr);
      _exit(127);
    }
    close(ready[1]);
    char first = 0;
    EXPECT_EQ(read(ready[0], &first, 1), 1) << "the bus has not started";
    close(ready[0]);
  }
  ~PrivateBus() {
    kill(daemon_, SIGKILL);
    waitpid(daemon_, nullptr, 0);
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// Connections are still made, but get no further.
  void freeze() const { kill(daemon_, SIGSTOP); }

 private:
  pid_t daemon_ = 0;
};

/// Works only while a test waits for it.
class NotificationServer {
 public:
  NotificationServer() {
    sd_bus* bus = nullptr;
    EXPECT_GE(sd_bus_open_user(&bus), 0);
    bus_.reset(bus, sd_bus_close_unref);
    EXPECT_GE(sd_bus_add_filter(bus, nullptr, answer, this), 0);
    EXPECT_GE(sd_bus_request_name(bus, "org.freedesktop.Notifications", 0), 0);
  }

  void serveUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) {
        throw std::runtime_error("waited in vain");
      }
      if (sd_bus_process(bus_.get(), nullptr) == 0) {
        sd_bus_wait(bus_.get(), 10'000);
      }
    }
  }

  /// Whether the program that sent the last Notify is still on the bus.
  [[nodiscard]] bool isSenderThere() const {
    sd_bus_creds* credentials = nullptr;
    const int result = sd_bus_get_name_creds(bus_.get(), sender_.c_str(), 0, &credentials);
    sd_bus_creds_unref(credentials);
    return result >= 0;
  }

  std::array<const char*, 3> capabilities{"body", "body", "body"};
  std::string refused;             ///< the method to answer with an error
  std::string silentOn;            ///< the method to leave unanswered
  std::vector<std::string> asked;  ///< methods
  std::vector<std::string> shown;  ///< what Notify was given, all of it

 private:
  static int answer(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    return sd_bus_message_is_method_call(message, "org.freedesktop.Notifications", nullptr) > 0
               ? static_cast<NotificationServer*>(self)->answerCall(message)
               : 0;
  }

  int answerCall(sd_bus_message* message) {
    const std::string method = asked.emplace_back(sd_bus_message_get_member(message));
    if (method == silentOn) {
      return 1;
    }
    if (method == refused) {
      return sd_bus_reply_method_errorf(message, "org.example.Refused", "not now");
    }
    if (method == "GetCapabilities") {
      return sd_bus_reply_method_return(message, "as", 3U, capabilities[0], capabilities[1],
                                        capabilities[2]);
    }
    sender_ = sd_bus_message_get_sender(message);
    shown.push_back(written(message));
    return sd_bus_reply_method_return(message, "u", 1U);
  }

  /// What is left of the message or of its open container.
  static std::string written(sd_bus_message* message) {
    std::string result;
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(message, &type, &contents) > 0) {
      union {
        const char* text;
        int number;
        unsigned char byte;
      } value{};
      if (contents != nullptr) {
        sd_bus_message_enter_container(message, type, contents);
        result += "[" + written(message) + "]";
        sd_bus_message_exit_container(message);
      } else if (sd_bus_message_read_basic(message, type, &value) > 0) {
        result +=
            type == 's' ? value.text : std::to_string(type == 'y' ? value.byte : value.number);
        result += ';';
      }
    }
    return result;
  }

  std::shared_ptr<sd_bus> bus_;
  std::string sender_;
};

}  // namespace vel::test
