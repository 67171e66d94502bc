#include "virtual_tv/bus/bus_address.h"

#include "virtual_tv/television/live_file.h"

namespace vxtv {

std::optional<std::string> busAddress(const Folder& folder) {
    return lineOfLiveFile(folder.busAddress());
}

}  // namespace vxtv
