#include "cloning_app/television/category.h"

#include <algorithm>
#include <string>

#include "cloning_app/package/layout.h"
#include "common/suggestion.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

std::optional<VXClone> categoryTyped(std::string_view name) {
    const std::string typed = vxcommon::inSmallLetters(name);
    for (const Category& category : categories()) {
        if (typed == category.name || typed == vxcommon::inSmallLetters(category.enumerator)) {
            return category.value;
        }
    }
    return std::nullopt;
}

tl::unexpected<Error> unknownCategory(std::string_view name) {
    std::vector<std::string> names;
    std::string list;
    for (const Category& category : categories()) {
        names.emplace_back(category.name);
        list += " " + names.back();
    }
    const std::string question = vxcommon::didYouMean(name, names);
    return failure(ErrorCode::UnknownCategory,
                   "there is no category \"" + vxcommon::printable(name) + "\"; " +
                       (question.empty() ? "choose from:" : question + " Choose from:") + list);
}

}  // namespace

const Category& categoryOf(VXClone value) {
    return categories().at(static_cast<std::size_t>(value));
}

Handling handlingOf(const Category& category, Direction direction) {
    return direction == Direction::Backup ? category.inBackup : category.inRestore;
}

std::optional<VXClone> categoryOfEntry(std::string_view entry) {
    for (const Category& category : categories()) {
        if (!entry.empty() && entry == category.entry) {
            return category.value;
        }
    }
    return std::nullopt;
}

bool isKnownEntry(std::string_view name) {
    return name == kIdentityFile || name == kSealFile ||
           std::any_of(categories().begin(), categories().end(), [name](const Category& category) {
               return category.entryBy == EntryBy::Library && category.entry == name;
           });
}

std::optional<VXClone> categoryCalled(std::string_view name) {
    for (const Category& category : categories()) {
        if (name == category.name) {
            return category.value;
        }
    }
    return std::nullopt;
}

std::optional<VXClone> categoryNamed(std::string_view enumerator) {
    for (const Category& category : categories()) {
        if (enumerator == category.enumerator) {
            return category.value;
        }
    }
    return std::nullopt;
}

std::vector<VXClone> allCategories() {
    std::vector<VXClone> values;
    for (const Category& category : categories()) {
        values.push_back(category.value);
    }
    return values;
}

bool isLoaded(const Category& category) {
    return category.inRestore != Handling::Silent && category.inRestore != Handling::NotPossible;
}

std::vector<std::string_view> namesInList(std::string_view list) {
    constexpr std::string_view kBlanks = " \t";
    std::vector<std::string_view> names;
    for (bool more = !list.empty(); more;) {
        const std::size_t comma = list.find(',');
        std::string_view name = list.substr(0, comma);
        name.remove_prefix(std::min(name.find_first_not_of(kBlanks), name.size()));
        name = name.substr(0, name.find_last_not_of(kBlanks) + 1);
        names.push_back(name);
        more = comma != std::string_view::npos;
        list.remove_prefix(more ? comma + 1 : list.size());
    }
    return names;
}

Result<std::vector<VXClone>> parseCategories(std::string_view list) {
    std::vector<VXClone> values;
    const std::vector<std::string_view> names = namesInList(list);
    if (names.empty()) {
        return unknownCategory("");
    }
    for (const std::string_view name : names) {
        const auto value = categoryTyped(name);
        if (!value) {
            return unknownCategory(name);
        }
        values.push_back(*value);
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

}  // namespace vxclone
