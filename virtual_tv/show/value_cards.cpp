#include "virtual_tv/show/value_cards.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

namespace vxtv::show {

namespace {

constexpr std::size_t kMostColumns = 6;

std::pair<std::string, std::string> split(const std::string& path) {
    const std::size_t slash = path.find('/');
    return slash == std::string::npos ? std::pair(path, std::string())
                                      : std::pair(path.substr(0, slash), path.substr(slash + 1));
}

std::string unquoted(const std::string& value) {
    const auto document = nlohmann::json::parse(value, nullptr, false);
    return document.is_string() ? document.get<std::string>() : value;
}

}  // namespace

Fact factOf(std::string name, std::string value, Colour colour) {
    return value.empty() ? Fact{std::move(name), "(empty)", Colour::Dim}
                         : Fact{std::move(name), std::move(value), colour};
}

Grid gridOf(const Texts& pairs) {
    std::set<std::string> items;
    std::set<std::string> fields;
    for (const auto& [name, value] : pairs) {
        const auto [item, field] = split(name);
        items.insert(item);
        fields.insert(field);
    }
    const bool fieldsAreRows = fields.size() > kMostColumns;
    const auto& columns = fieldsAreRows ? items : fields;
    Grid grid;
    grid.columns = {""};
    grid.columns.insert(grid.columns.end(), columns.begin(), columns.end());
    for (const std::string& row : fieldsAreRows ? fields : items) {
        std::vector<GridCell> cells = {{row}};
        for (const std::string& column : columns) {
            const auto found = pairs.find(fieldsAreRows ? column + "/" + row : row + "/" + column);
            cells.push_back({found != pairs.end() ? found->second : ""});
        }
        grid.rows.push_back(std::move(cells));
    }
    return grid;
}

std::vector<Card> cardsOf(const Texts& values, Colour colour) {
    std::map<std::string, Card> cards;
    std::map<std::string, Texts> tables;
    for (const auto& [name, value] : values) {
        const auto [first, rest] = split(name);
        const bool isTable = rest.find('/') != std::string::npos;
        const std::string title = rest.empty() ? "general" : first;
        cards[title].title = title;
        if (isTable) {
            tables[title][rest] = unquoted(value);
        } else {
            cards[title].facts.push_back(factOf(rest.empty() ? first : rest, unquoted(value), colour));
        }
    }
    std::vector<Card> result;
    for (auto& [title, card] : cards) {
        if (const auto table = tables.find(title); table != tables.end()) {
            card.grids.push_back(gridOf(table->second));
        }
        result.push_back(std::move(card));
    }
    return result;
}

}  // namespace vxtv::show
