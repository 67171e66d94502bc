#pragma once

#include "virtual_tv/show/page.h"
#include "virtual_tv/show/picture.h"
#include "virtual_tv/television/television.h"

namespace vxtv::show {

// The sections of a page. Errors of each: those of the data that it reads.

/// The status of the last run of the clone library: its progress, and the result of each category.
Section lastCloneSection(const std::vector<Setting>& settings);
Section settingsSection(const std::vector<Setting>& settings);

Result<Section> channelsSection(const Television& television, std::size_t mostChannels);
Result<Section> timersSection(const Television& television);
Result<Section> sourcesSection(const Television& television, PictureReader& pictures);
Result<Section> networkTimeSection(const Television& television);
/// A section for each service that consists only of values.
Result<std::vector<Section>> valueSections(const Television& television);

Result<Section> applicationsSection(const Television& television, PictureReader& pictures);
Section picturesSection(const Television& television, PictureReader& pictures);

/// The section with a note if the television lacks the service; any other error is returned.
Result<Section> absentOr(const Error& error, Section section);

}  // namespace vxtv::show
