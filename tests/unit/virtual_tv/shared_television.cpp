#include "tests/unit/virtual_tv/shared_television.h"

#include <stdlib.h>

namespace vxtv::test {

namespace {

class SharedTelevision {
 public:
    SharedTelevision() { setenv(kTelevisionVariable, (folder_.path() / "tv").c_str(), 1); }
    const Television& television() const { return television_; }

 private:
    TestFolder folder_;
    Television television_ = makeTelevision(folder_.path() / "tv");
};

}  // namespace

const Television& sharedTelevision() {
    static const SharedTelevision shared;
    return shared.television();
}

}  // namespace vxtv::test
