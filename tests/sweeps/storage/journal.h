#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/sweeps/storage/disk_model.h"

namespace vxtest {

/// A change of a disk as `interposer/file_journal.cpp` recorded it.
struct JournalLine {
    std::string word;  ///< file, folder, write, move, exchange, remove, flush, flush-all
    DiskModel::Node node = 0;
    std::vector<std::string> rest;
};

/// The whole journal, in order. Throws std::runtime_error for an invalid journal.
std::vector<JournalLine> readJournal(const std::filesystem::path& file);

/// Applies a change to the model. Throws std::runtime_error for an unknown word.
void apply(const JournalLine& line, DiskModel& model);

}  // namespace vxtest
