#pragma once

#include <optional>
#include <string>

/// The secure storage of these tests, behind the platform's own functions, with or without the application's
/// key.
struct FakeSecureStorage {
    std::optional<std::string> packageKey = std::string(32, 'k');
    bool givenBackWiped = false;  ///< whether the latest buffer came back without the secret

    /// The instance of the process.
    static FakeSecureStorage& instance();
    static void reset() { instance() = {}; }
};
