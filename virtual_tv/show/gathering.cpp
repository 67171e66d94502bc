#include "virtual_tv/show/gathering.h"

#include <fmt/format.h>

#include <algorithm>

#include "virtual_tv/show/known_settings.h"
#include "virtual_tv/show/sections.h"
#include "virtual_tv/store/setting_text.h"

namespace vxtv::show {

namespace {

std::string textOfSetting(const std::vector<Setting>& settings, std::string_view key) {
    const auto found = std::find_if(settings.begin(), settings.end(),
                                    [key](const Setting& setting) { return setting.key == key; });
    return found != settings.end() ? plainText(found->value) : "";
}

/// The first picture of the section's card that can be shown.
std::optional<Picture> firstOf(const Section& pictures, std::size_t card) {
    for (const Picture& picture : pictures.cards.at(card).pictures) {
        if (!picture.bytes.empty()) {
            return picture;
        }
    }
    return std::nullopt;
}

Result<void> addIdentity(const Television& television, Page& page) {
    const auto information = television.systemInformation();
    return information.identity()
        .and_then([&](const Identity& identity) {
            page.model = identity.model;
            page.identity = {{"model", identity.model},
                             {"product tag", identity.productTag},
                             {"tuner type", std::to_string(identity.tunerType)}};
            return information.features();
        })
        .map([&](const std::vector<Feature>& features) {
            for (const Feature& feature : features) {
                page.identity.push_back(
                    {feature.name,
                     std::visit([](auto value) { return fmt::format("{}", value); }, feature.value)});
            }
        });
}

Result<void> addSettings(const Television& television, Page& page) {
    return television.settings().list().map([&page](const std::vector<Setting>& settings) {
        const std::string message = textOfSetting(settings, kWelcomeMessageKey);
        const std::string title = textOfSetting(settings, kWelcomeTitleKey);
        page.welcomeTitle = message.empty() ? title : message;
        page.welcomeText = textOfSetting(settings, kWelcomeBodyKey);
        page.sections.push_back(lastCloneSection(settings));
        page.sections.push_back(settingsSection(settings));
    });
}

/// Adds the section, or returns its error.
Result<void> add(Page& page, Result<Section> section) {
    return std::move(section).map([&page](Section made) { page.sections.push_back(std::move(made)); });
}

Result<void> addValues(const Television& television, Page& page) {
    return valueSections(television).map([&page](std::vector<Section> sections) {
        std::move(sections.begin(), sections.end(), std::back_inserter(page.sections));
    });
}

}  // namespace

Result<Page> gatherPage(const Television& television, std::size_t mostChannels) {
    Page page;
    page.folder = television.folder().root().string();
    // The television's own pictures are read first, so that an application with many pictures cannot displace
    // them.
    PictureReader reader(television.folder().root());
    Section pictures = picturesSection(television, reader);
    page.logo = firstOf(pictures, 0);
    page.screen = firstOf(pictures, 1);
    return addIdentity(television, page)
        .and_then([&] { return addSettings(television, page); })
        .and_then([&] { return add(page, channelsSection(television, mostChannels)); })
        .and_then([&] { return add(page, timersSection(television)); })
        .and_then([&] { return add(page, sourcesSection(television, reader)); })
        .and_then([&] { return add(page, networkTimeSection(television)); })
        .and_then([&] { return addValues(television, page); })
        .and_then([&] { return add(page, applicationsSection(television, reader)); })
        .map([&] {
            page.sections.push_back(std::move(pictures));
            return std::move(page);
        });
}

}  // namespace vxtv::show
