#include "virtual_tv/platform/passage.h"

#include <chrono>
#include <thread>

namespace vxtv {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(Arguments arguments) {
    Json object = Json::object();
    for (const Argument& argument : arguments) {
        if (argument.kind == Argument::Kind::Number) {
            object[argument.name] = argument.number;
        } else if (!argument.text) {
            object[argument.name] = nullptr;
        } else if (argument.kind == Argument::Kind::Name) {
            object[argument.name] = *argument.text;
        } else {
            object[std::string(argument.name) + "Length"] = argument.text->size();
        }
    }
    return object;
}

std::optional<std::string_view> textOf(const char* text) {
    return text != nullptr ? std::optional<std::string_view>(text) : std::nullopt;
}

/// The first argument, if it is a text.
std::optional<std::string_view> keyOf(Arguments arguments) {
    const bool any = arguments.size() > 0;
    return any ? arguments.begin()->text : std::nullopt;
}

}  // namespace

Argument number(const char* name, std::int64_t value) {
    return {name, Argument::Kind::Number, value, std::nullopt};
}

Argument named(const char* name, const char* text) {
    return {name, Argument::Kind::Name, 0, textOf(text)};
}

Argument named(const char* name, const std::string& text) {
    return {name, Argument::Kind::Name, 0, text};
}

Argument secret(const char* name, const char* text) {
    return {name, Argument::Kind::Secret, 0, textOf(text)};
}

Passage::Passage(KnownCall call, Arguments arguments)
    : call_(call), arguments_(arguments), television_(processTelevision()) {
    if (television_ == nullptr) {
        return;
    }
    // If the plan cannot be read, the call is made without faults. It will meet the same error and report it.
    const auto action = television_->faults().onCall(call_.name(), keyOf(arguments_)).value_or(std::nullopt);
    if (action) {
        fault_ = action->id;
        imposedStatus_ = action->status;
        std::this_thread::sleep_for(std::chrono::milliseconds(action->delayMs));
    }
}

void Passage::log(Json result) {
    CallRecord record;
    record.call = call_.name();
    record.arguments = toJson(arguments_);
    record.result = std::move(result);
    record.fault = fault_;
    television_->calls().append(std::move(record));
}

}  // namespace vxtv
