#include "virtual_tv/television/contract_calls.h"

namespace vxtv {

std::optional<CallKind> findCall(std::string_view name) {
    const detail::ContractCall* call = detail::find(name);
    return call != nullptr ? std::optional<CallKind>(call->kind) : std::nullopt;
}

}  // namespace vxtv
