#include <utility>

#include "platform/message_port.h"
#include "tests/support/scripted/answering.h"
#include "tests/support/scripted/scripted_bundle_content.h"

using namespace vxtest;

namespace {

bool isThere(const ScriptedPlatform::State& state, const char* application) {
    const auto found = state.remotePorts.find(application);
    return found == state.remotePorts.end() || found->second;
}

}  // namespace

int message_port_register_local_port(const char* local_port_name, message_port_message_cb callback,
                                     void* user_data) {
    return answered("message_port_register_local_port", quoted(local_port_name), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            if (local_port_name == nullptr || *local_port_name == '\0' || callback == nullptr) {
                return -1;
            }
            const int next = static_cast<int>(state.localPorts.size()) + 1;
            auto& port = state.localPorts.try_emplace(local_port_name, ScriptedPlatform::LocalPort{next, {}})
                             .first->second;
            const std::string name = local_port_name;
            port.receive = [=, id = port.id](const std::string& app, bundle* message) {
                callback(id, app.c_str(), name.c_str(), false, message, user_data);
            };
            state.newestPort = name;
            return port.id;
        });
    });
}

int message_port_check_remote_port(const char* remote_app_id, const char* remote_port_name, bool* exist) {
    const std::string arguments = fmt::format("{}, {}", quoted(remote_app_id), quoted(remote_port_name));
    return answered("message_port_check_remote_port", arguments, [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            if (remote_app_id == nullptr || remote_port_name == nullptr || exist == nullptr) {
                return -1;
            }
            *exist = isThere(state, remote_app_id);
            return 0;
        });
    });
}

int message_port_send_message_with_local_port(const char* remote_app_id, const char* remote_port_name,
                                              bundle* message, int local_port_id) {
    const std::string arguments = fmt::format("{}, {}, {}, {}", quoted(remote_app_id),
                                              quoted(remote_port_name), written(message), local_port_id);
    return answered("message_port_send_message_with_local_port", arguments, [&] {
        const bool isSent = platform().locked([&](ScriptedPlatform::State& state) {
            return remote_app_id != nullptr && remote_port_name != nullptr && message != nullptr &&
                   isThere(state, remote_app_id);
        });
        if (!isSent) {
            return -1;
        }
        platform().startReply(remote_app_id);
        return 0;
    });
}

namespace vxtest {

bool ScriptedPlatform::deliver(const std::string& app, const std::map<std::string, std::string>& message) {
    const auto receive = locked([](State& state) {
        const auto port = state.localPorts.find(state.newestPort);
        return port == state.localPorts.end() ? Receive() : port->second.receive;
    });
    if (!receive) {
        return false;
    }
    bundle content = bundleOf(message);
    receive(app, &content);
    return true;
}

void ScriptedPlatform::startReply(const std::string& app) {
    const std::lock_guard lock(mutex_);
    if (state_.reply) {
        replies_.emplace_back([this, app, reply = *state_.reply] { deliver(app, reply); });
    }
}

}  // namespace vxtest
