#include "tests/sweeps/storage/disk_model.h"

#include <sys/stat.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vxtest {

namespace {

DiskModel::Node nodeOf(const std::filesystem::path& path) {
    struct stat facts {};
    if (lstat(path.c_str(), &facts) != 0) {
        throw std::runtime_error("there is no " + path.string());
    }
    return facts.st_ino;
}

void put(std::string& content, std::uint64_t begin, const std::string& data) {
    content.resize(std::max<std::size_t>(content.size(), begin + data.size()));
    content.replace(begin, data.size(), data);
}

}  // namespace

DiskModel DiskModel::of(const std::filesystem::path& folder) {
    DiskModel model(nodeOf(folder));
    model.add(folder, model.root_);
    model.flushAll();
    return model;
}

void DiskModel::add(const std::filesystem::path& folder, Node node) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const Node inside = nodeOf(entry.path());
        const std::string name = entry.path().filename().string();
        if (entry.is_directory()) {
            makeFolder(node, name, inside);
            add(entry.path(), inside);
        } else {
            makeFile(node, name, inside);
            write(inside, 0, readFile(entry.path()));
        }
    }
}

std::optional<DiskModel::Node> DiskModel::nodeAt(Node folder, const std::string& name) const {
    const auto entries = now_.find(folder);
    if (entries == now_.end() || entries->second.count(name) == 0) {
        return std::nullopt;
    }
    return entries->second.at(name);
}

void DiskModel::changeEntries(Node folder, std::map<std::string, std::optional<Node>> entries) {
    for (const auto& [name, node] : entries) {
        now_[folder].erase(name);
        if (node) {
            now_[folder][name] = *node;
        }
    }
    changes_.push_back({folder, Kind::Entry, 0, {}, std::move(entries)});
}

void DiskModel::makeFile(Node folder, const std::string& name, Node file) {
    changeEntries(folder, {{name, file}});
}

void DiskModel::makeFolder(Node folder, const std::string& name, Node made) {
    makeFile(folder, name, made);
    folders_.insert(made);
}

void DiskModel::write(Node file, std::uint64_t begin, std::string data) {
    changes_.push_back({file, Kind::Data, begin, std::move(data)});
}

void DiskModel::move(Node folder, const std::string& from, const std::string& to) {
    changeEntries(folder, {{from, std::nullopt}, {to, nodeAt(folder, from)}});
}

void DiskModel::exchange(Node folder, const std::string& one, const std::string& other) {
    changeEntries(folder, {{one, nodeAt(folder, other)}, {other, nodeAt(folder, one)}});
}

void DiskModel::remove(Node folder, const std::string& name) {
    changeEntries(folder, {{name, std::nullopt}});
}

void DiskModel::flush(Node node) {
    for (Change& change : changes_) {
        change.sure = change.sure || change.node == node;
    }
}

void DiskModel::flushAll() {
    for (Change& change : changes_) {
        change.sure = true;
    }
}

std::size_t DiskModel::unsure() const {
    return static_cast<std::size_t>(
        std::count_if(changes_.begin(), changes_.end(), [](const Change& change) { return !change.sure; }));
}

FileTree DiskModel::after(const Survives& survives) const {
    std::map<Node, Entries> entries;
    std::map<Node, std::string> contents;
    for (const Change& change : changes_) {
        if (!change.sure && !survives(change.kind)) {
            continue;
        }
        if (change.kind == Kind::Data) {
            put(contents[change.node], change.begin, change.data);
        }
        for (const auto& [name, node] : change.entries) {
            entries[change.node].erase(name);
            if (node) {
                entries[change.node][name] = *node;
            }
        }
    }
    FileTree tree;
    const std::function<void(const std::string&, Node)> walk = [&](const std::string& path, Node folder) {
        for (const auto& [name, node] : entries[folder]) {
            const bool isFolder = folders_.count(node) != 0;
            tree[path + name + (isFolder ? "/" : "")] = isFolder ? "" : contents[node];
            if (isFolder) {
                walk(path + name + "/", node);
            }
        }
    };
    walk("", root_);
    return tree;
}

}  // namespace vxtest
