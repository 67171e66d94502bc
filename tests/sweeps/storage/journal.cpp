#include "tests/sweeps/storage/journal.h"

#include <sstream>
#include <stdexcept>

namespace vxtest {

namespace {

std::string bytesOf(const std::string& hex) {
    std::string bytes;
    for (std::size_t place = 0; place + 1 < hex.size(); place += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(place, 2), nullptr, 16));
    }
    return bytes;
}

using Deed = void (*)(const JournalLine& line, DiskModel& model);

const std::map<std::string, Deed>& deeds() {
    static const std::map<std::string, Deed> kDeeds = {
        {"file",
         [](const JournalLine& line, DiskModel& model) {
             model.makeFile(line.node, line.rest.at(0), std::stoull(line.rest.at(1)));
         }},
        {"folder",
         [](const JournalLine& line, DiskModel& model) {
             model.makeFolder(line.node, line.rest.at(0), std::stoull(line.rest.at(1)));
         }},
        {"write",
         [](const JournalLine& line, DiskModel& model) {
             model.write(line.node, std::stoull(line.rest.at(0)), bytesOf(line.rest.at(1)));
         }},
        {"move", [](const JournalLine& line,
                    DiskModel& model) { model.move(line.node, line.rest.at(0), line.rest.at(1)); }},
        {"exchange", [](const JournalLine& line,
                        DiskModel& model) { model.exchange(line.node, line.rest.at(0), line.rest.at(1)); }},
        {"remove",
         [](const JournalLine& line, DiskModel& model) { model.remove(line.node, line.rest.at(0)); }},
        {"flush", [](const JournalLine& line, DiskModel& model) { model.flush(line.node); }},
        {"flush-all", [](const JournalLine&, DiskModel& model) { model.flushAll(); }}};
    return kDeeds;
}

}  // namespace

std::vector<JournalLine> readJournal(const std::filesystem::path& file) {
    std::istringstream text(readFile(file));
    std::vector<JournalLine> lines;
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        JournalLine read;
        if (!(words >> read.word >> read.node)) {
            throw std::runtime_error("not a line of a journal: " + line);
        }
        for (std::string word; words >> word;) {
            read.rest.push_back(word);
        }
        lines.push_back(std::move(read));
    }
    return lines;
}

void apply(const JournalLine& line, DiskModel& model) {
    const auto deed = deeds().find(line.word);
    if (deed == deeds().end()) {
        throw std::runtime_error("no change of a disk: " + line.word);
    }
    deed->second(line, model);
}

}  // namespace vxtest
