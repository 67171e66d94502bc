#pragma once

#include "virtual_tv/services/value_service.h"

namespace vxtv {

// The services that are nothing but values. Each table says once what there is and what it may be.

const ValueService& factoryService();
const ValueService& avService();
const ValueService& settingsService();
const ValueService& homeDataService();
const ValueService& webApplicationService();

}  // namespace vxtv
