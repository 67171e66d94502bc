#include "virtual_tv/calls/contract_calls.h"

namespace vxtv {

std::optional<ContractCall> findCall(std::string_view name) {
    const std::size_t place = detail::placeOf(name);
    if (place == std::size(detail::kContractCalls)) {
        return std::nullopt;
    }
    return detail::kContractCalls[place];
}

}  // namespace vxtv
