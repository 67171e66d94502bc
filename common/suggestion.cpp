#include "common/suggestion.h"

#include <algorithm>
#include <numeric>

namespace vxcommon {

namespace {

constexpr std::size_t kMostNames = 3;
constexpr std::size_t kMostChanges = 3;
constexpr std::size_t kFewestToHold = 3;

/// The number of changes up to which a word still counts as the name: a third of its characters, but at least
/// one.
std::size_t mostChanges(std::size_t length) {
    return std::clamp<std::size_t>(length / 3, 1, kMostChanges);
}

/// The distance between the name and the typed word; greater than the allowed maximum if the name cannot
/// match.
std::size_t distanceOf(std::string_view typed, const std::string& name) {
    const std::size_t shorter = std::min(typed.size(), name.size());
    const std::size_t longer = std::max(typed.size(), name.size());
    const std::size_t most = mostChanges(longer);
    // Words of very different length are not compared, because a word on a command line may be huge.
    const std::size_t distance = longer - shorter > most ? most + 1 : editDistance(typed, name);
    return distance <= most ? distance : kMostChanges + 1;
}

std::vector<std::string> nearestNames(std::string_view typed, const std::vector<std::string>& names) {
    std::vector<std::string> nearest;
    std::size_t least = kMostChanges;
    for (const std::string& name : names) {
        const std::size_t distance = distanceOf(typed, name);
        if (distance < least) {
            nearest.clear();
        }
        if (distance <= least) {
            nearest.push_back(name);
            least = distance;
        }
    }
    return nearest;
}

std::vector<std::string> namesThatHold(std::string_view typed, const std::vector<std::string>& names) {
    std::vector<std::string> holding;
    const std::string wanted = inSmallLetters(typed);
    if (wanted.size() >= kFewestToHold) {
        std::copy_if(names.begin(), names.end(), std::back_inserter(holding), [&](const std::string& name) {
            return inSmallLetters(name).find(wanted) != std::string::npos;
        });
    }
    return holding;
}

}  // namespace

std::string inSmallLetters(std::string_view text) {
    std::string small(text);
    for (char& character : small) {
        const bool capital = character >= 'A' && character <= 'Z';
        character = capital ? static_cast<char>(character - 'A' + 'a') : character;
    }
    return small;
}

std::size_t editDistance(std::string_view first, std::string_view second) {
    const std::string one = inSmallLetters(first);
    const std::string other = inSmallLetters(second);
    // Dynamic programming, row by row: the distances between the first characters of `one` and each prefix of
    // `other`.
    std::vector<std::size_t> beforeThat(other.size() + 1);
    std::vector<std::size_t> before(other.size() + 1);
    std::vector<std::size_t> now(other.size() + 1);
    std::iota(now.begin(), now.end(), std::size_t{0});
    for (std::size_t row = 1; row <= one.size(); ++row) {
        beforeThat.swap(before);
        before.swap(now);
        now[0] = row;
        for (std::size_t column = 1; column <= other.size(); ++column) {
            const bool same = one[row - 1] == other[column - 1];
            now[column] =
                std::min({before[column] + 1, now[column - 1] + 1, before[column - 1] + (same ? 0 : 1)});
            const bool swapped = row > 1 && column > 1 && one[row - 1] == other[column - 2] &&
                                 one[row - 2] == other[column - 1];
            if (swapped) {
                now[column] = std::min(now[column], beforeThat[column - 2] + 1);
            }
        }
    }
    return now[other.size()];
}

std::vector<std::string> likelyNames(std::string_view typed, const std::vector<std::string>& names) {
    std::vector<std::string> likely = nearestNames(typed, names);
    if (likely.empty()) {
        likely = namesThatHold(typed, names);
    }
    return likely.size() <= kMostNames ? likely : std::vector<std::string>();
}

std::string didYouMean(std::string_view typed, const std::vector<std::string>& names) {
    std::string question;
    const std::vector<std::string> likely = likelyNames(typed, names);
    for (std::size_t index = 0; index < likely.size(); ++index) {
        const bool last = index + 1 == likely.size();
        question += (index == 0 ? "did you mean " : last ? " or " : ", ") + likely[index];
    }
    return question.empty() ? question : question + "?";
}

}  // namespace vxcommon
