#include "virtual_tv/television/bus_address.h"

#include "virtual_tv/base/live_file.h"

namespace vxtv {

std::optional<std::string> busAddress(const Folder& folder) {
    return lineOfLiveFile(folder.busAddress());
}

}  // namespace vxtv
