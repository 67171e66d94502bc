#pragma once

#include <memory>
#include <string>

namespace vxcontract {

/// What a contract suite needs of a television before it calls the platform. Each implementation of the
/// platform brings its own, and the suites are run on each of them unchanged.
class World {
 public:
    /// The one of this executable. Made anew for each test, so that tests do not see each other's values.
    static std::unique_ptr<World> make();
    virtual ~World() = default;

    virtual std::string model() const = 0;
    virtual std::string productTag() const = 0;
    virtual int tunerType() const = 0;
    /// A numeric feature and a switch that this television has, and their values.
    virtual std::string intFeature() const = 0;
    virtual int intFeatureValue() const = 0;
    virtual std::string boolFeature() const = 0;
    virtual bool boolFeatureValue() const = 0;
    /// Settings of each type that this television has.
    virtual std::string intKey() const = 0;
    virtual std::string boolKey() const = 0;
    virtual std::string stringKey() const = 0;

    /// A key file that can be installed, and the two entries that it brings.
    virtual std::string keyFile() const = 0;
    virtual std::string installedKey() const = 0;
    virtual std::string installedIv() const = 0;
    /// The 20 bytes of the credential that may read them, with owner 1 and group 0.
    virtual std::string clientIdentifier() const = 0;

    /// A directory that a package may be written to and read from, without a slash at its end.
    virtual std::string packageDirectory() const = 0;
    /// A picture, and a source that may get it as an icon.
    virtual std::string picture() const = 0;
    virtual int sourceId() const = 0;

    /// An application with a port `remotePort()`, which answers every message to it with one that says
    /// "response_clone": "success".
    virtual std::string answeringApplication() = 0;
    virtual std::string absentApplication() const = 0;
    static std::string remotePort() { return "VxCloneMessagePort"; }

    /// An application that can be launched and does not run.
    virtual std::string application() const = 0;

    /// Makes the nth next call of the operation answer the status, once.
    virtual void failOnce(const std::string& call, int status, int nth) = 0;

    /// How many log lines the television holds that contain the text.
    virtual int logLinesWith(const std::string& text) const = 0;
};

}  // namespace vxcontract
