#include "common/strict_json.h"

#include <utility>
#include <vector>

namespace vxcommon {

namespace {

using Json = nlohmann::json;

constexpr const char* kTheWhole = "the whole";
/// The number of values that are read between two checks for a stop.
constexpr std::size_t kValuesBetweenQuestions = 256;

/// Builds the document and checks each value once, so the time grows linearly with the text. It reports a
/// finding by an exception, because the parser has no other way to stop.
class Builder final : public nlohmann::json_sax<Json> {
 public:
    Builder(const JsonLimits& limits, const std::function<bool()>& stopped)
        : limits_(limits), stopped_(stopped) {}

    bool null() override { return place(nullptr) != nullptr; }
    bool boolean(bool value) override { return place(value) != nullptr; }
    bool number_integer(number_integer_t value) override { return place(value) != nullptr; }
    bool number_unsigned(number_unsigned_t value) override { return place(value) != nullptr; }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return place(value) != nullptr;
    }
    bool string(string_t& value) override { return place(std::move(value)) != nullptr; }
    bool binary(binary_t& value) override { return place(Json::binary(std::move(value))) != nullptr; }
    bool start_object(std::size_t /*count*/) override { return open(Json::object()); }
    bool start_array(std::size_t /*count*/) override { return open(Json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override {
        count();
        const auto [member, isNew] = open_.back()->emplace(name, nullptr);
        if (!isNew) {
            throw WrongMember{name, "is given twice"};
        }
        member_ = &*member;
        return true;
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override {
        // The parser reports a number out of range in a different way from other errors.
        if (const auto* const wrong = dynamic_cast<const Json::parse_error*>(&error)) {
            throw Json::parse_error(*wrong);
        }
        throw WrongMember{kTheWhole, "holds a number that is too large"};
    }

    Json take() { return std::move(whole_); }

 private:
    void count() {
        if (++values_ > limits_.values) {
            throw WrongMember{kTheWhole,
                              "has more than " + std::to_string(limits_.values) + " names and values"};
        }
        if (values_ % kValuesBetweenQuestions == 0 && stopped_ && stopped_()) {
            throw ParsingStopped{};
        }
    }

    /// Puts the value into the document. Result: its address there.
    Json* place(Json value) {
        count();
        if (open_.empty()) {
            whole_ = std::move(value);
            return &whole_;
        }
        Json& container = *open_.back();
        if (container.is_array()) {
            container.push_back(std::move(value));
            return &container.back();
        }
        *member_ = std::move(value);
        return member_;
    }

    bool open(Json container) {
        if (open_.size() >= limits_.depth) {
            throw WrongMember{kTheWhole, "has more than " + std::to_string(limits_.depth) + " layers"};
        }
        open_.push_back(place(std::move(container)));
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }

    const JsonLimits& limits_;
    const std::function<bool()>& stopped_;
    std::size_t values_ = 0;
    Json whole_;
    std::vector<Json*> open_;  ///< the open containers, each inside the previous one
    Json* member_ = nullptr;   ///< the member of the innermost object that waits for its value
};

}  // namespace

Json parseStrictly(std::string_view text, const JsonLimits& limits, const std::function<bool()>& stopped) {
    // The parser would treat a NUL as the end of the text.
    if (text.find('\0') != std::string_view::npos) {
        throw WrongMember{kTheWhole, "holds a NUL"};
    }
    Builder builder(limits, stopped);
    Json::sax_parse(text, &builder);
    return builder.take();
}

}  // namespace vxcommon
