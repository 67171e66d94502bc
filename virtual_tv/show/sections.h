#pragma once

#include "virtual_tv/show/page.h"
#include "virtual_tv/show/picture.h"
#include "virtual_tv/television/television.h"

namespace vxtv::show {

// The sections of a page. Errors of each: those of what it reads.

/// The status of the last run of the clone library: how far it came, and how each category ended.
Section lastCloneSection(const std::vector<Setting>& settings);
Section settingsSection(const std::vector<Setting>& settings);

Result<Section> channelsSection(const Television& television, std::size_t mostChannels);
Result<Section> timersSection(const Television& television);
Result<Section> sourcesSection(const Television& television, PictureReader& pictures);
Result<Section> networkTimeSection(const Television& television);
/// One for each service that is nothing but values.
Result<std::vector<Section>> valueSections(const Television& television);

Result<Section> applicationsSection(const Television& television, PictureReader& pictures);
Section picturesSection(const Television& television, PictureReader& pictures);

/// What is shown in place of a service that the television lacks; any other error stays one.
Result<Section> absentOr(const Error& error, Section section);

}  // namespace vxtv::show
