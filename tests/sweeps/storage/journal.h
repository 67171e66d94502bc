#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/sweeps/storage/disk_model.h"

namespace vxtest {

/// One change of a disk as `interposer/file_journal.cpp` wrote it down.
struct JournalLine {
    std::string word;  ///< file, folder, write, move, exchange, remove, flush, flush-all
    DiskModel::Node node = 0;
    std::vector<std::string> rest;
};

/// Everything in the journal, in order. Throws std::runtime_error for what is none.
std::vector<JournalLine> readJournal(const std::filesystem::path& file);

/// Lets the model go through one change. Throws std::runtime_error for a word it does not know.
void apply(const JournalLine& line, DiskModel& model);

}  // namespace vxtest
