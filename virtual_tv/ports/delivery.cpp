#include "virtual_tv/ports/delivery.h"

#include <chrono>

#include "virtual_tv/ports/quiet_thread.h"

namespace vxtv {

namespace {

/// A slow receiver delays the end of the process no longer than this.
constexpr std::chrono::seconds kLongestFarewell{2};

}  // namespace

Delivery::Delivery() : thread_(quietThread([this] { deliverAll(); })) {}

void Delivery::end() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void Delivery::hush() {
    std::unique_lock lock(mutex_);
    hushed_ = true;
    if (std::this_thread::get_id() != thread_.get_id()) {
        changed_.wait_for(lock, kLongestFarewell, [this] { return !delivering_; });
    }
}

void Delivery::setReceiver(int port, Receiver receiver) {
    const std::lock_guard lock(mutex_);
    receivers_[port] = std::move(receiver);
}

bool Delivery::accept(int port, PortMessage message) {
    {
        const std::lock_guard lock(mutex_);
        if (ending_ || waiting_.size() >= kMostWaiting) return false;
        waiting_.push_back({port, std::move(message)});
    }
    changed_.notify_all();
    return true;
}

void Delivery::deliverAll() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return ending_ || (!hushed_ && !waiting_.empty()); });
        if (ending_) return;
        Waiting next = std::move(waiting_.front());
        waiting_.pop_front();
        const auto receiver = receivers_.find(next.port);
        if (receiver == receivers_.end()) continue;
        const Receiver receive = receiver->second;
        delivering_ = true;
        lock.unlock();
        receive(next.port, std::move(next.message));
        lock.lock();
        delivering_ = false;
        changed_.notify_all();
    }
}

}  // namespace vxtv
