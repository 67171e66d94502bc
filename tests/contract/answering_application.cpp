// An application that answers every message with a success, until it is killed.

#include <unistd.h>

#include <cstdio>

#include "platform/message_port.h"

namespace {

constexpr const char* kPort = "VxCloneMessagePort";

void answerMessage(int port, const char* application, const char* remotePort, bool /*trusted*/,
                   bundle* /*message*/, void* /*data*/) {
    bundle* const answer = bundle_create();
    bundle_add_str(answer, "response_clone", "success");
    message_port_send_message_with_local_port(application, remotePort, answer, port);
    bundle_free(answer);
}

}  // namespace

int main() {
    const int port = message_port_register_local_port(kPort, answerMessage, nullptr);
    if (port < 0) {
        std::fprintf(stderr, "cannot make the port: %d\n", port);
        return 1;
    }
    std::puts("up");
    std::fflush(stdout);
    while (true) pause();
}
