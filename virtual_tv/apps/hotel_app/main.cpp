#include <CLI/CLI.hpp>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "common/plain_reason.h"
#include "common/writer.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/apps/hotel_app/service.h"

namespace {

constexpr int kWrongCall = 2;

int complain(const std::string& sentence) {
    vxcommon::standardError().line("hotel_app: " + vxcommon::printable(sentence));
    return kWrongCall;
}

int run(const std::vector<std::string>& habits) {
    const char* const id = std::getenv(vxtv::kApplicationIdVariable);
    if (id == nullptr || *id == '\0') {
        return complain("no application of a television; start it with: vxtv app start DIR ID");
    }
    const auto misbehaviour = vxtv::hotel::readMisbehaviour(habits);
    if (!misbehaviour) {
        return complain(misbehaviour.error().sentence);
    }
    // An application starts in its own folder.
    const vxtv::hotel::DataFolder data(std::filesystem::current_path());
    if (const auto recovered = data.recover(); !recovered) {
        return complain(recovered.error().sentence);
    }
    return vxtv::hotel::Service(id, data, *misbehaviour).run();
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Shows guests what the hotel offers, and hands its data to a cloning application.",
                 "hotel_app");
    std::vector<std::string> habits;
    app.add_option("--misbehave", habits, "For tests: " + vxtv::hotel::misbehaviourNames())
        ->option_text("HABIT ...");
    CLI11_PARSE(app, argc, argv);
    try {
        return run(habits);
    } catch (const std::exception& exception) {
        return complain(vxcommon::plainReason(exception) + "; start the application again");
    }
}
