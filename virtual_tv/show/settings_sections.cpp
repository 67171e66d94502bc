#include <map>

#include "virtual_tv/show/known_settings.h"
#include "virtual_tv/show/sections.h"
#include "virtual_tv/show/value_cards.h"
#include "virtual_tv/store/setting_text.h"

namespace vxtv::show {

namespace {

struct Outcome {
    std::string_view ending;  ///< of a line of the result list
    const char* word;
    Colour colour;
};
constexpr Outcome kOutcomes[] = {{"-SUCCESS", "success", Colour::Good}, {"-FAIL", "failed", Colour::Bad}};

/// The library always reports a failure for this category, so its line has no meaning.
constexpr std::string_view kNotEvaluated = "VXCLONE_FACTORY_SETTINGS";

Fact outcomeFact(std::string_view line) {
    for (const auto& [ending, word, colour] : kOutcomes) {
        if (!line.ends_with(ending)) {
            continue;
        }
        const std::string category(line.substr(0, line.size() - ending.size()));
        return category == kNotEvaluated ? Fact{category, "not evaluated", Colour::Dim}
                                         : Fact{category, word, colour};
    }
    return {std::string(line), "not a result", Colour::Dim};
}

std::vector<Fact> outcomesIn(std::string_view list) {
    std::vector<Fact> outcomes;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find('\n'), list.size());
        if (end != 0) {
            outcomes.push_back(outcomeFact(list.substr(0, end)));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return outcomes;
}

const SettingGroup& groupOf(std::string_view key) {
    const SettingGroup* group = std::begin(kSettingGroups);
    while (key.substr(0, group->prefix.size()) != group->prefix) {
        ++group;
    }
    return *group;
}

}  // namespace

Section lastCloneSection(const std::vector<Setting>& settings) {
    Section section{"last-clone", "Last clone", ""};
    Card card;
    Card others{"Other states", ""};
    for (const Setting& setting : settings) {
        const auto* const percent = std::get_if<int>(&setting.value);
        if (!setting.isStatus) {
            continue;
        }
        if (setting.key == kProgressKey && percent != nullptr) {
            card.percent = *percent;
        } else if (setting.key == kResultKey) {
            card.facts = outcomesIn(plainText(setting.value));
        } else {
            others.facts.push_back(factOf(setting.key, plainText(setting.value)));
        }
    }
    if (card.facts.empty()) {
        section.note = "No clone has left a result here.";
    }
    if (!card.facts.empty() || card.percent.value_or(0) != 0) {
        section.cards.push_back(std::move(card));
    }
    if (!others.facts.empty()) {
        section.cards.push_back(std::move(others));
    }
    return section;
}

Section settingsSection(const std::vector<Setting>& settings) {
    Section section{"settings", "Settings", ""};
    std::map<const SettingGroup*, Card> cards;
    std::map<const SettingGroup*, Texts> tables;
    for (const Setting& setting : settings) {
        if (setting.isStatus) {
            continue;
        }
        const SettingGroup& group = groupOf(setting.key);
        const std::string rest = setting.key.substr(group.prefix.size());
        Card& card = cards[&group];
        card.title = group.title;
        card.note = group.prefix;
        if (group.isTable) {
            tables[&group][rest] = plainText(setting.value);
        } else {
            card.facts.push_back(factOf(rest, plainText(setting.value)));
        }
    }
    for (const SettingGroup& group : kSettingGroups) {
        if (const auto table = tables.find(&group); table != tables.end()) {
            cards[&group].grids.push_back(gridOf(table->second));
        }
        if (const auto card = cards.find(&group); card != cards.end()) {
            section.cards.push_back(std::move(card->second));
        }
    }
    return section;
}

}  // namespace vxtv::show
