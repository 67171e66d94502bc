#pragma once

#include "virtual_tv/services/value_service.h"

namespace vxtv {

// The services that consist only of values. Each table defines the values of a service and their rules.

const ValueService& factoryService();
const ValueService& avService();
const ValueService& settingsService();
const ValueService& homeDataService();
const ValueService& webApplicationService();

}  // namespace vxtv
