#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <vector>

#include "tests/support/machine/temporary_directory.h"
#include "virtual_tv/bus/bus_share.h"
#include "virtual_tv/ports/message_ports.h"

namespace vxtv {

/// A television's folder with nothing but a bus.
class BusTelevision {
 public:
    BusTelevision() {
        std::filesystem::create_directories(folder.root());
        const auto taken = share.take();
        EXPECT_TRUE(taken) << taken.error().sentence;
    }
    ~BusTelevision() { share.endBus(); }
    BusTelevision(const BusTelevision&) = delete;
    BusTelevision& operator=(const BusTelevision&) = delete;

    vxtest::TemporaryDirectory place;
    Folder folder{place / "tv"};
    BusShare share{folder};
};

/// Receives messages. While it is shut, senders wait.
class PortInbox {
 public:
    Delivery::Receiver receiver() {
        return [this](int, PortMessage message) {
            const std::lock_guard lock(door);
            received_.push_back(std::move(message));
            changed_.notify_all();
        };
    }

    /// The messages so far, as soon as there are `count` of them or the time is over.
    std::vector<PortMessage> waitFor(std::size_t count) {
        std::unique_lock lock(door);
        changed_.wait_for(lock, std::chrono::seconds(10), [&] { return received_.size() >= count; });
        return received_;
    }

    std::mutex door;  ///< held: it is shut

 private:
    std::condition_variable changed_;
    std::vector<PortMessage> received_;
};

}  // namespace vxtv
