#pragma once

#include <memory>
#include <string>

namespace vxcontract {

/// What a contract suite needs of a television before it calls the platform. Each implementation of the
/// platform has its own, and the suites run unchanged on each.
class World {
 public:
    /// The one of this executable. A new one for each test, so that tests do not affect each other.
    static std::unique_ptr<World> make();
    virtual ~World() = default;

    virtual std::string model() const = 0;
    virtual std::string productTag() const = 0;
    virtual int tunerType() const = 0;
    /// A numeric feature and a switch of this television, and their values.
    virtual std::string intFeature() const = 0;
    virtual int intFeatureValue() const = 0;
    virtual std::string boolFeature() const = 0;
    virtual bool boolFeatureValue() const = 0;
    /// Settings of each type on this television.
    virtual std::string intKey() const = 0;
    virtual std::string boolKey() const = 0;
    virtual std::string stringKey() const = 0;

    /// A key file that can be installed, and its two entries.
    virtual std::string keyFile() const = 0;
    virtual std::string installedKey() const = 0;
    virtual std::string installedIv() const = 0;
    /// The 20 bytes of the credential that may read them, with owner 1 and group 0.
    virtual std::string clientIdentifier() const = 0;

    /// A directory for a package, without a slash at its end.
    virtual std::string packageDirectory() const = 0;
    /// A picture, and a source that accepts it as an icon.
    virtual std::string picture() const = 0;
    virtual int sourceId() const = 0;

    /// An application with a port `remotePort()`, which answers every message with one that says
    /// "response_clone": "success".
    virtual std::string answeringApplication() = 0;
    virtual std::string absentApplication() const = 0;
    static std::string remotePort() { return "VxCloneMessagePort"; }

    /// An application that does not run and can be launched.
    virtual std::string application() const = 0;

    /// Makes the nth next call of the operation return the status, once.
    virtual void failOnce(const std::string& call, int status, int nth) = 0;

    /// The number of the television's log lines that contain the text.
    virtual int logLinesWith(const std::string& text) const = 0;
};

}  // namespace vxcontract
